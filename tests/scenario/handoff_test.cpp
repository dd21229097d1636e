// SPDX-License-Identifier: Apache-2.0

#include <gmock/gmock.h>

#include <kinovane/handoff.hpp>

#include "scenario/production.hpp"
#include "support/sample_film.hpp"

namespace kinovane::test {
namespace {

namespace fs = std::filesystem;

VistrelHandoff built(const FilmWorkspaceSnapshot& film) {
    HandoffBuildOptions options;
    options.workers = 2;
    return VistrelHandoffBuilder::build(film, film.root.string(), Production::planned, options);
}

/// The manifest that a receipt names; checks the receipt against it.
VistrelHandoff manifestOf(const FilmVistrelExportReceipt& receipt, const Production& production) {
    const auto handoff = decodeJSON<VistrelHandoff>(contentOf(receipt.manifest));
    FilmVistrelExportReceipt expected;
    expected.ok = true;
    expected.contractVersion = handoff.contractVersion;
    expected.manifest = receipt.manifest;
    expected.manifestSha256 = VistrelHandoffBuilder::sha256(fs::path(receipt.manifest));
    expected.projectId = handoff.source.projectId;
    expected.shots = static_cast<std::int64_t>(handoff.shots.size());
    expected.assets = static_cast<std::int64_t>(handoff.assets.size());
    for (const VistrelHandoffAsset& asset : handoff.assets)
        expected.bytes += static_cast<std::int64_t>(fs::file_size(production.folder / asset.relativePath));
    expected.runId = production.film.status(production.run).get().runId;
    EXPECT_EQ(receipt, expected);
    return handoff;
}

/// The importer makes the same film from all manifests.
void expectSameFilmInVistrel(const Production& production, const std::vector<fs::path>& manifests,
                             std::int64_t assets) {
    const fs::path library = production.directory / "library";
    const Variable place("VISTREL_LIBRARY", library.string());
    const VistrelClient vistrel(programPath("vistrel"));
    std::vector<std::string> storyboards;
    for (const fs::path& manifest : manifests) {
        SCOPED_TRACE(manifest);
        fs::remove_all(library);
        const VistrelImportReceipt checked = vistrel.validate(manifest).get();
        EXPECT_FALSE(fs::exists(library));
        const VistrelImportReceipt receipt = vistrel.import(manifest).get();
        EXPECT_EQ(receipt, checked);
        EXPECT_EQ(receipt, (VistrelImportReceipt{true, receipt.projectId, receipt.projectId + "_episode_1", 3,
                                                 3, assets, "vistrel://projects/" + receipt.projectId}));
        const fs::path project = library / receipt.projectId;
        EXPECT_EQ(contentOf(project / "manifest.json"), contentOf(manifest));
        storyboards.push_back(contentOf(project / "storyboard.json"));
        for (const VistrelHandoffAsset& asset : decodeJSON<VistrelHandoff>(contentOf(manifest)).assets)
            EXPECT_EQ(VistrelHandoffBuilder::sha256(project / "assets" / asset.relativePath), asset.sha256);
    }
    EXPECT_THAT(storyboards, testing::Each(storyboards.front()));
}

TEST(Handoff, IsTheSameFromToolAndLibraryAtEveryGate) {
    const Production production;
    std::int64_t assets = 0;
    for (const std::string& gate : gates()) {
        SCOPED_TRACE(gate);
        production.pass(gate);
        const FilmWorkspaceSnapshot film = production.checked();
        assets = static_cast<std::int64_t>(film.project.artifacts.size());

        const fs::path theirs = production.directory / "handed over" / (gate + " by the tool.json");
        const auto receipt = production.film.exportVistrel(production.run, theirs).get();
        EXPECT_EQ(receipt.manifest, theirs.string());
        EXPECT_EQ(receipt.assets, assets);
        const VistrelHandoff handoff = built(film);
        EXPECT_EQ(handoff.assets, manifestOf(receipt, production).assets);
        EXPECT_EQ(encodeJSON(handoff, JSONFormat::pretty),
                  encodeJSON(manifestOf(receipt, production), JSONFormat::pretty));

        const fs::path ours = production.directory / "handed over" / (gate + ".json");
        const std::string digest = VistrelHandoffBuilder::write(handoff, ours);
        EXPECT_EQ(digest, VistrelHandoffBuilder::sha256(ours));
        expectSameFilmInVistrel(production, {ours, theirs}, assets);
    }
    EXPECT_EQ(assets, 42);
}

TEST(Handoff, IsWrittenToTheFilmsFolderByDefault) {
    const Production production;
    production.passUpTo("delivery");
    const auto receipt = production.film.exportVistrel(production.run).get();
    EXPECT_EQ(receipt.manifest, (production.folder / "vistrel-handoff.json").string());
    EXPECT_EQ(manifestOf(receipt, production), built(FilmProjectLoader::load(production.run)));
}

TEST(Handoff, HasNoAssetsBeforeTheFrames) {
    const Production production;
    const fs::path manifest = production.directory / "plan.json";
    const auto receipt = production.film.exportVistrel(production.run, manifest).get();
    const VistrelHandoff handoff = built(production.checked());
    EXPECT_EQ(manifestOf(receipt, production), handoff);
    EXPECT_EQ(handoff.assets.size(), 0U);
    for (const VistrelHandoffShot& shot : handoff.shots) {
        EXPECT_EQ(shot.keyframeAssetId, std::nullopt);
        EXPECT_EQ(shot.clipAssetId, std::nullopt);
    }
    expectSameFilmInVistrel(production, {manifest}, 0);
}

} // namespace
} // namespace kinovane::test

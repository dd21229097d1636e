// SPDX-License-Identifier: Apache-2.0

#include <gmock/gmock.h>

#include "simulators/vistrel_film.hpp"

namespace kinovane::test {
namespace {

namespace fs = std::filesystem;
namespace bj = boost::json;

VistrelImportReceipt receiptOf(const ProcessResult& result) {
    EXPECT_EQ(result.exitCode, 0) << result.stderr;
    EXPECT_EQ(result.stderr, "");
    return decodeJSON<VistrelImportReceipt>(result.stdout);
}

TEST(VistrelImport, ChangesNothingInADryRun) {
    const VistrelFilm film;
    const auto before = treeOf(film.directory.path());
    const auto filmBefore = treeOf(sampleFilm());
    const VistrelImportReceipt receipt = receiptOf(film.check());
    EXPECT_TRUE(receipt.ok);
    EXPECT_TRUE(receipt.projectId.starts_with("vistrel_film-lamp-for-the-late-ferry_"));
    EXPECT_EQ(receipt.episodeId, receipt.projectId + "_episode_1");
    EXPECT_EQ(receipt.importedScenes, 3);
    EXPECT_EQ(receipt.importedShots, 7);
    EXPECT_EQ(receipt.importedAssets, 59);
    EXPECT_EQ(receipt.projectURL, "vistrel://projects/" + receipt.projectId);
    EXPECT_EQ(treeOf(film.directory.path()), before);
    EXPECT_EQ(treeOf(sampleFilm()), filmBefore);
}

TEST(VistrelImport, ChangesNothingInADryRunAfterAnImport) {
    const VistrelFilm film;
    film.import();
    const auto before = treeOf(film.directory.path());
    film.check();
    EXPECT_EQ(treeOf(film.directory.path()), before);
}

TEST(VistrelImport, CopiesEverything) {
    const VistrelFilm film;
    const VistrelImportReceipt receipt = receiptOf(film.import());
    EXPECT_EQ(receipt, receiptOf(film.check()));
    const fs::path project = film.library / receipt.projectId;
    EXPECT_THAT(namesIn(film.library),
                testing::ElementsAre("." + receipt.projectId + ".lock", receipt.projectId));
    EXPECT_THAT(namesIn(project), testing::ElementsAre("assets", "manifest.json", "storyboard.json"));
    EXPECT_EQ(contentOf(project / "manifest.json"), contentOf(film.manifest));
    const auto handoff = decodeJSON<VistrelHandoff>(contentOf(film.manifest));
    std::size_t files = 0;
    for (const auto& [name, content] : treeOf(project / "assets"))
        if (content != "a directory")
            ++files;
    EXPECT_EQ(files, handoff.assets.size());
    for (const VistrelHandoffAsset& asset : handoff.assets)
        EXPECT_EQ(VistrelHandoffBuilder::sha256(project / "assets" / asset.relativePath), asset.sha256);
}

TEST(VistrelImport, WritesAStoryboardForPeople) {
    const VistrelFilm film;
    const VistrelImportReceipt receipt = receiptOf(film.import());
    const bj::value board = bj::parse(contentOf(film.library / receipt.projectId / "storyboard.json"));
    EXPECT_EQ(board.at("title"), bj::value("A Lamp for the Late Ferry"));
    EXPECT_EQ(board.at("durationMilliseconds"), bj::value(18000));
    ASSERT_EQ(board.at("shots").as_array().size(), 7U);
    const bj::value& shot = board.at("shots").as_array()[1];
    EXPECT_EQ(shot, bj::parse(R"({
        "id": "shot-02", "scene": 2, "startMilliseconds": 3000, "endMilliseconds": 5500,
        "purpose": "Show who needs the light", "location": "The fog off Brèmes",
        "characters": ["Captain Solveig Bø"],
        "keyFrame": "assets/frames/shot-02.png", "clip": "assets/clips/shot-02.mp4",
        "dialogue": [{"offsetMilliseconds": 1000, "speaker": "Captain Solveig Bø",
            "text": "No seventh lamp. Dead slow, everyone.", "delivery": "Calm, through the speaking tube"}],
        "soundEffects": [{"offsetMilliseconds": 0, "durationMilliseconds": 1500,
            "sound": "A ferry’s foghorn, one long note"}],
        "transition": "cut"})"));
}

TEST(VistrelImport, CanBeRepeated) {
    const VistrelFilm film;
    const ProcessResult first = film.import();
    const auto tree = treeOf(film.library);
    const ProcessResult second = film.import();
    EXPECT_EQ(first.stdout, second.stdout);
    EXPECT_EQ(treeOf(film.library), tree);
}

TEST(VistrelImport, ReplacesAnEarlierImportAsAWhole) {
    VistrelFilm film;
    const VistrelImportReceipt receipt = receiptOf(film.import());
    const fs::path project = film.library / receipt.projectId;
    film.document.at("project").at("title") = "Another Lamp";
    film.document.at("assets").as_array().clear();
    for (bj::value& shot : film.document.at("shots").as_array()) {
        shot.as_object().erase("keyframeAssetId");
        shot.as_object().erase("clipAssetId");
    }
    film.save();
    const VistrelImportReceipt second = receiptOf(film.import());
    EXPECT_EQ(second.projectId, receipt.projectId);
    EXPECT_EQ(second.importedAssets, 0);
    EXPECT_FALSE(fs::exists(project / "assets"));
    EXPECT_EQ(bj::parse(contentOf(project / "storyboard.json")).at("title"), bj::value("Another Lamp"));
}

TEST(VistrelImport, KeepsTheEarlierImportAfterARefusal) {
    VistrelFilm film;
    film.import();
    const auto before = treeOf(film.library);
    film.document.at("assets").as_array().back().at("bytes") = 1;
    film.save();
    EXPECT_EQ(film.import().exitCode, 1);
    EXPECT_EQ(treeOf(film.library), before);
}

TEST(VistrelImport, SeparatesFilmsWithSimilarNames) {
    VistrelFilm film;
    const VistrelImportReceipt first = receiptOf(film.import());
    film.document.at("source").at("projectId") = "film lamp for the late ferry";
    film.save();
    const VistrelImportReceipt second = receiptOf(film.import());
    EXPECT_NE(first.projectId, second.projectId);
    EXPECT_TRUE(fs::exists(film.library / first.projectId / "manifest.json"));
    EXPECT_TRUE(fs::exists(film.library / second.projectId / "manifest.json"));
}

} // namespace
} // namespace kinovane::test

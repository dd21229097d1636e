// SPDX-License-Identifier: Apache-2.0

#include <algorithm>
#include <functional>

#include <gtest/gtest.h>

#include <kinovane/handoff.hpp>

#include "scenario/production.hpp"
#include "support/sample_film.hpp"
#include "support/task_failure.hpp"

namespace kinovane::test {
namespace {

namespace fs = std::filesystem;

constexpr const char* clipPath = "clips/shot-02.mp4";

/// A film whose handoff was written before something happened to one of its clips.
struct HandedOver : Production {
    HandedOver() {
        passUpTo("frames");
        film_ = checked();
        VistrelHandoffBuilder::write(build(), manifest);
    }

    VistrelHandoff build() const {
        HandoffBuildOptions options;
        options.workers = 2;
        return VistrelHandoffBuilder::build(film_, film_.root.string(), planned, options);
    }

    FilmArtifact recordedClip() const {
        return *std::ranges::find(film_.project.artifacts, clipPath, &FilmArtifact::path);
    }

    fs::path manifest = directory / "before.json";
    fs::path clip = folder / clipPath;
    fs::path elsewhere = directory / "elsewhere.mp4";

  private:
    FilmWorkspaceSnapshot film_;
};

/// The messages of the three programs for the same film.
struct Refusals {
    std::string tool;
    VistrelHandoffError library;
    std::string importer;
};

TEST(HandoffRefusal, IsTheSameInToolLibraryAndImporter) {
    struct Row {
        const char* sentence;
        std::function<void(const HandedOver&)> damage;
        std::function<Refusals(const HandedOver&)> expected;
    };
    const std::string asset = R"(asset "clips/shot-02.mp4": )";
    const std::vector<Row> rows{
        {"a file that was cut short", [](const HandedOver& film) { fs::resize_file(film.clip, 100); },
         [&](const HandedOver& film) {
             const FilmArtifact recorded = film.recordedClip();
             return Refusals{"The file \"clips/shot-02.mp4\" is not the one that was recorded.\n",
                             VistrelHandoffError::hashMismatch{clipPath, recorded.sha256,
                                                               VistrelHandoffBuilder::sha256(film.clip)},
                             asset + "has 100 bytes, but the manifest states " +
                                 std::to_string(recorded.bytes) + "\n"};
         }},
        {"a file with other bytes",
         [](const HandedOver& film) {
             std::string content = contentOf(film.clip);
             content.back() = static_cast<char>(content.back() ^ 1);
             film.directory.write(film.clip.lexically_relative(film.directory.path()).string(), content);
         },
         [&](const HandedOver& film) {
             const std::string recorded = film.recordedClip().sha256;
             const std::string found = VistrelHandoffBuilder::sha256(film.clip);
             return Refusals{"The file \"clips/shot-02.mp4\" is not the one that was recorded.\n",
                             VistrelHandoffError::hashMismatch{clipPath, recorded, found},
                             asset + "has the digest " + found + ", but the manifest states " + recorded +
                                 "\n"};
         }},
        {"a file that was deleted", [](const HandedOver& film) { fs::remove(film.clip); },
         [&](const HandedOver&) {
             return Refusals{"The file \"clips/shot-02.mp4\" is missing.\n",
                             VistrelHandoffError::missingArtifact{clipPath},
                             asset + "the file cannot be found: No such file or directory\n"};
         }},
        {"a file that was replaced by a link to the outside",
         [](const HandedOver& film) {
             fs::rename(film.clip, film.elsewhere);
             fs::create_symlink(film.elsewhere, film.clip);
         },
         [&](const HandedOver& film) {
             return Refusals{"The file \"clips/shot-02.mp4\" does not lie inside the film's folder.\n",
                             VistrelHandoffError::unsafeArtifactPath{clipPath},
                             asset + "leads out of the project folder to \"" + film.elsewhere.string() +
                                 "\"\n"};
         }},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        const HandedOver film;
        const VistrelClient vistrel(programPath("vistrel"));
        EXPECT_TRUE(vistrel.validate(film.manifest).get().ok);

        row.damage(film);
        const Refusals expected = row.expected(film);
        const std::string run = film.run.string();
        EXPECT_EQ(errorOf(film.film.exportVistrel(run)),
                  film.refusal({"export-vistrel", run}, expected.tool));
        EXPECT_FALSE(fs::exists(film.folder / "vistrel-handoff.json"));
        try {
            film.build();
            ADD_FAILURE() << "it was built";
        } catch (const VistrelHandoffError& error) {
            EXPECT_EQ(error, expected.library) << error.errorDescription();
        }
        EXPECT_EQ(errorOf(vistrel.validate(film.manifest)),
                  FilmToolError(FilmToolError::commandFailed{
                      {programPath("vistrel"),
                       {"production", "import-film", film.manifest.string(), "--dry-run", "--output", "json"},
                       1,
                       "",
                       expected.importer}}));
    }
}

TEST(HandoffRefusal, CoversAFilmWithoutAPlan) {
    const Production production;
    fs::remove(production.folder / "production-plan.json");
    const std::string run = production.run.string();
    EXPECT_EQ(errorOf(production.film.exportVistrel(run)),
              production.refusal({"export-vistrel", run},
                                 "This film has no production plan, so there is nothing to hand over.\n"));
    try {
        VistrelHandoffBuilder::build(FilmProjectLoader::load(production.run), production.folder.string());
        FAIL() << "it was built";
    } catch (const VistrelHandoffError& error) {
        EXPECT_EQ(error, VistrelHandoffError(VistrelHandoffError::productionPlanMissing{}));
    }
}

} // namespace
} // namespace kinovane::test

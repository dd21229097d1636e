// SPDX-License-Identifier: Apache-2.0

#include <gtest/gtest.h>

#include "scenario/production.hpp"
#include "support/sample_film.hpp"
#include "support/task_failure.hpp"

namespace kinovane::test {
namespace {

namespace fs = std::filesystem;

TEST(Planning, MakesAFilmThatLoads) {
    const Production production;
    EXPECT_EQ(production.run, production.folder / "run.json");
    const FilmWorkspaceSnapshot film = production.checked();
    EXPECT_EQ(film.root, production.folder);
    EXPECT_EQ(film.runManifest, production.run);
    EXPECT_EQ(film.project.title, Production::title);
    EXPECT_EQ(film.project.idea, Production::idea);
    EXPECT_EQ(film.project.createdAt, Production::planned);
    EXPECT_EQ(film.project.updatedAt, Production::planned);
    EXPECT_EQ(film.project.status, "waiting-for-approval");
    EXPECT_EQ(film.project.phase, "plan");
    EXPECT_EQ(film.project.brief.openQuestions, std::vector<std::string>{"Who should see this film first?"});
    EXPECT_EQ(film.project.brief.targetDurationSeconds, 10);
    EXPECT_EQ(film.project.artifacts, std::vector<FilmArtifact>{});
    EXPECT_EQ(film.project.proof, FilmProof{});
    EXPECT_EQ(film.playableCutURL(), std::nullopt);
    EXPECT_EQ(film.productionPlan->plannedDurationSeconds, 10);
    EXPECT_EQ(film.productionPlan->shots.size(), 3U);
    ASSERT_TRUE(film.treatment);
    EXPECT_EQ(film.treatment->title, Production::title);
    EXPECT_EQ(film.treatment->beats.size(), 3U);
}

TEST(Planning, RequestsTheFirstGateOnly) {
    const Production production;
    const auto approvals = production.checked().project.approvals;
    FilmApproval plan{"requested", "The story in three shots", Production::planned, {}, {}, {}};
    FilmApproval frames{"pending", "One key frame for each shot", {}, {}, {}, {}};
    FilmApproval roughCut{"pending", "The film with all shots and sounds in place", {}, {}, {}, {}};
    FilmApproval delivery{"pending", "The finished film and its reviews", {}, {}, {}, {}};
    EXPECT_EQ(approvals,
              (std::map<std::string, FilmApproval>{
                  {"plan", plan}, {"frames", frames}, {"rough-cut", roughCut}, {"delivery", delivery}}));
}

TEST(Planning, MakesShotsAsLongAsTheFilm) {
    const Production production;
    for (const std::int64_t seconds : {1, 2, 7, 90, 3600}) {
        SCOPED_TRACE(seconds);
        const fs::path run =
            production.film.plan("i", "t", seconds, production.directory / std::to_string(seconds)).get();
        const FilmWorkspaceSnapshot film = FilmProjectLoader::load(run);
        double sum = 0;
        for (const FilmProductionShot& shot : film.productionPlan->shots) {
            EXPECT_GT(shot.durationSeconds, 0);
            sum += shot.durationSeconds;
        }
        EXPECT_EQ(sum, static_cast<double>(seconds));
    }
}

TEST(Planning, RefusesInvalidRequests) {
    const Production production;
    const std::string folder = production.folder.string();
    const std::string none = (production.directory / "none/run.json").string();
    const std::string run = production.run.string();
    const auto refused = [&](auto task, std::vector<std::string> arguments, const std::string& message) {
        SCOPED_TRACE(message);
        const FilmToolError error = errorOf(std::move(task));
        EXPECT_EQ(error, production.refusal(std::move(arguments), message));
        EXPECT_EQ(error.errorDescription(), message);
    };
    const FilmWorkspaceSnapshot before = production.checked();
    const FilmToolClient& film = production.film;
    refused(film.plan("i", "t", 3, folder),
            {"plan", "--idea", "i", "--title", "t", "--duration", "3", "--output-dir", folder},
            "The folder \"" + folder + "\" already holds a film.\n");
    refused(film.plan("", "t", 3, "/nowhere"),
            {"plan", "--idea", "", "--title", "t", "--duration", "3", "--output-dir", "/nowhere"},
            "A film needs a title and an idea.\n");
    refused(film.status(none), {"status", none}, "there is no film at \"" + none + "\"\n");
    refused(film.review(run), {"review", run}, "There are no clips to review yet.\n");
    refused(film.reroll(run, "shot-01", "n"), {"reroll", run, "--shot", "shot-01", "--note", "n"},
            "The shot \"shot-01\" has no take yet.\n");
    refused(film.reroll(run, "shot-9", "n"), {"reroll", run, "--shot", "shot-9", "--note", "n"},
            "This film has no shot \"shot-9\".\n");
    refused(film.approve(run, "lunch", "n", "m"),
            {"approve", run, "--gate", "lunch", "--note", "n", "--approved-by", "m"},
            "This film has no gate \"lunch\".\n");
    EXPECT_EQ(production.checked(), before);
}

TEST(Planning, ReportsAMissingTool) {
    const Production production;
    const std::string missing = (production.directory / "no film").string();
    EXPECT_EQ(errorOf(FilmToolClient(missing).status(production.run)),
              FilmToolError(FilmToolError::executableNotFound{missing}));
}

} // namespace
} // namespace kinovane::test

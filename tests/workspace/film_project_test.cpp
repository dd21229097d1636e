// SPDX-License-Identifier: Apache-2.0

#include <string>

#include <gtest/gtest.h>

#include <kinovane/workspace.hpp>

#include "support/sample_film.hpp"
#include "workspace/project_text.hpp"

namespace kinovane::test {
namespace {

TEST(FilmProject, HasEmptyListsAndAnEmptyBriefInTheSmallestDocument) {
    const auto project = decodeJSON<FilmProject>(smallestProject());
    EXPECT_TRUE(project.brief == FilmBrief{});
    EXPECT_TRUE(project.approvals.empty());
    EXPECT_TRUE(project.departments.empty());
    EXPECT_TRUE(project.shots.empty());
    EXPECT_TRUE(project.reviewRequests.empty());
    EXPECT_TRUE(project.jobs.empty());
    EXPECT_TRUE(project.artifacts.empty());
    EXPECT_TRUE(project.issues.empty());
    EXPECT_EQ(project.production.models.music, "h");
    EXPECT_EQ(project.proof.completedCount(), 9);
}

struct RefusalRow {
    const char* sentence;
    std::string document;
    const char* path;
    const char* message;
};

TEST(FilmProject, ReportsThePathOfAWrongValue) {
    const RefusalRow rows[] = {
        {"a required list is missing", projectWith(R"(,"issues":[])", ""), "issues", "issues is missing"},
        {"an approval without status", projectWith(R"("approvals":{})", R"("approvals":{"rough-cut":{}})"),
         "approvals.rough-cut.status", "approvals.rough-cut.status is missing"},
        {"an approval that is null", projectWith(R"("approvals":{})", R"("approvals":{"gate":null})"),
         "approvals.gate", "approvals.gate: expected an object, found null"},
        {"the size of an artifact",
         projectWith(R"("artifacts":[])",
                     R"("artifacts":[{"bytes":1,"contentType":"","createdAt":"","kind":"","path":"",)"
                     R"("sha256":"","source":""},{"bytes":"many"}])"),
         "artifacts[1].bytes", "artifacts[1].bytes: expected an integer, found a string"},
        {"a dependency of a task",
         projectWith(R"("departments":[])",
                     R"("departments":[{"id":"","role":"","phase":"","dependsOn":["a",7],)"
                     R"("synthesis":true,"status":"","attempts":0}])"),
         "departments[0].dependsOn[1]", "departments[0].dependsOn[1]: expected a string, found a number"},
        {"a model is missing", projectWith(R"("video":"c",)", ""), "production.models.video",
         "production.models.video is missing"},
        {"a value of the brief", projectWith(R"("brief":{})", R"("brief":{"target":{"usage":1}})"),
         "brief.target.usage", "brief.target.usage: expected a string, found a number"},
        {"a step of the proof", projectWith(R"("captions":false)", R"("captions":0)"), "proof.captions",
         "proof.captions: expected true or false, found a number"},
        {"the first of two errors in declared order", projectWith(R"("jobs":[])", R"("jobs":[{}])"),
         "jobs[0].id", "jobs[0].id is missing"},
    };
    for (const RefusalRow& row : rows) {
        SCOPED_TRACE(row.sentence);
        try {
            static_cast<void>(decodeJSON<FilmProject>(row.document));
            ADD_FAILURE() << "the document was accepted";
        } catch (const JSONDecodingError& error) {
            EXPECT_EQ(error.path(), row.path);
            EXPECT_STREQ(error.what(), row.message);
        }
    }
}

TEST(FilmProject, HasRecordsWithComputedIdentities) {
    EXPECT_EQ((FilmReviewRequest{"shot-05", "warmer", "applied", "10:06", {}, {}}.id()), "shot-05:10:06");
    EXPECT_EQ((FilmIssue{"late", "m", false, {}}.id()), "late");
    const FilmArtifact artifact{7, "video/mp4", "monday", "shot-clip", "clips/a.mp4", "sha256:00", "camera"};
    EXPECT_EQ(artifact.id(), "shot-clip:clips/a.mp4:sha256:00");
    FilmArtifact later = artifact;
    later.createdAt = "tuesday";
    EXPECT_EQ(later.id(), artifact.id());
    EXPECT_FALSE(later == artifact);
    EXPECT_EQ(FilmArtifact{}.id(), "::");
}

TEST(FilmProof, CountsTheCompletedSteps) {
    EXPECT_EQ(FilmProof{}.completedCount(), 0);
    EXPECT_EQ((FilmProof{true, true, true, true, true, false, true, true, true, true}.completedCount()), 9);
    EXPECT_EQ((FilmProof{true, true, true, true, true, true, true, true, true, true}.completedCount()), 10);
    constexpr bool FilmProof::* steps[] = {
        &FilmProof::creation,    &FilmProof::clips,    &FilmProof::assembly,   &FilmProof::dialogue,
        &FilmProof::sound,       &FilmProof::captions, &FilmProof::inspection, &FilmProof::review,
        &FilmProof::humanReview, &FilmProof::delivery,
    };
    for (const auto step : steps) {
        FilmProof proof;
        proof.*step = true;
        EXPECT_EQ(proof.completedCount(), 1);
    }
}

TEST(FilmProject, KeepsDuplicateIdsAndUnknownReferences) {
    const auto project = decodeJSON<FilmProject>(projectWith(
        R"("shots":[],"reviewRequests":[])",
        R"("shots":[{"id":"a"},{"id":"a"}],"reviewRequests":[{"shotId":"nobody","note":"","status":"",)"
        R"("recordedAt":""}])"));
    EXPECT_EQ(project.shots.size(), 2U);
    EXPECT_EQ(project.reviewRequests.front().shotId, "nobody");
}

} // namespace
} // namespace kinovane::test

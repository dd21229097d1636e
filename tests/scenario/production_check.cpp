// SPDX-License-Identifier: Apache-2.0

#include <algorithm>
#include <map>
#include <set>

#include <gtest/gtest.h>

#include <kinovane/handoff.hpp>

#include "scenario/production.hpp"

namespace kinovane::test {

namespace fs = std::filesystem;

namespace {

std::optional<std::string> firstClosedGate(const FilmProject& project) {
    for (const std::string& gate : gates())
        if (project.approvals.at(gate).status != "approved")
            return gate;
    return std::nullopt;
}

std::map<std::string, std::int64_t> countTasks(const FilmProject& project) {
    std::map<std::string, std::int64_t> counts;
    for (const FilmDepartmentTask& task : project.departments)
        ++counts[task.status];
    return counts;
}

template <class Record>
std::int64_t countOf(const std::vector<Record>& records) {
    return static_cast<std::int64_t>(records.size());
}

/// Both documents have the same takes.
void expectSameTakes(const FilmWorkspaceSnapshot& film) {
    ASSERT_TRUE(film.productionPlan);
    ASSERT_EQ(film.productionPlan->shots.size(), film.project.shots.size());
    for (std::size_t index = 0; index < film.project.shots.size(); ++index) {
        const FilmShotState& state = film.project.shots[index];
        const FilmProductionShot& planned = film.productionPlan->shots[index];
        EXPECT_EQ(state.id, planned.id);
        if (state.take) {
            EXPECT_EQ(state.take, planned.take);
            EXPECT_EQ(state.status, planned.status);
            EXPECT_EQ(state.selectedCandidate, planned.selectedCandidate);
            EXPECT_EQ(planned.selectedSeed, planned.seed + planned.take - 1);
        }
    }
}

} // namespace

void expectSame(const FilmStatusResponse& status, const FilmWorkspaceSnapshot& documents) {
    const FilmProject& project = documents.project;
    FilmStatusResponse expected;
    expected.contractVersion = "quexrun/film-status.v1";
    expected.runId = status.runId; // In no document that the library reads.
    expected.projectId = project.projectId;
    expected.title = project.title;
    expected.status = project.status;
    expected.phase = project.phase;
    expected.nextGate = firstClosedGate(project);
    expected.openQuestions = project.brief.openQuestions;
    expected.approvals = project.approvals;
    expected.taskCounts = countTasks(project);
    expected.shots = countOf(project.shots);
    expected.reviewRequests = project.reviewRequests;
    expected.jobs = countOf(project.jobs);
    expected.artifacts = countOf(project.artifacts);
    expected.issues = project.issues;
    expected.proof = project.proof;
    expected.productionMode = project.production.mode;
    expected.takesPerShot = project.production.takesPerShot;
    expected.projectDirectory = documents.root.string();
    expected.runManifest = documents.runManifest.string();
    if (const auto package = documents.latestArtifact("review-package"))
        expected.reviewPackage = documents.artifactURL(*package).string();
    EXPECT_EQ(encodeJSON(status), encodeJSON(expected));
    EXPECT_TRUE(status.runId.starts_with("run-")) << status.runId;
    expectSameTakes(documents);
}

void expectFilesAsRecorded(const FilmWorkspaceSnapshot& film) {
    std::set<std::string> recorded;
    for (const FilmArtifact& artifact : film.project.artifacts) {
        SCOPED_TRACE(artifact.path);
        const fs::path file = film.artifactURL(artifact);
        EXPECT_TRUE(recorded.insert(artifact.path).second) << "recorded twice";
        ASSERT_TRUE(fs::is_regular_file(file));
        EXPECT_EQ(fs::file_size(file), static_cast<std::uintmax_t>(artifact.bytes));
        EXPECT_GT(artifact.bytes, 0);
        EXPECT_EQ(VistrelHandoffBuilder::sha256(file), artifact.sha256);
    }
    std::set<std::string> expected = recorded;
    expected.insert(
        {"run.json", "film-project.json", "production-plan.json", "treatment.json", "film-tool-log.jsonl"});
    std::set<std::string> found;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(film.root))
        if (!entry.is_directory())
            found.insert(entry.path().lexically_relative(film.root).string());
    EXPECT_EQ(found, expected);
}

} // namespace kinovane::test

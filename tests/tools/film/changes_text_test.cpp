// SPDX-License-Identifier: Apache-2.0

#include "film/changes_text.hpp"

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "support/sample_film.hpp"
#include "terminal/style.hpp"

namespace kinovane::tool {

namespace {

FilmApproval approvalOf(const char* status, std::optional<std::string> by = {}) {
    return {status, {}, {}, {}, std::move(by), {}};
}

FilmShotState stateOf(const char* id, std::optional<std::string> status,
                      std::optional<std::int64_t> take = {}) {
    return {id, std::move(status), take, {}};
}

FilmArtifact artifactOf(const char* kind, const char* path, std::int64_t bytes = 1) {
    return {bytes, "", "", kind, path, "", ""};
}

struct Row {
    const char* sentence;
    std::function<void(FilmWorkspaceSnapshot& before, FilmWorkspaceSnapshot& after)> change;
    const char* expected;
};

const std::vector<Row> rows{
    {"nothing", [](auto&, auto&) {}, "Nothing changed.\n"},
    {"what is not compared", [](auto&, auto& after) { after.project.updatedAt = "now"; },
     "Nothing changed.\n"},
    {"phase and status",
     [](auto& before, auto& after) {
         before.project.phase = "plan";
         after.project.phase = "cl\x1bips";
         after.project.status = "completed";
     },
     "  Phase   plan → cl\\x1bips\n  Status   → completed\n"},
    {"approvals",
     [](auto& before, auto& after) {
         before.project.approvals = {{"a", approvalOf("requested")}, {"b", approvalOf("pending")}};
         after.project.approvals = {{"a", approvalOf("approved", "Ana")}, {"c", approvalOf("requested")}};
     },
     "  Approval  a: requested → approved, by Ana\n"
     "  Approval  b: removed\n"
     "  Approval  c: requested\n"},
    {"shots that changed alike share a line",
     [](auto& before, auto& after) {
         before.project.shots = {stateOf("s1", "planned"), stateOf("s2", "planned"),
                                 stateOf("s3", "accepted", 1), stateOf("s4", {})};
         after.project.shots = {stateOf("s1", "framed", 1), stateOf("s2", "framed", 1),
                                stateOf("s3", "accepted", 2), stateOf("s5", "planned")};
     },
     "  Shots  s1, s2: planned → framed, take 1\n"
     "  Shots  s3: accepted, take 1 → accepted, take 2\n"
     "  Shots  s4: removed\n"
     "  Shots  s5: new, planned\n"},
    {"planned shots, but not their state",
     [](auto& before, auto& after) {
         before.productionPlan.emplace().shots = {test::shotOf("s1", 1), test::shotOf("s2", 1)};
         after.productionPlan.emplace().shots = {test::shotOf("s1", 2), test::shotOf("s2", 1),
                                                 test::shotOf("s3", 1)};
         after.productionPlan->shots[1].status = "framed";
         after.productionPlan->shots[1].take = 2;
     },
     "  Plan  different for s1, s3\n"},
    {"files",
     [](auto& before, auto& after) {
         before.project.artifacts = {artifactOf("cut", "a"), artifactOf("score", "b"),
                                     artifactOf("clip", "c")};
         after.project.artifacts = {artifactOf("clip", "c", 2), artifactOf("clip", "d"),
                                    artifactOf("clip", "e"), artifactOf("poster", "f")};
     },
     "  Files  3 new: 2×clip, poster\n"
     "  Files  1 changed: clip\n"
     "  Files  2 removed: cut, score\n"},
    {"issues",
     [](auto& before, auto& after) {
         before.project.issues = {{"a", "The door is silent.", false, {}}};
         after.project.issues = {{"b", "No key frame.", true, {}}, {"c", "The score is long.", false, {}}};
     },
     "  Issue  solved: The door is silent.\n"
     "  Issue  BLOCKING No key frame.\n"
     "  Issue  The score is long.\n"},
    {"proof",
     [](auto& before, auto& after) {
         before.project.proof.clips = true;
         after.project.proof.humanReview = true;
         after.project.proof.delivery = true;
     },
     "  Proof  complete: human review, delivery\n"
     "  Proof  to be done again: clips\n"},
};

TEST(ChangesText, TellsWhatChanged) {
    for (const auto& [sentence, change, expected] : rows) {
        FilmWorkspaceSnapshot before;
        FilmWorkspaceSnapshot after;
        change(before, after);
        EXPECT_EQ(rendered(changesText(changes(before, after), 100), false), expected) << sentence;
    }
}

TEST(ChangesText, HasAnObjectInJSON) {
    FilmWorkspaceSnapshot before;
    FilmWorkspaceSnapshot after;
    before.project.phase = "plan";
    after.project.phase = "clips";
    after.project.shots = {stateOf("s1", "planned")};
    after.project.proof.clips = true;
    EXPECT_EQ(
        boost::json::serialize(changesJSON(changes(before, after))),
        R"({"phase":{"before":"plan","after":"clips"},"status":null,"approvals":[],)"
        R"("shots":[{"id":"s1","before":null,"after":{"id":"s1","status":"planned"}}],"plannedShots":[],)"
        R"("artifacts":[],"issues":[],"proofSteps":[{"id":"clips","before":false,"after":true}]})");
}

} // namespace

} // namespace kinovane::tool

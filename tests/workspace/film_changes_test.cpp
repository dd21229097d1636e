// SPDX-License-Identifier: Apache-2.0

#include <functional>

#include <gtest/gtest.h>

#include <kinovane/film_changes.hpp>

#include "support/sample_film.hpp"

namespace kinovane::test {
namespace {

FilmArtifact artifactAt(std::string path, std::int64_t bytes) {
    return {bytes, "video/mp4", "2026-01-01T00:00:00Z", "shot-clip", std::move(path), "sha256:", "test"};
}

FilmIssue issueOf(std::string code, std::string message) {
    return {std::move(code), std::move(message), false, std::nullopt};
}

FilmApproval approvalOf(std::string status) {
    FilmApproval approval;
    approval.status = std::move(status);
    return approval;
}

TEST(FilmChanges, NameWhatIsDifferent) {
    struct Row {
        std::string_view sentence;
        std::function<void(FilmWorkspaceSnapshot& before, FilmWorkspaceSnapshot& after)> prepare;
        FilmChanges expected;
    };
    const std::vector<Row> rows{
        {"nothing", [](auto&, auto&) {}, {}},
        {"the phase",
         [](auto&, auto& after) { after.project.phase = "later"; },
         {.phase = FilmTextChange{"p", "later"}}},
        {"the status",
         [](auto&, auto& after) { after.project.status = "done"; },
         {.status = FilmTextChange{"s", "done"}}},
        {"a gate appeared",
         [](auto&, auto& after) { after.project.approvals["plan"] = approvalOf("open"); },
         {.approvals = {{"plan", std::nullopt, approvalOf("open")}}}},
        {"a gate went",
         [](auto& before, auto&) { before.project.approvals["plan"] = approvalOf("open"); },
         {.approvals = {{"plan", approvalOf("open"), std::nullopt}}}},
        {"a gate was approved",
         [](auto& before, auto& after) {
             before.project.approvals["plan"] = approvalOf("open");
             after.project.approvals["plan"] = approvalOf("approved");
         },
         {.approvals = {{"plan", approvalOf("open"), approvalOf("approved")}}}},
        {"a shot's state changed",
         [](auto& before, auto& after) {
             before.project.shots = {{"s1", "queued", 1, std::nullopt}};
             after.project.shots = {{"s1", "done", 2, std::nullopt}};
         },
         {.shots = {{"s1", FilmShotState{"s1", "queued", 1, std::nullopt},
                     FilmShotState{"s1", "done", 2, std::nullopt}}}}},
        {"the order of shots does not matter",
         [](auto& before, auto& after) {
             before.project.shots = {{"s1", {}, {}, {}}, {"s2", {}, {}, {}}};
             after.project.shots = {{"s2", {}, {}, {}}, {"s1", {}, {}, {}}};
         },
         {}},
        {"a planned shot appeared",
         [](auto&, auto& after) { after.productionPlan->shots.push_back(shotOf("s2", 2)); },
         {.plannedShots = {{"s2", std::nullopt, shotOf("s2", 2)}}}},
        {"the plan went",
         [](auto&, auto& after) { after.productionPlan.reset(); },
         {.plannedShots = {{"s1", shotOf("s1", 1.5), std::nullopt}}}},
        {"artifacts: changed and gone before appeared",
         [](auto& before, auto& after) {
             before.project.artifacts = {artifactAt("a", 1), artifactAt("b", 1), artifactAt("c", 1)};
             after.project.artifacts = {artifactAt("d", 1), artifactAt("c", 2), artifactAt("a", 1)};
         },
         {.artifacts = {{"b", artifactAt("b", 1), std::nullopt},
                        {"c", artifactAt("c", 1), artifactAt("c", 2)},
                        {"d", std::nullopt, artifactAt("d", 1)}}}},
        {"artifacts with one path are compared in their order",
         [](auto& before, auto& after) {
             before.project.artifacts = {artifactAt("a", 1), artifactAt("a", 2)};
             after.project.artifacts = {artifactAt("a", 1), artifactAt("a", 3), artifactAt("a", 4)};
         },
         {.artifacts = {{"a", artifactAt("a", 2), artifactAt("a", 3)},
                        {"a", std::nullopt, artifactAt("a", 4)}}}},
        {"an issue was solved",
         [](auto& before, auto&) { before.project.issues = {issueOf("i", "m")}; },
         {.issues = {{"i", issueOf("i", "m"), std::nullopt}}}},
        {"a production step was completed",
         [](auto&, auto& after) { after.project.proof.captions = true; },
         {.proofSteps = {{"captions", false, true}}}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        const WorkspaceMaker maker;
        FilmWorkspaceSnapshot before = maker.snapshot;
        before.project.phase = "p";
        before.project.status = "s";
        FilmWorkspaceSnapshot after = before;
        row.prepare(before, after);
        const FilmChanges found = changes(before, after);
        EXPECT_EQ(found, row.expected);
        EXPECT_EQ(found.empty(), row.expected == FilmChanges());
    }
}

TEST(FilmProof, GivesItsStepsInOrder) {
    FilmProof proof;
    proof.humanReview = true;
    std::string steps;
    for (const FilmProofStep& step : proof.steps())
        steps += std::string(step.key) + (step.complete ? "+ " : " ");
    EXPECT_EQ(steps,
              "creation clips assembly dialogue sound captions inspection review humanReview+ delivery ");
}

} // namespace
} // namespace kinovane::test

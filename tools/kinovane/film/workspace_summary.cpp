// SPDX-License-Identifier: Apache-2.0

#include "film/workspace_summary.hpp"

#include <algorithm>
#include <array>
#include <functional>
#include <iterator>
#include <limits>
#include <system_error>

namespace kinovane::tool {

namespace fs = std::filesystem;

namespace {

std::array<ProofStep, 10> stepsOf(const FilmProof& proof) {
    return {{{"creation", "creation", proof.creation},
             {"clips", "clips", proof.clips},
             {"assembly", "assembly", proof.assembly},
             {"dialogue", "dialogue", proof.dialogue},
             {"sound", "sound", proof.sound},
             {"captions", "captions", proof.captions},
             {"inspection", "inspection", proof.inspection},
             {"review", "review", proof.review},
             {"humanReview", "human review", proof.humanReview},
             {"delivery", "delivery", proof.delivery}}};
}

std::int64_t sum(std::int64_t left, std::int64_t right) {
    std::int64_t result = 0;
    if (!__builtin_add_overflow(left, right, &result))
        return result;
    return right < 0 ? std::numeric_limits<std::int64_t>::min() : std::numeric_limits<std::int64_t>::max();
}

/// The film tool closes a request by applying or dismissing it; with any other status the request is open.
bool isWaiting(const FilmReviewRequest& request) {
    return !request.appliedAt && request.status != "applied" && request.status != "dismissed";
}

} // namespace

std::string_view proofStepName(std::string_view key) {
    const std::array<ProofStep, 10> steps = stepsOf({});
    const auto found = std::ranges::find(steps, key, &ProofStep::key);
    return found == steps.end() ? key : found->name;
}

void ArtifactCount::add(const FilmArtifact& artifact) {
    ++files;
    bytes = sum(bytes, artifact.bytes);
}

WorkspaceSummary::WorkspaceSummary(const FilmWorkspaceSnapshot& workspace)
    : playableCut(workspace.playableCutURL()) {
    const FilmProject& project = workspace.project;
    std::ranges::copy_if(stepsOf(project.proof), std::back_inserter(missingSteps),
                         std::not_fn(&ProofStep::done));
    for (const FilmShotState& shot : project.shots)
        if (shot.status)
            ++shotsByStatus[*shot.status];
        else
            ++shotsWithoutStatus;
    for (const FilmArtifact& artifact : project.artifacts) {
        artifactsByKind[artifact.kind].add(artifact);
        artifacts.add(artifact);
    }
    std::ranges::copy_if(project.issues, std::back_inserter(issues), &FilmIssue::blocking);
    std::ranges::copy_if(project.issues, std::back_inserter(issues), std::not_fn(&FilmIssue::blocking));
    std::ranges::copy_if(project.reviewRequests, std::back_inserter(waitingRequests), isWaiting);
}

} // namespace kinovane::tool

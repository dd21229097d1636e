// SPDX-License-Identifier: Apache-2.0

#include "film/workspace_summary.hpp"

#include <algorithm>
#include <functional>
#include <iterator>
#include <limits>

namespace kinovane::tool {

namespace {

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

std::string_view proofStepName(std::string_view key) { return key == "humanReview" ? "human review" : key; }

std::vector<FilmReviewRequest> waitingRequestsOf(const FilmProject& project) {
    std::vector<FilmReviewRequest> waiting;
    std::ranges::copy_if(project.reviewRequests, std::back_inserter(waiting), isWaiting);
    return waiting;
}

void ArtifactCount::add(const FilmArtifact& artifact) {
    ++files;
    bytes = sum(bytes, artifact.bytes);
}

WorkspaceSummary::WorkspaceSummary(const FilmWorkspaceSnapshot& workspace)
    : waitingRequests(waitingRequestsOf(workspace.project)), playableCut(workspace.playableCutURL()) {
    const FilmProject& project = workspace.project;
    std::ranges::copy_if(project.proof.steps(), std::back_inserter(missingSteps),
                         std::not_fn(&FilmProofStep::complete));
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
}

} // namespace kinovane::tool

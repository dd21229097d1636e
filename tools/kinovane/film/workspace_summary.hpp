// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <kinovane/workspace.hpp>

namespace kinovane::tool {

/// The text that is shown for a step of the proof: "human review" for the key "humanReview".
std::string_view proofStepName(std::string_view key);

/// The review requests that were neither applied nor dismissed.
std::vector<FilmReviewRequest> waitingRequestsOf(const FilmProject& project);

struct ArtifactCount {
    std::uint64_t files = 0;
    std::int64_t bytes = 0; ///< As recorded; the sum saturates at the limits of the type.

    void add(const FilmArtifact& artifact);
};

/// The counts and lists that `inspect` shows. The constructor accesses the disk, to find the playable cut.
struct WorkspaceSummary {
    explicit WorkspaceSummary(const FilmWorkspaceSnapshot& workspace);

    std::vector<FilmProofStep> missingSteps;
    std::map<std::string, std::uint64_t> shotsByStatus;
    std::uint64_t shotsWithoutStatus = 0;
    std::map<std::string, ArtifactCount> artifactsByKind;
    ArtifactCount artifacts;
    std::vector<FilmIssue> issues; ///< Blocking issues first.
    std::vector<FilmReviewRequest> waitingRequests;
    std::optional<std::filesystem::path> playableCut;
};

} // namespace kinovane::tool

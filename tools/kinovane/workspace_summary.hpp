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

/// One of the ten steps of the proof.
struct ProofStep {
    std::string_view key;  ///< As the project document spells it.
    std::string_view name; ///< As a person says it.
    bool done;
};

struct ArtifactCount {
    std::uint64_t files = 0;
    std::int64_t bytes = 0; ///< As recorded; sums stop at the ends of their range.

    void add(const FilmArtifact& artifact);
};

/// What is counted and chosen from a workspace before it is shown.
struct WorkspaceSummary {
    explicit WorkspaceSummary(const FilmWorkspaceSnapshot& workspace);

    std::vector<ProofStep> missingSteps;
    std::map<std::string, std::uint64_t> shotsByStatus;
    std::uint64_t shotsWithoutStatus = 0;
    std::map<std::string, ArtifactCount> artifactsByKind;
    ArtifactCount artifacts;
    std::vector<FilmIssue> issues; ///< Those that block the film first.
    std::vector<FilmReviewRequest> waitingRequests;
    std::optional<std::filesystem::path> playableCut;
};

/// The run manifest that a person means by a place: a folder stands for the "run.json" in it.
std::filesystem::path runManifestAt(const std::filesystem::path& place);

} // namespace kinovane::tool

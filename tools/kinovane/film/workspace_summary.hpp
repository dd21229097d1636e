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
    std::string_view key;  ///< The key in the project document.
    std::string_view name; ///< The text that is shown.
    bool done;
};

struct ArtifactCount {
    std::uint64_t files = 0;
    std::int64_t bytes = 0; ///< As recorded; the sum saturates at the limits of the type.

    void add(const FilmArtifact& artifact);
};

/// The counts and lists that `inspect` shows.
struct WorkspaceSummary {
    explicit WorkspaceSummary(const FilmWorkspaceSnapshot& workspace);

    std::vector<ProofStep> missingSteps;
    std::map<std::string, std::uint64_t> shotsByStatus;
    std::uint64_t shotsWithoutStatus = 0;
    std::map<std::string, ArtifactCount> artifactsByKind;
    ArtifactCount artifacts;
    std::vector<FilmIssue> issues; ///< Blocking issues first.
    std::vector<FilmReviewRequest> waitingRequests;
    std::optional<std::filesystem::path> playableCut;
};

/// The path of the run manifest: for a folder the "run.json" in it, otherwise the given path.
std::filesystem::path runManifestAt(const std::filesystem::path& location);

} // namespace kinovane::tool

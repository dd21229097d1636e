// SPDX-License-Identifier: Apache-2.0

#include <algorithm>
#include <array>

#include <kinovane/workspace.hpp>

#include "common/files/location.hpp"

namespace kinovane {

std::filesystem::path FilmWorkspaceSnapshot::artifactURL(const FilmArtifact& artifact) const {
    return root / artifact.path; // Operator / returns an absolute right operand unchanged.
}

std::optional<FilmArtifact> FilmWorkspaceSnapshot::latestArtifact(std::string_view kind) const {
    const auto latest = std::find_if(project.artifacts.rbegin(), project.artifacts.rend(),
                                     [&](const FilmArtifact& artifact) { return artifact.kind == kind; });
    if (latest == project.artifacts.rend())
        return std::nullopt;
    return *latest;
}

std::optional<std::filesystem::path> FilmWorkspaceSnapshot::playableCutURL() const {
    static constexpr std::array<std::string_view, 3> bestFirst{"delivery-master", "final-master",
                                                               "rough-cut"};
    for (const std::string_view kind : bestFirst) {
        if (const auto artifact = latestArtifact(kind)) {
            std::filesystem::path location = artifactURL(*artifact);
            if (root.empty() && location.is_relative())
                continue; // It would be looked up below the working directory.
            if (isKnownToExist(location))
                return location;
        }
    }
    return std::nullopt;
}

} // namespace kinovane

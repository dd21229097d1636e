// SPDX-License-Identifier: Apache-2.0

#include <kinovane/handoff.hpp>

#include "handoff/exported_kinds.hpp"
#include "handoff/verification.hpp"

namespace kinovane {

std::vector<ArtifactOutcome> VistrelHandoffBuilder::audit(const FilmWorkspaceSnapshot& snapshot,
                                                          const HandoffBuildOptions& options) {
    return examineAll(snapshot.root, exportedArtifacts(snapshot.project), options);
}

std::vector<ArtifactOutcome> VistrelHandoffBuilder::examine(const std::filesystem::path& root,
                                                            std::span<const FilmArtifact> artifacts,
                                                            const HandoffBuildOptions& options) {
    std::vector<const FilmArtifact*> pointers;
    pointers.reserve(artifacts.size());
    for (const FilmArtifact& artifact : artifacts)
        pointers.push_back(&artifact);
    return examineAll(root, pointers, options);
}

} // namespace kinovane

// SPDX-License-Identifier: Apache-2.0

#include <exception>

#include <kinovane/handoff.hpp>

#include "handoff/artifact_outcome.hpp"
#include "handoff/verification.hpp"

namespace kinovane {

std::vector<ArtifactOutcome> VistrelHandoffBuilder::audit(const FilmWorkspaceSnapshot& snapshot,
                                                          const HandoffBuildOptions& options) {
    const std::vector<const FilmArtifact*> artifacts = exportedArtifacts(snapshot.project);
    std::vector<ArtifactOutcome> outcomes;
    outcomes.reserve(artifacts.size());
    for (const FilmArtifact* artifact : artifacts)
        outcomes.push_back({*artifact, std::nullopt, {}});
    examineAll(snapshot.root, artifacts, options, [&](std::size_t index, const std::exception_ptr& failure) {
        outcomes[index] = outcomeOf(*artifacts[index], failure);
    });
    return outcomes;
}

} // namespace kinovane

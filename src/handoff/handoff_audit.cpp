// SPDX-License-Identifier: Apache-2.0

#include <exception>
#include <system_error>

#include <kinovane/handoff.hpp>

#include "handoff/verification.hpp"

namespace kinovane {

namespace {

/// Only a failure of the artifact becomes its outcome; any other exception is rethrown and ends the audit.
void note(ArtifactOutcome& outcome, const std::exception_ptr& failure) {
    try {
        std::rethrow_exception(failure);
    } catch (const VistrelHandoffError& error) {
        outcome.refusal = error;
    } catch (const std::system_error& error) {
        outcome.failure = error.code();
    }
}

} // namespace

bool ArtifactOutcome::sound() const noexcept { return !refusal && !failure; }

std::string ArtifactOutcome::description() const {
    if (refusal)
        return refusal->errorDescription();
    if (failure)
        return "The handoff artifact could not be read: " + artifact.path + " (" + failure.message() + ")";
    return "The handoff artifact is sound: " + artifact.path;
}

std::vector<ArtifactOutcome> VistrelHandoffBuilder::audit(const FilmWorkspaceSnapshot& snapshot,
                                                          const HandoffBuildOptions& options) {
    const std::vector<const FilmArtifact*> artifacts = exportedArtifacts(snapshot.project);
    std::vector<ArtifactOutcome> outcomes;
    outcomes.reserve(artifacts.size());
    for (const FilmArtifact* artifact : artifacts)
        outcomes.push_back({*artifact, std::nullopt, {}});
    examineAll(snapshot.root, artifacts, options,
               [&](std::size_t index, const std::exception_ptr& failure) { note(outcomes[index], failure); });
    return outcomes;
}

} // namespace kinovane

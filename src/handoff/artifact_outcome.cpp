// SPDX-License-Identifier: Apache-2.0

#include "handoff/artifact_outcome.hpp"

#include <system_error>

namespace kinovane {

ArtifactOutcome outcomeOf(const FilmArtifact& artifact, const std::exception_ptr& failure) {
    ArtifactOutcome outcome;
    outcome.artifact = artifact;
    if (!failure)
        return outcome;
    try {
        std::rethrow_exception(failure);
    } catch (const VistrelHandoffError& error) {
        outcome.refusal = error;
    } catch (const std::system_error& error) {
        outcome.failure = error.code();
    } catch (const JSONEncodingError& /*error*/) {
        outcome.failure = std::make_error_code(std::errc::illegal_byte_sequence); // Its path is not UTF-8.
    }
    return outcome;
}

bool ArtifactOutcome::sound() const noexcept { return !refusal && !failure && !sizeDiffers; }

std::string ArtifactOutcome::description() const {
    if (refusal)
        return refusal->errorDescription();
    if (failure)
        return "The handoff artifact could not be read: " + artifact.path + " (" + failure.message() + ")";
    if (sizeDiffers)
        return "Film artifact size does not match: " + artifact.path + ": " +
               std::to_string(actualBytes.value_or(0)) + " bytes, recorded " + std::to_string(artifact.bytes);
    return "The handoff artifact is sound: " + artifact.path;
}

} // namespace kinovane

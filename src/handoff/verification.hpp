// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <exception>
#include <filesystem>
#include <functional>
#include <vector>

#include <kinovane/handoff.hpp>

#include "handoff/artifact_examiner.hpp"

namespace kinovane {

/// What is done with the outcomes of a verification. Both are called on the worker that found out, never for
/// one index twice.
struct VerificationOutcomes {
    /// The artifact is sound. An exception out of it makes it a bad one.
    std::function<void(std::size_t index, ArtifactExaminer& examiner)> onSound;
    /// Examining the artifact threw this.
    std::function<void(std::size_t index, std::exception_ptr failure)> onBad;
    /// Whether only the first bad artifact matters, and those before it.
    bool stopAtFirstFailure = false;
};

/// The artifacts of a project that go into a handoff.
std::vector<const FilmArtifact*> exportedArtifacts(const FilmProject& project);

/// Examines these artifacts of a project. Throws what the progress callback throws, std::system_error
/// (operation_canceled) when a stop was requested, and, unless the first bad artifact ends it,
/// std::filesystem::filesystem_error when a file has to be opened and the project's directory cannot be.
void verify(const std::filesystem::path& root, const std::vector<const FilmArtifact*>& artifacts,
            const HandoffBuildOptions& options, const VerificationOutcomes& outcomes);

} // namespace kinovane

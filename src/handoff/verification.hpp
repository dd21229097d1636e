// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <vector>

#include <kinovane/handoff.hpp>

namespace kinovane {

/// Requires that every one of these artifacts is sound and has a path that JSON can hold. Throws the failure
/// of the first one in the list that is not (VistrelHandoffError, JSONEncodingError, or
/// std::filesystem::filesystem_error); whatever the progress callback throws; and std::system_error
/// (operation_canceled) when a stop was requested. With one worker nothing after that artifact is opened.
void requireSound(const std::filesystem::path& root, const std::vector<const FilmArtifact*>& artifacts,
                  const HandoffBuildOptions& options);

/// Examines all of these artifacts and returns their outcomes in the same order. Throws whatever the
/// callbacks throw; std::system_error (operation_canceled) when a stop was requested; and
/// std::filesystem::filesystem_error when a file has to be opened and the project's directory cannot be.
std::vector<ArtifactOutcome> examineAll(const std::filesystem::path& root,
                                        const std::vector<const FilmArtifact*>& artifacts,
                                        const HandoffBuildOptions& options);

} // namespace kinovane

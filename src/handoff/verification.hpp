// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <exception>
#include <filesystem>
#include <functional>
#include <vector>

#include <kinovane/handoff.hpp>

namespace kinovane {

/// The artifacts of a project that go into a handoff.
std::vector<const FilmArtifact*> exportedArtifacts(const FilmProject& project);

/// Requires that every one of these artifacts is sound and has a path that JSON can hold. Throws the failure
/// of the first one in the list that is not (VistrelHandoffError, JSONEncodingError, or
/// std::filesystem::filesystem_error); whatever the progress callback throws; and std::system_error
/// (operation_canceled) when a stop was requested. With one worker nothing after that artifact is opened.
void requireSound(const std::filesystem::path& root, const std::vector<const FilmArtifact*>& artifacts,
                  const HandoffBuildOptions& options);

/// Receives the index of a bad artifact and the exception that its examination threw. Called from a worker
/// thread, by one at a time, and once for each bad artifact.
using OnBadArtifact = std::function<void(std::size_t index, const std::exception_ptr& failure)>;

/// Examines all of these artifacts and reports the bad ones. Throws whatever the progress callback throws;
/// std::system_error (operation_canceled) when a stop was requested; and std::filesystem::filesystem_error
/// when a file has to be opened and the project's directory cannot be.
void examineAll(const std::filesystem::path& root, const std::vector<const FilmArtifact*>& artifacts,
                const HandoffBuildOptions& options, const OnBadArtifact& onBad);

} // namespace kinovane

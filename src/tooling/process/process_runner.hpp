// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include <kinovane/process.hpp>
#include <kinovane/run_options.hpp>

namespace kinovane {

/// Runs a program, waits for its end on this thread, and returns everything that it wrote. A relative working
/// directory in `options` is relative to that of this process now.
///
/// Throws FilmToolError: commandFailed if the exit status is not 0; launchFailed if the program could not be
/// started, or if it was and its output or exit status could not be read. Throws RunStopped if the run was
/// stopped, what `onOutput` throws, and std::bad_alloc. If the options ask for none of these, it throws
/// nothing but FilmToolError and std::bad_alloc.
ProcessResult runSynchronously(const std::filesystem::path& executableURL, std::vector<std::string> arguments,
                               const RunOptions& options = {});

} // namespace kinovane

// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include <kinovane/process.hpp>

namespace kinovane {

/// Runs a program, waits for its end on this thread, and returns everything that it wrote. `environment` is
/// added to this process's environment.
///
/// Throws FilmToolError: commandFailed if the exit status is not 0; launchFailed if the program could not be
/// started, or if it was and its output or exit status could not be read. Throws nothing else but
/// std::bad_alloc.
ProcessResult runSynchronously(const std::filesystem::path& executableURL, std::vector<std::string> arguments,
                               const std::map<std::string, std::string>& environment = {});

} // namespace kinovane

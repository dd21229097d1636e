// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include <kinovane/process.hpp>

namespace kinovane {

/// Runs a program to its end on this thread and gives everything it wrote. `environment` is added to this
/// process's own. Throws FilmToolError: launchFailed, also when the outcome of a program that ran
/// was lost, or commandFailed for any exit status but 0. Throws nothing else but std::bad_alloc.
ProcessResult runSynchronously(const std::filesystem::path& executableURL, std::vector<std::string> arguments,
                               const std::map<std::string, std::string>& environment = {});

} // namespace kinovane

// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <string>

#include "common/program.hpp"

namespace simulator::film {

/// The folder of the film that a command is about.
std::filesystem::path filmFolder(const Command& command);

/// Performs the command; the text to print. `cutOff` makes a run die in the middle of its first step.
std::string performCommand(const Command& command, bool cutOff);

} // namespace simulator::film

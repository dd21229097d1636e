// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <string>

#include "command_line.hpp"

namespace film {

/// The folder of the film that a command is about.
std::filesystem::path filmFolder(const Command& command);

/// Carries the command out and answers what to print. `cutOff` makes a run die in the middle of its first
/// step.
std::string perform(const Command& command, bool cutOff);

} // namespace film

// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <optional>
#include <span>
#include <string_view>

namespace vistrel {

/// The one thing this program does.
struct Command {
    std::filesystem::path manifest;
    bool dryRun = false;
};

/// The command that the arguments (without the program's name) ask for; nothing when they are not exactly one
/// of the two accepted forms. No other order and no other spelling is understood.
std::optional<Command> parseCommandLine(std::span<const std::string_view> arguments);

/// What to print when the arguments are not understood.
std::string_view usage();

} // namespace vistrel

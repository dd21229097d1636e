// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace film {

/// What the program was asked for: a command word and the values that came with it, by the names that the
/// usage gives them.
struct Command {
    std::string word;
    std::map<std::string, std::string, std::less<>> values;

    const std::string& value(std::string_view name) const { return values.find(name)->second; }
    std::optional<std::string> optionalValue(std::string_view name) const;
};

/// The command that the arguments (without the program's name) ask for; nothing when they are not exactly one
/// of the accepted forms. The order is fixed and every flag comes at most once.
std::optional<Command> parseCommandLine(std::span<const std::string_view> arguments);

/// What to print when the arguments are not understood.
std::string usage();

} // namespace film

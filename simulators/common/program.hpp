// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace simulator {

using Arguments = std::span<const std::string_view>;

/// A command word and the values given with it, by the names that the usage gives them. An option without a
/// value is there with an empty text.
struct Command {
    std::string word;
    std::map<std::string, std::string, std::less<>> values;

    const std::string& value(std::string_view name) const { return values.find(name)->second; }
    std::optional<std::string> optionalValue(std::string_view name) const;
};

/// The command lines that a program accepts, each written as in its usage: a word in angle brackets stands
/// for a value, all other words stand for themselves.
struct CommandLine {
    std::string_view program;
    std::span<const std::string_view> forms;
    std::string_view hint; ///< The last line of the usage; may be empty.

    /// The command that the arguments (without the program's name) make; nothing when they are not exactly
    /// one of the forms, in its order.
    std::optional<Command> parse(Arguments arguments) const;

    /// What to print when the arguments are not accepted.
    std::string usage() const;
};

inline constexpr int refused = 1;
inline constexpr int misused = 2;

/// The body of main: `perform` carries out the command and returns the exit status. Arguments that are not
/// accepted end with the usage and the status `misused`; an exception ends with its text and `refused`.
/// `reply` is what the program writes on standard output, for the message when that fails.
int runProgram(int argumentCount, char** argumentValues, const CommandLine& commandLine, const char* reply,
               const std::function<int(const Command&, Arguments)>& perform);

} // namespace simulator

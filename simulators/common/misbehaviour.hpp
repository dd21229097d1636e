// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace simulator {

/// A way to break the program's contract, chosen by name with an environment variable.
struct Misbehaviour {
    std::string_view name;
    /// Performs it; the exit status, or nothing when the program then does what it was asked for.
    std::function<std::optional<int>()> perform;
};

/// Performs the misbehaviour that the environment variable names. The exit status to end with; nothing when
/// the variable is not set or empty. An unknown name is reported with the known ones.
std::optional<int> misbehave(const char* variable, std::span<const Misbehaviour> known);

/// Writes a line to standard output; the exit status 0.
int print(const std::string& text);

/// Writes a line to standard error; the given exit status.
int complain(const std::string& text, int status);

/// Ends the process by SIGKILL.
[[noreturn]] void dieByKill();

} // namespace simulator

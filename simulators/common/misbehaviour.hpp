// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <functional>
#include <optional>
#include <span>
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

/// Ends the process by SIGKILL.
[[noreturn]] void dieByKill();

} // namespace simulator

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

/// Writes the line, as the beginning of 8 MiB that are still valid JSON, to standard output and 8 MiB of a
/// log to standard error, in turn: a reader of only one of the two never finishes. The exit status 0.
int flood(const std::string& reply);

/// Waits until another process has opened the pipe that the environment variable names for writing, and
/// closed it. So a test decides, without a clock, when this program continues. The exit status if there is no
/// pipe.
std::optional<int> waitForRelease(const char* variable);

/// The same for a program that SIGTERM does not end.
std::optional<int> waitStubbornly(const char* variable);

/// Ends the process by SIGKILL.
[[noreturn]] void dieByKill();

} // namespace simulator

// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <functional>

#include "common/command_line.hpp"

namespace simulator {

inline constexpr int refused = 1;
inline constexpr int misused = 2;

/// The body of main: `perform` carries out the command and returns the exit status. Arguments that are not
/// accepted end with the usage and the status `misused`; an exception ends with its text and `refused`.
/// `reply` is what the program writes on standard output, for the message when that fails.
int runProgram(int argumentCount, char** argumentValues, const CommandLine& commandLine, const char* reply,
               const std::function<int(const Command&, Arguments)>& perform);

} // namespace simulator

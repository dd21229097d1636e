// SPDX-License-Identifier: Apache-2.0

#pragma once

namespace kinovane::tool {

/// The exit statuses of the command-line tool. A command that was ended by a signal has 128 and the number of
/// the signal instead.
enum class ExitStatus : int {
    success = 0,
    unexpected = 1,
    usage = 2,
    workspace = 3,
    handoff = 4,
    program = 5,
    fileSystem = 6,
    refused = 7,
};

constexpr ExitStatus statusOfSignal(int signal) { return static_cast<ExitStatus>(128 + signal); }

} // namespace kinovane::tool

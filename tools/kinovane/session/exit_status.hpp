// SPDX-License-Identifier: Apache-2.0

#pragma once

namespace kinovane::tool {

/// The exit statuses of the command-line tool.
enum class ExitStatus {
    success = 0,
    unexpected = 1,
    usage = 2,
    workspace = 3,
    handoff = 4,
    program = 5,
    fileSystem = 6,
    refused = 7,
};

/// Writes the exception that is being handled to standard error and returns the exit status for it.
ExitStatus reportCurrentException() noexcept;

} // namespace kinovane::tool

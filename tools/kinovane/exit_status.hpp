// SPDX-License-Identifier: Apache-2.0

#pragma once

namespace kinovane::tool {

/// How the program ends; one status for each class of outcome.
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

/// Writes the exception that is being handled to standard error and gives the status to end with.
ExitStatus reportCurrentException() noexcept;

} // namespace kinovane::tool

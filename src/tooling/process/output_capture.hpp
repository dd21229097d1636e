// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>

namespace kinovane {

/// What a child process wrote, byte for byte.
struct CapturedOutput {
    std::string output;
    std::string errors;
};

/// Reads two pipes until both are at their end. They are read at the same time, because a child that writes
/// to a full pipe stops until it is read. Throws std::system_error, whose text begins with the name of the
/// call that failed, and std::bad_alloc.
CapturedOutput captureOutput(int output, int errors);

} // namespace kinovane

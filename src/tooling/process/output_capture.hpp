// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>

namespace kinovane {

struct CapturedOutput {
    std::string output;
    std::string errors;
};

/// Reads two pipes to their ends, both at the same time, so that neither can fill up and stop its writer. The
/// bytes come back as they were written. Throws std::system_error, whose text begins with the name of the
/// call that failed, and std::bad_alloc.
CapturedOutput captureOutput(int output, int errors);

} // namespace kinovane

// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "common/files/descriptor.hpp"

namespace kinovane {

/// The two ends of a pipe, both close-on-exec.
struct Pipe {
    Descriptor readEnd;
    Descriptor writeEnd;
};

/// Opens a pipe. Neither descriptor is 0, 1 or 2. Throws std::system_error whose text begins with "pipe".
Pipe openPipeAboveStandard();

/// The pipes for a child's standard output and standard error.
struct OutputPipes {
    Pipe output;
    Pipe errors;
};

/// Opens both pipes. None of the four descriptors is 0, 1 or 2, even if the application has closed these:
/// what another thread writes to such a number, even for an instant, would become output of the child or end
/// this process with SIGPIPE. Throws std::system_error whose text begins with "pipe".
OutputPipes openOutputPipes();

} // namespace kinovane

// SPDX-License-Identifier: Apache-2.0

#include "tooling/process/output_pipes.hpp"

#include <array>
#include <cerrno>
#include <system_error>
#include <utility>

#include "common/files/standard_descriptors.hpp"
#include "tooling/process/system_pipe.hpp"

namespace kinovane {

namespace {

[[noreturn]] void failPipe(int error) { throw std::system_error(error, std::generic_category(), "pipe"); }

Pipe openPipe() {
    std::array<int, 2> ends{-1, -1};
    if (openSystemPipe(ends) != 0)
        failPipe(errno);
    return {Descriptor(ends[0]), Descriptor(ends[1])};
}

/// Reserved numbers are not enough: another thread may have reserved them at that moment, and released them
/// before the pipe is opened. A pipe that got one of them keeps it until the next is open.
Pipe openHighPipe() {
    std::array<Pipe, 3> low;
    for (Pipe& held : low) {
        Pipe pipe = openPipe();
        if (!isStandard(pipe.readEnd.get()) && !isStandard(pipe.writeEnd.get()))
            return pipe;
        held = std::move(pipe);
    }
    return openPipe();
}

} // namespace

Pipe openPipeAboveStandard() {
    const ReservedStandardDescriptors reserved;
    if (reserved.error() != 0)
        failPipe(reserved.error());
    return openHighPipe();
}

OutputPipes openOutputPipes() {
    const ReservedStandardDescriptors reserved;
    if (reserved.error() != 0)
        failPipe(reserved.error());
    return {openHighPipe(), openHighPipe()};
}

} // namespace kinovane

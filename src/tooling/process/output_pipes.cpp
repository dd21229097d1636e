// SPDX-License-Identifier: Apache-2.0

#include "tooling/process/output_pipes.hpp"

#include <array>
#include <cerrno>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

#include "common/files/standard_descriptors.hpp"

namespace kinovane {

namespace {

[[noreturn]] void failPipe(int error) { throw std::system_error(error, std::generic_category(), "pipe"); }

/// Close-on-exec from the start: a child that another thread starts at this moment must not inherit an end,
/// or the output would not end before that child does.
Pipe openPipe() {
    std::array<int, 2> ends{-1, -1};
#ifdef __APPLE__
    // There is no pipe2 here; POSIX_SPAWN_CLOEXEC_DEFAULT keeps the ends from this library's own children.
    if (::pipe(ends.data()) != 0)
        failPipe(errno);
    for (const int end : ends)
        ::fcntl(end, F_SETFD, FD_CLOEXEC);
#else
    if (::pipe2(ends.data(), O_CLOEXEC) != 0)
        failPipe(errno);
#endif
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

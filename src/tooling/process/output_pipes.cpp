// SPDX-License-Identifier: Apache-2.0

#include "tooling/process/output_pipes.hpp"

#include <array>
#include <cerrno>
#include <system_error>

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

} // namespace

Pipe openPipeAboveStandard() {
    const ReservedStandardDescriptors reserved;
    if (reserved.error() != 0)
        failPipe(reserved.error());
    return openPipe();
}

OutputPipes openOutputPipes() {
    const ReservedStandardDescriptors reserved;
    if (reserved.error() != 0)
        failPipe(reserved.error());
    return {openPipe(), openPipe()};
}

} // namespace kinovane

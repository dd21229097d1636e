// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cerrno>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>

#include "common/files/descriptor.hpp"

namespace kinovane::test {

/// A pipe whose ends are closed in child processes.
struct Pipe {
    Pipe() {
        int ends[2]{}; // NOLINT(*-avoid-c-arrays)
#ifdef __APPLE__       // It has no pipe2.
        const bool made = ::pipe(ends) == 0 && ::fcntl(ends[0], F_SETFD, FD_CLOEXEC) == 0 &&
                          ::fcntl(ends[1], F_SETFD, FD_CLOEXEC) == 0;
#else
        const bool made = ::pipe2(ends, O_CLOEXEC) == 0;
#endif
        if (!made)
            throw std::system_error(errno, std::generic_category(), "pipe");
        readEnd = Descriptor(ends[0]);
        writeEnd = Descriptor(ends[1]);
    }
    Descriptor readEnd;
    Descriptor writeEnd;
};

} // namespace kinovane::test

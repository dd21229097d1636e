// SPDX-License-Identifier: Apache-2.0

#include "common/files/descriptor.hpp"

#include <utility>

#include <fcntl.h>

namespace kinovane {

namespace {

// Reading and writing such a descriptor fails as if it were closed.
#ifdef O_PATH
constexpr int reservedFlags = O_PATH | O_CLOEXEC;
#else
constexpr int reservedFlags = O_RDONLY | O_CLOEXEC;
#endif

bool isOpen(int number) { return ::fcntl(number, F_GETFD) >= 0; }

} // namespace

ReservedStandardDescriptors::ReservedStandardDescriptors() noexcept {
    for (Descriptor& reserved : reserved_) {
        if (isOpen(STDIN_FILENO) && isOpen(STDOUT_FILENO) && isOpen(STDERR_FILENO))
            return;
        // The system gives out the lowest free number: when that is none of these, all of them are taken.
        Descriptor filler(retryInterrupted([] { return ::open("/", reservedFlags); }));
        if (!filler)
            error_ = errno;
        if (!isStandard(filler.get()))
            return;
        reserved = std::move(filler);
    }
}

} // namespace kinovane

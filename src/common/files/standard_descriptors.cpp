// SPDX-License-Identifier: Apache-2.0

#include "common/files/standard_descriptors.hpp"

#include <utility>

#include <fcntl.h>

namespace kinovane {

namespace {

// With O_PATH, reading and writing fail with EBADF, as they do for a closed descriptor.
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
        Descriptor descriptor(retryInterrupted([] { return ::open("/", reservedFlags); }));
        if (!descriptor)
            error_ = errno;
        // `open` returns the lowest free number, so a higher one shows that 0, 1 and 2 are all in use.
        if (!isStandard(descriptor.get()))
            return;
        reserved = std::move(descriptor);
    }
}

} // namespace kinovane

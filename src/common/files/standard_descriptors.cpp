// SPDX-License-Identifier: Apache-2.0

#include "common/files/standard_descriptors.hpp"

#include <utility>

#include <fcntl.h>

#include "common/files/directory_access.hpp"

namespace kinovane {

namespace {

bool isOpen(int number) { return ::fcntl(number, F_GETFD) >= 0; }

} // namespace

ReservedStandardDescriptors::ReservedStandardDescriptors() noexcept {
    for (Descriptor& reserved : reserved_) {
        if (isOpen(STDIN_FILENO) && isOpen(STDOUT_FILENO) && isOpen(STDERR_FILENO))
            return;
        // Reading and writing it fail with EBADF, as they do for a closed descriptor.
        Descriptor descriptor(retryInterrupted([] { return ::open("/", searchFlags | O_CLOEXEC); }));
        if (!descriptor)
            error_ = errno;
        // `open` returns the lowest free number, so a higher one shows that 0, 1 and 2 are all in use.
        if (!isStandard(descriptor.get()))
            return;
        reserved = std::move(descriptor);
    }
}

} // namespace kinovane

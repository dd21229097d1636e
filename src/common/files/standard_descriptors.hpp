// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <array>
#include <cerrno>
#include <utility>

#include <unistd.h>

#include "common/files/descriptor.hpp"
#include "common/files/retry_interrupted.hpp"

/// Keeps the library's descriptors off 0, 1 and 2. An application may have closed its standard descriptors,
/// and the system then gives their numbers to the next files that are opened. Whatever the application, or a
/// library that it uses, writes to standard output or standard error would end up in such a file.
namespace kinovane {

/// Whether the number is that of standard input, output or error.
constexpr bool isStandard(int number) noexcept {
    return number == STDIN_FILENO || number == STDOUT_FILENO || number == STDERR_FILENO;
}

/// Occupies those of the numbers 0, 1 and 2 that are closed, so that the system gives out none of them. The
/// occupying descriptors can be neither read nor written, and are closed by the destructor. Keep it only
/// around the call that opens a descriptor. That call may still return such a number, if another thread
/// occupied it when this object was made, and has released it since.
class ReservedStandardDescriptors {
  public:
    ReservedStandardDescriptors() noexcept;
    ReservedStandardDescriptors(const ReservedStandardDescriptors&) = delete;
    ReservedStandardDescriptors& operator=(const ReservedStandardDescriptors&) = delete;

    /// 0, or the errno of the failure to occupy one of the numbers (EMFILE or ENFILE).
    int error() const noexcept { return error_; }

  private:
    std::array<Descriptor, 3> reserved_;
    int error_ = 0;
};

/// The descriptor that `open` returns, which is never 0, 1 or 2. `open` returns a number, or -1 and sets
/// errno. It may be called several times, so it must not create or rename anything. On failure the descriptor
/// is invalid and errno holds the reason.
template <class Open>
Descriptor openAboveStandard(Open open) {
    Descriptor descriptor(retryInterrupted(open));
    if (!isStandard(descriptor.get()))
        return descriptor;
    // Opened again rather than duplicated: another thread may already have read from this number, or closed
    // it and opened another file under it.
    const ReservedStandardDescriptors reserved;
    if (reserved.error() != 0) {
        errno = reserved.error();
        return {};
    }
    // Reserved numbers are not enough: another thread may have reserved them at that moment, and released
    // them before the next call of `open`. A descriptor that got one of them keeps it until the end.
    std::array<Descriptor, 2> low;
    for (Descriptor& held : low) {
        Descriptor next(retryInterrupted(open));
        if (!isStandard(next.get()))
            return next;
        held = std::move(next);
    }
    return Descriptor(retryInterrupted(open));
}

} // namespace kinovane

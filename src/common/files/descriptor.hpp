// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <array>
#include <cerrno>
#include <utility>

#include <unistd.h>

namespace kinovane {

/// Owns one file descriptor.
class Descriptor {
  public:
    Descriptor() = default;
    explicit Descriptor(int number) noexcept : number_(number) {}
    Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(number_, other.number_);
        return *this;
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() { close(); }

    int get() const noexcept { return number_; }
    explicit operator bool() const noexcept { return number_ >= 0; }

    /// Closes now; whatever `close` says of a descriptor that was only read does not matter. Leaves errno
    /// alone, so that an earlier failure can still be reported.
    void close() noexcept {
        const int error = errno;
        if (number_ >= 0)
            ::close(std::exchange(number_, -1));
        errno = error;
    }

    /// Gives up the descriptor.
    int release() noexcept { return std::exchange(number_, -1); }

  private:
    int number_ = -1;
};

/// Whether the number is one of standard input, output and error.
constexpr bool isStandard(int number) noexcept {
    return number == STDIN_FILENO || number == STDOUT_FILENO || number == STDERR_FILENO;
}

/// While it lives, the system gives out none of the numbers 0, 1 and 2: those that the application has closed
/// are taken by descriptors that can neither be read nor written. Keep it only around the call that opens a
/// descriptor.
class ReservedStandardDescriptors {
  public:
    ReservedStandardDescriptors() noexcept;
    ReservedStandardDescriptors(const ReservedStandardDescriptors&) = delete;
    ReservedStandardDescriptors& operator=(const ReservedStandardDescriptors&) = delete;

    /// 0, or why some of the numbers could not be taken, as errno has it: there are not enough descriptors.
    int error() const noexcept { return error_; }

  private:
    std::array<Descriptor, 3> reserved_;
    int error_ = 0;
};

/// Repeats a system call for as long as a signal interrupts it.
template <class Call>
auto retryInterrupted(Call call) {
    for (;;) {
        const auto result = call();
        if (result >= 0 || errno != EINTR)
            return result;
    }
}

/// The descriptor that `open` gives, never one of 0, 1 and 2: what the application, or a library it uses,
/// writes to a standard descriptor that was closed must not reach a file of this library, and what it reads
/// must not come from one. `open` returns a number, or -1 and sets errno; it is called again when it gave one
/// of these numbers, so it must not create or exchange anything. For that, reserve them first. An invalid
/// descriptor leaves the reason in errno.
template <class Open>
Descriptor openAboveStandard(Open open) {
    Descriptor descriptor(retryInterrupted(open));
    if (!isStandard(descriptor.get()))
        return descriptor;
    // Another thread may have used the number in the meantime, so the descriptor is opened anew instead of
    // being duplicated.
    const ReservedStandardDescriptors reserved;
    if (reserved.error() != 0) {
        errno = reserved.error();
        return {};
    }
    return Descriptor(retryInterrupted(open));
}

} // namespace kinovane

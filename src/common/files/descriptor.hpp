// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cerrno>
#include <utility>

#include <unistd.h>

namespace kinovane {

/// Owns one file descriptor, and closes it in the destructor.
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

    /// The number, or a negative one when there is no descriptor.
    int get() const noexcept { return number_; }
    explicit operator bool() const noexcept { return number_ >= 0; }

    /// Closes the descriptor, if there is one. Ignores the result of `close`: where it matters, release the
    /// descriptor and close it there. Keeps errno, so that an earlier failure can still be reported.
    void close() noexcept {
        const int error = errno;
        if (number_ >= 0)
            ::close(std::exchange(number_, -1));
        errno = error;
    }

    /// Returns the number without closing it; the caller closes it.
    int release() noexcept { return std::exchange(number_, -1); }

  private:
    int number_ = -1;
};

} // namespace kinovane

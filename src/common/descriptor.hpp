#pragma once

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

    /// Closes now; whatever `close` says of a descriptor that was only read does not matter.
    void close() noexcept {
        if (number_ >= 0)
            ::close(std::exchange(number_, -1));
    }

    /// Gives up the descriptor.
    int release() noexcept { return std::exchange(number_, -1); }

  private:
    int number_ = -1;
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

} // namespace kinovane

// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <array>
#include <functional>
#include <string>

#include <fcntl.h>
#include <unistd.h>

#include "support/forked_process.hpp"
#include "support/repeating_thread.hpp"
#include "support/sanitizers.hpp"

namespace kinovane::test {

/// The standard descriptors that an application has closed, one bit for each: 0 to 7.
using ClosedDescriptors = int;

inline std::string nameOf(ClosedDescriptors closed) {
    std::string name = closed == 0 ? "None" : "";
    for (int number = 0; number <= STDERR_FILENO; ++number)
        if ((closed & 1 << number) != 0)
            name += std::to_string(number);
    return name;
}

/// Reads from descriptor 0 and writes to 1 and 2 without a pause, whether they are open or not, so that a
/// file opened with one of these numbers is soon damaged.
class StandardTraffic {
  public:
    StandardTraffic()
        : thread_([](std::size_t /*turn*/) {
              const UnobservedAccess unobserved;
              std::array<char, 6> text{"noise"};
              static_cast<void>(::read(STDIN_FILENO, text.data(), 1) + ::write(STDOUT_FILENO, "noise", 5) +
                                ::write(STDERR_FILENO, "noise", 5));
          }) {
        thread_.awaitTurn();
    }

  private:
    RepeatingThread thread_;
};

/// Runs the job in a process that has closed these descriptors while another thread uses all three; returns
/// the job's text.
inline std::string withClosed(ClosedDescriptors closed, const std::function<std::string()>& job) {
    return inForkedProcess([&] {
        const int null = ::open("/dev/null", O_RDWR | O_CLOEXEC);
        for (int number = 0; number <= STDERR_FILENO; ++number)
            if ((closed & 1 << number) != 0)
                ::close(number);
            else
                ::dup2(null, number);
        const StandardTraffic traffic;
        return job();
    });
}

} // namespace kinovane::test

// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <thread>

#include <kinovane/stop.hpp>

namespace kinovane::tool {

/// Turns the first SIGINT, SIGTERM or SIGHUP into a requested stop, so that a command can end what it began
/// and print a summary. The second one ends the process at once, with the status of the signal. There is at
/// most one object of this class, and it exists before other threads are started.
class Interruption {
  public:
    /// Throws std::system_error.
    Interruption();
    Interruption(const Interruption&) = delete;
    Interruption& operator=(const Interruption&) = delete;

    /// Restores the default effect of the signals.
    ~Interruption();

    StopToken token() const noexcept { return source_.token(); }

    /// The signal that arrived, or 0.
    static int signal() noexcept;

  private:
    StopSource source_;
    int readEnd_ = -1; ///< Of the pipe that the signal handler writes to.
    std::thread listener_;
};

} // namespace kinovane::tool

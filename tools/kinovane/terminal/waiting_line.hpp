// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <string>
#include <thread>

#include "session/console.hpp"

namespace kinovane::tool {

/// "12 s", "2 min 05 s", "1 h 02 min"; rounded down.
std::string elapsedText(std::chrono::seconds time);

/// "Vistrel checks the film, for 12 s" in less than `columns`. Without the time during the first second.
std::string waitingText(const std::string& text, std::chrono::seconds time, std::size_t columns);

/// A line on standard error that tells what the command waits for and for how long, redrawn every second by a
/// thread of its own and erased by the destructor. Nothing is shown unless the console shows progress lines.
class WaitingLine {
  public:
    /// `text` must be `shown`. The time is counted from now on.
    WaitingLine(const Console& console, std::string text);
    WaitingLine(const WaitingLine&) = delete;
    WaitingLine& operator=(const WaitingLine&) = delete;
    ~WaitingLine();

  private:
    void draw() const;

    const Console& console_;
    std::string text_;
    std::chrono::steady_clock::time_point begin_;
    std::mutex mutex_;
    std::condition_variable changed_;
    bool isOver_ = false;
    std::thread thread_; ///< Only when the line is shown.
};

} // namespace kinovane::tool

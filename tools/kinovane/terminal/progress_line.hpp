// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <chrono>
#include <csignal>
#include <functional>
#include <mutex>
#include <string>

#include <kinovane/handoff.hpp>

#include "session/console.hpp"

namespace kinovane::tool {

/// The time during which the process was not suspended. Time is added at each call of `seconds`, unless a
/// SIGCONT arrived since the call before: some of that time was spent suspended, and all of it is left out.
/// `seconds` must therefore be called often. There is at most one object at a time; it handles SIGCONT while
/// it exists.
class ActiveTime {
  public:
    using Clock = std::function<std::chrono::steady_clock::time_point()>;

    explicit ActiveTime(Clock clock);
    ActiveTime(const ActiveTime&) = delete;
    ActiveTime& operator=(const ActiveTime&) = delete;
    ~ActiveTime();

    double seconds();

  private:
    Clock clock_;
    std::chrono::steady_clock::time_point last_;
    std::chrono::duration<double> active_{0};
    unsigned continuations_;
    struct sigaction formerAction_{};
};

/// Shows the progress of an operation on standard error, in the form that the options ask for: a line that is
/// redrawn in place, or JSON objects, one a line, at most five a second and one at the end. Measures the time
/// of the operation as well. May be used from several threads at once.
class ProgressLine {
  public:
    explicit ProgressLine(const Console& console, ActiveTime::Clock clock = std::chrono::steady_clock::now);
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;
    ~ProgressLine() { erase(); }

    /// Shows the progress that it is called with; must not be called after this object is destroyed.
    std::function<void(const VerificationProgress&)> callback();

    void show(const VerificationProgress& progress);
    void erase();

    /// Calls `write` while the line is erased, so that it can write to the terminal.
    void outside(const std::function<void()>& write);

    /// The time since the construction, without that during which the process was suspended.
    double seconds();

  private:
    void draw(const VerificationProgress& progress, double seconds);
    void writeJSON(const VerificationProgress& progress);
    void eraseLine();

    const Console& console_;
    ActiveTime::Clock clock_;
    std::mutex mutex_;
    ActiveTime time_;
    bool isDrawn_ = false;
    std::chrono::steady_clock::time_point nextJSON_{}; ///< Not before this time.
};

} // namespace kinovane::tool

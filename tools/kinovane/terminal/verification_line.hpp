// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <string>

#include <kinovane/handoff.hpp>

namespace kinovane::tool {

/// A progress line on standard error, redrawn in place while files are verified and erased afterwards.
/// Nothing is shown when standard error is not a terminal, so that logs stay free of it.
class VerificationLine {
  public:
    using Clock = std::function<std::chrono::steady_clock::time_point()>;

    /// Shown only if `wanted` and if standard error is a terminal. The rate is measured from now on.
    explicit VerificationLine(bool wanted, Clock clock = std::chrono::steady_clock::now);
    VerificationLine(const VerificationLine&) = delete;
    VerificationLine& operator=(const VerificationLine&) = delete;
    ~VerificationLine() { erase(); }

    /// Shows the progress that it is called with; must not be called after this line is destroyed. Empty when
    /// no line is shown.
    std::function<void(const VerificationProgress&)> callback();

    void show(const VerificationProgress& progress);
    void erase();

    /// The line for a terminal of this width: a bar if the terminal is wide enough, then as many as fit of
    /// percentage, files, bytes, rate and time left. It never reaches the terminal's last column.
    std::string text(const VerificationProgress& progress, std::size_t columns) const;

  private:
    Clock clock_;
    std::chrono::steady_clock::time_point begin_;
    bool shown_;
    std::size_t drawn_ = 0; ///< The number of columns that hold text now.
};

} // namespace kinovane::tool

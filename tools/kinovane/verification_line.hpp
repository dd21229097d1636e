// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <string>

#include <kinovane/handoff.hpp>

namespace kinovane::tool {

/// One line on standard error that is redrawn in place while files are verified, and gone afterwards. Without
/// a terminal there is no line: a log must not fill with it.
class VerificationLine {
  public:
    using Clock = std::function<std::chrono::steady_clock::time_point()>;

    /// Shown only if `wanted`, and if standard error is a terminal. The rate counts from now.
    explicit VerificationLine(bool wanted, Clock clock = std::chrono::steady_clock::now);
    VerificationLine(const VerificationLine&) = delete;
    VerificationLine& operator=(const VerificationLine&) = delete;
    ~VerificationLine() { erase(); }

    /// Shows what it is told for as long as this line lives; empty when there is no line.
    std::function<void(const VerificationProgress&)> callback();

    void show(const VerificationProgress& progress);
    void erase();

    /// The line for a terminal of this width: a bar where there is room for one, and then as much as fits of
    /// the percentage, files, bytes, rate and time left. It never reaches the terminal's last column.
    std::string text(const VerificationProgress& progress, std::size_t columns) const;

  private:
    Clock clock_;
    std::chrono::steady_clock::time_point begin_;
    bool shown_;
    std::size_t drawn_ = 0; ///< Columns that now hold text.
};

} // namespace kinovane::tool

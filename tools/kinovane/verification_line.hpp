#pragma once

#include <cstddef>

#include <kinovane/handoff.hpp>

namespace kinovane::companion {

/// One line on standard error that is redrawn in place while files are verified, and gone afterwards. Without
/// a terminal there is no line: a log must not fill with it.
class VerificationLine {
  public:
    /// Shown only if `wanted`, and if standard error is a terminal.
    explicit VerificationLine(bool wanted);
    VerificationLine(const VerificationLine&) = delete;
    VerificationLine& operator=(const VerificationLine&) = delete;
    ~VerificationLine() { erase(); }

    bool shown() const { return shown_; }

    void show(const VerificationProgress& progress);
    void erase();

  private:
    bool shown_;
    std::size_t drawn_ = 0; ///< Columns that now hold text.
};

} // namespace kinovane::companion

// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <array>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>

#include <kinovane/run_options.hpp>
#include <kinovane/stop.hpp>

#include "session/console.hpp"

namespace kinovane::tool {

/// "film has been working for 12 s", "… for 3 min 5 s".
std::string workingText(std::string_view program, std::chrono::seconds time);

/// Shows the output of an external program on standard error as it arrives, and, while it writes nothing, a
/// line that tells for how long it has been working. That line is redrawn in place, and shown only on a
/// terminal.
///
/// `show` may be called from any thread, one call at a time.
class ToolOutput {
  public:
    /// Without `isShown`, output is ignored. The time is measured from now on. Throws std::system_error.
    ToolOutput(const Console& console, std::string program, bool isShown, StopToken stop);
    ToolOutput(const ToolOutput&) = delete;
    ToolOutput& operator=(const ToolOutput&) = delete;

    /// Calls `finish`.
    ~ToolOutput();

    void show(OutputStream stream, std::string_view chunk);

    /// Erases the line, and completes the last line of the output. Nothing is shown afterwards.
    void finish();

    /// Whether the program wrote anything to its standard error that was shown.
    bool hasShownErrors() const noexcept { return hasShownErrors_; }

  private:
    void drawEachSecond();
    void draw();
    void erase();
    void startLine();

    const Console& console_;
    const std::string program_;
    const bool isShown_;
    const StopToken stop_;
    const std::chrono::steady_clock::time_point begin_ = std::chrono::steady_clock::now();
    bool hasShownErrors_ = false;

    std::mutex mutex_; ///< Protects what follows.
    std::condition_variable finished_;
    bool isFinished_ = false;
    bool hasOutput_ = false; ///< Since the line was last due.
    bool isLineOpen_ = false;
    OutputStream lastStream_ = OutputStream::standardOutput;
    std::array<bool, 2>
        afterReturn_{};    ///< For each stream: whether its last character was a carriage return.
    bool isDrawn_ = false; ///< Whether the line of `draw` is on the terminal.

    std::thread drawing_; ///< Only when a line can be shown.
};

} // namespace kinovane::tool

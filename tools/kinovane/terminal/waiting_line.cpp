// SPDX-License-Identifier: Apache-2.0

#include "terminal/waiting_line.hpp"

#include <utility>

#include <unistd.h>

#include "terminal/display_width.hpp"
#include "terminal/style.hpp"

namespace kinovane::tool {

namespace {

constexpr std::size_t usualColumns = 80;

// The cursor is left at the beginning of the line. A terminal that becomes narrower wraps the line below the
// cursor, so that all of it is erased.
constexpr const char* eraseToEnd = "\x1b[J";

std::string twoDigits(std::chrono::seconds::rep number) {
    return (number < 10 ? "0" : "") + std::to_string(number);
}

} // namespace

std::string elapsedText(std::chrono::seconds time) {
    const auto seconds = time.count();
    if (seconds < 60)
        return std::to_string(seconds) + " s";
    if (seconds < 3600)
        return std::to_string(seconds / 60) + " min " + twoDigits(seconds % 60) + " s";
    return std::to_string(seconds / 3600) + " h " + twoDigits(seconds / 60 % 60) + " min";
}

std::string waitingText(const std::string& text, std::chrono::seconds time, std::size_t columns) {
    const std::string line = time.count() == 0 ? text : text + ", for " + elapsedText(time);
    // A line as wide as the terminal would wrap.
    return fitted(line, columns - (columns > 0 ? 1 : 0));
}

WaitingLine::WaitingLine(const Console& console, std::string text)
    : console_(console), text_(std::move(text)), begin_(std::chrono::steady_clock::now()) {
    if (!console_.showsProgressLine())
        return;
    thread_ = std::thread([this] {
        std::unique_lock lock(mutex_);
        do
            draw();
        while (!changed_.wait_for(lock, std::chrono::seconds(1), [this] { return isOver_; }));
    });
}

WaitingLine::~WaitingLine() {
    if (!thread_.joinable())
        return;
    {
        const std::lock_guard lock(mutex_);
        isOver_ = true;
    }
    changed_.notify_one();
    thread_.join();
    if (console_.showsProgressLine())
        writeAll(STDERR_FILENO, std::string("\r") + eraseToEnd);
}

void WaitingLine::draw() const {
    if (!console_.showsProgressLine()) // The process may have been moved to the background.
        return;
    using std::chrono::seconds;
    const auto time = std::chrono::duration_cast<seconds>(std::chrono::steady_clock::now() - begin_);
    const std::string line = waitingText(text_, time, terminalColumns(STDERR_FILENO, usualColumns));
    writeAll(STDERR_FILENO, "\r" + rendered(line, false) + eraseToEnd + "\r");
}

} // namespace kinovane::tool

// SPDX-License-Identifier: Apache-2.0

#include "film/tool_output.hpp"

#include <algorithm>
#include <utility>

#include <unistd.h>

#include "terminal/display_width.hpp"
#include "terminal/shown_text.hpp"

namespace kinovane::tool {

namespace {

constexpr std::size_t usualColumns = 80;
constexpr std::chrono::seconds interval{1};
constexpr std::string_view tabulator = "    ";
constexpr const char* eraseToEnd = "\x1b[J"; // Of the screen: a line may have been wrapped.

/// The text with a line feed for each line break of any form, and blanks for tabulators. `afterReturn` is
/// kept between the chunks of one stream.
std::string cleaned(std::string_view chunk, bool& afterReturn) {
    std::string text;
    std::string_view rest = chunk;
    while (!rest.empty()) {
        const std::size_t end = rest.find_first_of("\r\n\t");
        if (end != 0)
            afterReturn = false;
        text += shown(rest.substr(0, end));
        if (end == std::string_view::npos)
            break;
        const char control = rest[end];
        if (control == '\t')
            text += tabulator;
        else if (control == '\r' || !afterReturn)
            text += '\n';
        afterReturn = control == '\r';
        rest.remove_prefix(end + 1);
    }
    return text;
}

} // namespace

std::string workingText(std::string_view program, std::chrono::seconds time) {
    const auto minutes = std::chrono::duration_cast<std::chrono::minutes>(time);
    std::string text = shown(program) + " has been working for ";
    if (minutes.count() > 0)
        text += std::to_string(minutes.count()) + " min ";
    return text + std::to_string((time - minutes).count()) + " s";
}

ToolOutput::ToolOutput(const Console& console, std::string program, bool isShown, StopToken stop)
    : console_(console), program_(std::move(program)), isShown_(isShown), stop_(std::move(stop)) {
    if (console.showsProgressLine())
        drawing_ = std::thread([this] { drawEachSecond(); });
}

ToolOutput::~ToolOutput() { finish(); }

void ToolOutput::show(OutputStream stream, std::string_view chunk) {
    const std::lock_guard lock(mutex_);
    if (!isShown_ || isFinished_ || chunk.empty())
        return;
    erase();
    if (stream != lastStream_)
        startLine();
    lastStream_ = stream;
    hasOutput_ = true;
    hasShownErrors_ = hasShownErrors_ || stream == OutputStream::standardError;
    const std::string text = cleaned(chunk, afterReturn_.at(static_cast<std::size_t>(stream)));
    console_.message(text);
    if (!text.empty())
        isLineOpen_ = text.back() != '\n';
}

void ToolOutput::finish() {
    {
        const std::lock_guard lock(mutex_);
        if (isFinished_)
            return;
        isFinished_ = true;
        erase();
        startLine();
    }
    finished_.notify_all();
    if (drawing_.joinable())
        drawing_.join();
}

void ToolOutput::drawEachSecond() {
    std::unique_lock lock(mutex_);
    while (!finished_.wait_for(lock, interval, [this] { return isFinished_; })) {
        // A line that is not complete stays as it is, and new output is left visible for a while.
        if (!isLineOpen_ && !hasOutput_)
            draw();
        hasOutput_ = false;
    }
}

void ToolOutput::draw() {
    const auto time =
        std::chrono::duration_cast<std::chrono::seconds>(std::chrono::steady_clock::now() - begin_);
    const std::string text =
        stop_.stopRequested() ? shown(program_) + " is being stopped" : workingText(program_, time);
    if (!console_.showsProgressLine()) // Asked each time: the process may have been moved to the background.
        return;
    // A line as wide as the terminal would wrap. The cursor is left at the beginning, as in ProgressLine.
    const std::size_t columns = terminalColumns(STDERR_FILENO, usualColumns);
    writeAll(STDERR_FILENO,
             "\r" + fitted(text, columns - std::min<std::size_t>(columns, 1)) + eraseToEnd + "\r");
    isDrawn_ = true;
}

void ToolOutput::erase() {
    if (std::exchange(isDrawn_, false) && console_.showsProgressLine())
        writeAll(STDERR_FILENO, std::string("\r") + eraseToEnd);
}

void ToolOutput::startLine() {
    if (isLineOpen_)
        console_.message(std::string_view("\n"));
    isLineOpen_ = false;
}

} // namespace kinovane::tool

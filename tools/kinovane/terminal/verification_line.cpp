// SPDX-License-Identifier: Apache-2.0

#include "terminal/verification_line.hpp"

#include <algorithm>
#include <limits>
#include <utility>

#include <sys/ioctl.h>
#include <unistd.h>

#include "terminal/human_text.hpp"
#include "session/output.hpp"

namespace kinovane::tool {

namespace {

constexpr std::size_t usualColumns = 80;
constexpr std::size_t wideColumns = 100;
constexpr std::size_t percentWidth = 3;

std::size_t terminalColumns() {
    winsize size{};
    if (::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0)
        return usualColumns;
    return size.ws_col;
}

/// Rounded down, so that 100 is shown only when everything is done.
unsigned percentage(const VerificationProgress& progress) {
    const bool sized = progress.bytesTotal > 0;
    const auto done = static_cast<double>(sized ? progress.bytesDone : progress.filesDone);
    const auto total = static_cast<double>(sized ? progress.bytesTotal : progress.filesTotal);
    const unsigned percent = total > 0 ? static_cast<unsigned>(100 * (done / total)) : 100;
    return progress.filesDone == progress.filesTotal ? percent : std::min(percent, 99U);
}

std::string percentText(unsigned percent) {
    const std::string digits = std::to_string(percent);
    return std::string(percentWidth - std::min(percentWidth, digits.size()), ' ') + digits + "%";
}

/// Its size depends only on the terminal, so that the other parts keep their columns when it is redrawn.
std::string barText(unsigned percent, std::size_t columns) {
    if (columns < usualColumns)
        return "";
    const std::size_t cells = columns < wideColumns ? 10 : 20;
    const std::size_t filled = cells * percent / 100;
    return std::string(columns < wideColumns ? "[" : "Verifying [") + std::string(filled, '#') +
           std::string(cells - filled, '-') + "] ";
}

std::string sizeOf(std::uint64_t bytes) {
    constexpr std::uint64_t largest = std::numeric_limits<std::int64_t>::max();
    return sizeText(static_cast<std::int64_t>(std::min(bytes, largest)));
}

std::string twoDigits(std::uint64_t number) { return (number < 10 ? "0" : "") + std::to_string(number); }

/// "1:05 left", "2:01:05 left". Rounded up, so that 0:00 is shown only when everything is done.
std::string timeLeftText(double seconds) {
    constexpr double mostSeconds = 100.0 * 60 * 60 - 1;
    if (!(seconds <= mostSeconds))
        return "over 99 hours left";
    auto whole = static_cast<std::uint64_t>(seconds);
    whole += static_cast<double>(whole) < seconds ? 1U : 0U;
    const std::string secondsText = twoDigits(whole % 60) + " left";
    const std::uint64_t minutes = whole / 60;
    if (minutes < 60)
        return std::to_string(minutes) + ":" + secondsText;
    return std::to_string(minutes / 60) + ":" + twoDigits(minutes % 60) + ":" + secondsText;
}

} // namespace

VerificationLine::VerificationLine(bool wanted, Clock clock)
    : clock_(std::move(clock)), begin_(clock_()), shown_(wanted && ::isatty(STDERR_FILENO) == 1) {}

std::function<void(const VerificationProgress&)> VerificationLine::callback() {
    if (!shown_)
        return {};
    return [this](const VerificationProgress& progress) { show(progress); };
}

std::string VerificationLine::text(const VerificationProgress& progress, std::size_t columns) const {
    const unsigned percent = percentage(progress);
    // A line as wide as the terminal would wrap and could not be redrawn in place.
    const std::size_t limit = columns - std::min<std::size_t>(columns, 1);
    std::string text = barText(percent, columns) + percentText(percent);
    text.resize(std::min(text.size(), limit));
    bool full = false;
    // A truncated number would be wrong, so each part is shown whole or not at all.
    const auto append = [&](const std::string& separator, const std::string& part) {
        full = full || text.size() + separator.size() + part.size() > limit;
        if (!full)
            text += separator + part;
    };
    append("  ",
           std::to_string(progress.filesDone) + " of " + countText(progress.filesTotal, "file", "files"));
    append(", ", sizeOf(progress.bytesDone) + " of " + sizeOf(progress.bytesTotal));
    const double seconds = std::chrono::duration<double>(clock_() - begin_).count();
    if (progress.bytesDone > 0 && seconds > 0) {
        const double rate = static_cast<double>(progress.bytesDone) / seconds;
        constexpr double largest = 9e18; // fits 64 bits
        append(", ", sizeText(static_cast<std::int64_t>(std::min(rate, largest))) + "/s");
        append(", ", timeLeftText(static_cast<double>(progress.bytesTotal - progress.bytesDone) / rate));
    }
    return text;
}

void VerificationLine::show(const VerificationProgress& progress) {
    if (!shown_)
        return;
    const std::string line = text(progress, terminalColumns());
    const std::size_t blanks = drawn_ - std::min(drawn_, line.size());
    drawn_ = line.size();
    printMessage("\r" + line + std::string(blanks, ' '));
}

void VerificationLine::erase() {
    // Blanks instead of an escape sequence, because they work on every terminal.
    if (drawn_ > 0)
        printMessage("\r" + std::string(drawn_, ' ') + "\r");
    drawn_ = 0;
}

} // namespace kinovane::tool

#include "verification_line.hpp"

#include <algorithm>
#include <limits>
#include <string>

#include <sys/ioctl.h>
#include <unistd.h>

#include "human_text.hpp"
#include "output.hpp"

namespace kinovane::companion {

namespace {

constexpr std::size_t usualColumns = 80;

std::size_t terminalColumns() {
    winsize size{};
    if (::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0)
        return usualColumns;
    return size.ws_col;
}

/// Rounded down, so that 100 means that all is done.
int percentage(const VerificationProgress& progress) {
    const bool sized = progress.bytesTotal > 0;
    const auto done = static_cast<double>(sized ? progress.bytesDone : progress.filesDone);
    const auto total = static_cast<double>(sized ? progress.bytesTotal : progress.filesTotal);
    const int percent = total > 0 ? static_cast<int>(100 * (done / total)) : 100;
    return progress.filesDone == progress.filesTotal ? percent : std::min(percent, 99);
}

std::string sizeOf(std::uint64_t bytes) {
    constexpr std::uint64_t largest = std::numeric_limits<std::int64_t>::max();
    return sizeText(static_cast<std::int64_t>(std::min(bytes, largest)));
}

std::string textFor(const VerificationProgress& progress) {
    const std::string percent = std::to_string(percentage(progress));
    return "Verifying " + std::string(3 - std::min<std::size_t>(percent.size(), 3), ' ') + percent + "%  " +
           std::to_string(progress.filesDone) + " of " + countText(progress.filesTotal, "file", "files") +
           ", " + sizeOf(progress.bytesDone) + " of " + sizeOf(progress.bytesTotal);
}

} // namespace

VerificationLine::VerificationLine(bool wanted) : shown_(wanted && ::isatty(STDERR_FILENO) == 1) {}

void VerificationLine::show(const VerificationProgress& progress) {
    if (!shown_)
        return;
    // A line as wide as the terminal would wrap, and then could not be redrawn in place.
    std::string text = textFor(progress);
    text.resize(std::min(text.size(), terminalColumns() - 1));
    const std::size_t leftovers = drawn_ - std::min(drawn_, text.size());
    drawn_ = text.size();
    printMessage("\r" + text + std::string(leftovers, ' '));
}

void VerificationLine::erase() {
    // Blanks rather than an escape sequence: every terminal understands them.
    if (drawn_ > 0)
        printMessage("\r" + std::string(drawn_, ' ') + "\r");
    drawn_ = 0;
}

} // namespace kinovane::companion

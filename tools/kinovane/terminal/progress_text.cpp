// SPDX-License-Identifier: Apache-2.0

#include "terminal/progress_text.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <limits>

#include "terminal/display_width.hpp"
#include "terminal/human_text.hpp"
#include "terminal/shown_text.hpp"

namespace kinovane::tool {

namespace {

constexpr std::size_t columnsForBar = 100;
constexpr std::size_t columnsForLongBar = 130;
constexpr std::size_t columnsForPath = 50;
constexpr std::size_t narrowestPath = 12;
constexpr std::size_t percentWidth = 3;
constexpr double secondsBeforeRate = 1;
constexpr double secondsBeforeEstimate = 3;
constexpr double partBeforeEstimate = 0.05;

double partDone(const VerificationProgress& progress) {
    const bool sized = progress.bytesTotal > 0;
    const auto done = static_cast<double>(sized ? progress.bytesDone : progress.filesDone);
    const auto total = static_cast<double>(sized ? progress.bytesTotal : progress.filesTotal);
    return total > 0 ? done / total : 1;
}

/// Rounded down, so that 100 is shown only when everything is done.
unsigned percentage(const VerificationProgress& progress) {
    const auto percent = static_cast<unsigned>(100 * partDone(progress));
    return progress.filesDone == progress.filesTotal ? percent : std::min(percent, 99U);
}

std::string percentText(unsigned percent) {
    const std::string digits = std::to_string(percent);
    return std::string(percentWidth - std::min(percentWidth, digits.size()), ' ') + digits + "%";
}

/// Its size depends only on the terminal, so that the other parts keep their columns when it is redrawn.
std::string barText(unsigned percent, std::size_t columns) {
    if (columns < columnsForBar)
        return "";
    const std::size_t cells = columns < columnsForLongBar ? 10 : 20;
    const std::size_t filled = cells * percent / 100;
    return "[" + std::string(filled, '#') + std::string(cells - filled, '-') + "] ";
}

std::string sizeOf(std::uint64_t bytes) {
    constexpr std::uint64_t largest = std::numeric_limits<std::int64_t>::max();
    return sizeText(static_cast<std::int64_t>(std::min(bytes, largest)));
}

std::string rateText(double bytesPerSecond) {
    constexpr double largest = 9e18; // fits 64 bits
    return sizeText(static_cast<std::int64_t>(std::min(bytesPerSecond, largest))) + "/s";
}

std::string twoDigits(std::uint64_t number) { return (number < 10 ? "0" : "") + std::to_string(number); }

/// "1:05 left", "2:01:05 left". Rounded up, so that 0:00 is shown only when everything is done.
std::string timeLeftText(double seconds) {
    constexpr double mostSeconds = 100.0 * 60 * 60 - 1;
    if (!(seconds <= mostSeconds))
        return "over 99 hours left";
    const auto whole = static_cast<std::uint64_t>(std::ceil(seconds));
    const std::string secondsText = twoDigits(whole % 60) + " left";
    const std::uint64_t minutes = whole / 60;
    if (minutes < 60)
        return std::to_string(minutes) + ":" + secondsText;
    return std::to_string(minutes / 60) + ":" + twoDigits(minutes % 60) + ":" + secondsText;
}

std::string elapsedText(double seconds) {
    std::array<char, 64> text{};
    const auto print = [&](const char* format, auto... values) {
        std::snprintf(text.data(), text.size(), format, values...);
        return std::string(text.data());
    };
    if (seconds < 0.1)
        return print("%d ms", std::max(1, static_cast<int>(seconds * 1000)));
    if (seconds < 59.95)
        return print("%.1f s", seconds);
    const auto whole = static_cast<unsigned long long>(std::round(seconds));
    if (whole < 60 * 60)
        return print("%llu min %llu s", whole / 60, whole % 60);
    return print("%llu h %llu min", whole / 3600, whole / 60 % 60);
}

} // namespace

std::string progressText(const VerificationProgress& progress, double seconds, std::size_t columns) {
    const unsigned percent = percentage(progress);
    // A line as wide as the terminal would wrap and could not be redrawn in place.
    const std::size_t limit = columns - std::min<std::size_t>(columns, 1);
    const std::size_t limitOfParts = columns < columnsForPath ? limit : limit - narrowestPath - 2;
    std::string text = barText(percent, columns) + percentText(percent);
    text.resize(std::min(text.size(), limit));
    bool full = false;
    // A truncated number would be wrong, so each part is shown whole or not at all.
    const auto append = [&](const std::string& separator, const std::string& part) {
        full = full || text.size() + separator.size() + part.size() > limitOfParts;
        if (!full)
            text += separator + part;
    };
    append("  ",
           std::to_string(progress.filesDone) + " of " + countText(progress.filesTotal, "file", "files"));
    append(", ", sizeOf(progress.bytesDone) + " of " + sizeOf(progress.bytesTotal));
    if (progress.bytesDone > 0 && seconds >= secondsBeforeRate) {
        const double rate = static_cast<double>(progress.bytesDone) / seconds;
        append(", ", rateText(rate));
        if (seconds >= secondsBeforeEstimate && partDone(progress) >= partBeforeEstimate)
            append(", ", timeLeftText(static_cast<double>(progress.bytesTotal - progress.bytesDone) / rate));
    }
    if (columns >= columnsForPath && !progress.path.empty())
        text += "  " + fittedMiddle(shown(progress.path), limit - text.size() - 2);
    return text;
}

std::string throughputText(std::uint64_t bytes, double seconds) {
    std::string text = sizeOf(bytes) + " in " + elapsedText(seconds);
    if (bytes > 0 && seconds > 0)
        text += ", " + rateText(static_cast<double>(bytes) / seconds);
    return text;
}

} // namespace kinovane::tool

// SPDX-License-Identifier: Apache-2.0

#include "terminal/human_text.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

namespace kinovane::tool {

namespace {

struct CodePoint {
    char32_t value;
    std::size_t length; ///< In bytes.
};

/// Bytes that are not UTF-8 count as one character each, which is how a terminal shows them.
CodePoint codePointAt(std::string_view text, std::size_t position) {
    const auto first = static_cast<unsigned char>(text[position]);
    const std::size_t length = first < 0xC0 ? 1 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
    char32_t value = length == 1 ? first : first & (0xFFU >> (length + 1));
    for (std::size_t next = 1; next < length; ++next) {
        const unsigned byte =
            position + next < text.size() ? static_cast<unsigned char>(text[position + next]) : 0U;
        if ((byte & 0xC0U) != 0x80)
            return {first, 1};
        value = (value << 6U) | (byte & 0x3FU);
    }
    return {value, length};
}

struct Range {
    char32_t first, last;
};

/// Combining marks and other characters without a width.
constexpr std::array<Range, 4> invisible{
    {{0x0300, 0x036F}, {0x200B, 0x200F}, {0x20D0, 0x20FF}, {0xFE00, 0xFE0F}}};

/// East Asian scripts and emoji, which are two columns wide.
constexpr std::array<Range, 8> wide{{{0x1100, 0x115F},
                                     {0x2E80, 0xA4CF},
                                     {0xAC00, 0xD7A3},
                                     {0xF900, 0xFAFF},
                                     {0xFE30, 0xFE6F},
                                     {0xFF00, 0xFF60},
                                     {0x1F300, 0x1FAFF},
                                     {0x20000, 0x3FFFD}}};

template <class Ranges>
bool isIn(const Ranges& ranges, char32_t value) {
    return std::ranges::any_of(
        ranges, [&](const Range& range) { return value >= range.first && value <= range.last; });
}

bool isControlCharacter(char32_t value) { return value < 0x20 || (value >= 0x7F && value <= 0x9F); }

template <class... Values>
std::string formatted(const char* format, Values... values) {
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), format, values...);
    return text.data();
}

} // namespace

std::string durationText(double seconds) {
    const double milliseconds = std::round(std::abs(seconds) * 1000);
    constexpr double exactLimit = 9007199254740992.0; // 2^53: above it, a double is not exact to 1
    if (!(milliseconds < exactLimit))
        return formatted("%g seconds", seconds);
    const auto whole = static_cast<long long>(milliseconds);
    return formatted("%s%lld:%02lld.%03lld", seconds < 0 && whole > 0 ? "-" : "", whole / 60000,
                     whole / 1000 % 60, whole % 1000);
}

std::string sizeText(std::int64_t bytes) {
    constexpr std::array<const char*, 6> units{"kB", "MB", "GB", "TB", "PB", "EB"};
    if (bytes > -1000 && bytes < 1000)
        return formatted("%lld B", static_cast<long long>(bytes));
    double size = static_cast<double>(bytes) / 1000;
    std::size_t unit = 0;
    // 999.95 would be shown as 1000.0, which is 1.0 of the next unit.
    for (; std::abs(size) >= 999.95 && unit + 1 < units.size(); ++unit)
        size /= 1000;
    return formatted("%.1f %s", size, units[unit]);
}

std::string countText(std::uint64_t count, std::string_view one, std::string_view many) {
    return std::to_string(count) + " " + std::string(count == 1 ? one : many);
}

std::string plainText(std::string_view text) {
    std::string plain;
    for (std::size_t position = 0; position < text.size();) {
        const auto [value, length] = codePointAt(text, position);
        if (isControlCharacter(value))
            plain += ' ';
        else
            plain += text.substr(position, length);
        position += length;
    }
    return plain;
}

std::size_t displayWidth(std::string_view text) {
    std::size_t width = 0;
    for (std::size_t position = 0; position < text.size();) {
        const auto [value, length] = codePointAt(text, position);
        if (!isIn(invisible, value))
            width += isIn(wide, value) ? 2U : 1U;
        position += length;
    }
    return width;
}

std::vector<std::string> wrappedText(std::string_view text, std::size_t width) {
    std::vector<std::string> lines(1);
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(' ', 1), text.size());
        const std::string_view word = text.substr(0, end); // with the space before it
        text.remove_prefix(end);
        if (!lines.back().empty() && displayWidth(lines.back()) + displayWidth(word) > width)
            lines.emplace_back(word.substr(word.front() == ' ' ? 1 : 0));
        else
            lines.back() += word;
    }
    return lines;
}

} // namespace kinovane::tool

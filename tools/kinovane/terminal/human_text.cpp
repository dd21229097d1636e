// SPDX-License-Identifier: Apache-2.0

#include "terminal/human_text.hpp"

#include <array>
#include <cmath>
#include <cstdio>

namespace kinovane::tool {

namespace {

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

} // namespace kinovane::tool

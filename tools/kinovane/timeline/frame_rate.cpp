// SPDX-License-Identifier: Apache-2.0

#include "timeline/frame_rate.hpp"

#include <charconv>
#include <cstdlib>
#include <numeric>
#include <system_error>

namespace kinovane::tool {

namespace {

constexpr std::int64_t largestPart = 1'000'000; // Of a fraction.
constexpr std::int64_t fastest = 1000;
constexpr std::int64_t broadcastDenominator = 1001; // As in 30000/1001, which is called 29.97.

std::optional<std::int64_t> digitsOf(std::string_view text) {
    std::int64_t number = 0;
    const auto [rest, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || rest != text.data() + text.size() || text.front() == '-' ||
        number > largestPart)
        return std::nullopt;
    return number;
}

std::optional<FrameRate> fraction(std::int64_t numerator, std::int64_t denominator) {
    if (denominator == 0 || numerator < denominator || numerator > fastest * denominator)
        return std::nullopt;
    const std::int64_t divisor = std::gcd(numerator, denominator);
    return FrameRate{numerator / divisor, denominator / divisor};
}

/// A number with one to three decimals.
std::optional<FrameRate> decimalRate(std::string_view whole, std::string_view decimals) {
    const std::optional<std::int64_t> seconds = digitsOf(whole);
    const std::optional<std::int64_t> rest = decimals.empty() ? std::nullopt : digitsOf(decimals);
    if (!seconds || !rest || decimals.size() > 3)
        return std::nullopt;
    std::int64_t thousandths = *rest;
    for (std::size_t count = decimals.size(); count < 3; ++count)
        thousandths *= 10;
    thousandths += *seconds * 1000;
    // Within the usual roundings, such as 23.97, 23.976 and 23.98.
    for (const std::int64_t rate : {24, 30, 48, 60, 120})
        if (std::abs(thousandths * broadcastDenominator - rate * 1'000'000) < 6'500)
            return FrameRate{rate * 1000, broadcastDenominator};
    return fraction(thousandths, 1000);
}

std::string decimalText(std::int64_t thousandths) {
    std::string decimals = std::to_string(1000 + thousandths % 1000).substr(1);
    decimals.erase(decimals.find_last_not_of('0') + 1);
    return std::to_string(thousandths / 1000) + (decimals.empty() ? "" : "." + decimals);
}

} // namespace

std::int64_t FrameRate::frameAt(std::int64_t milliseconds) const noexcept {
    const std::int64_t divisor = 1000 * denominator;
    return (2 * milliseconds * numerator + divisor) / (2 * divisor);
}

std::int64_t FrameRate::framesWithin(std::int64_t milliseconds) const noexcept {
    return milliseconds * numerator / (1000 * denominator);
}

double FrameRate::millisecondsAt(std::int64_t frame) const noexcept {
    return static_cast<double>(frame * denominator) * 1000 / static_cast<double>(numerator);
}

std::int64_t FrameRate::timecodeRate() const noexcept { return (numerator + denominator - 1) / denominator; }

bool FrameRate::isDropFrame() const noexcept {
    return denominator == broadcastDenominator && (numerator == 30'000 || numerator == 60'000);
}

std::optional<FrameRate> frameRateOf(std::string_view text) {
    const std::size_t separator = text.find_first_of("./");
    if (text.empty() || separator == 0)
        return std::nullopt;
    const std::string_view first = text.substr(0, separator);
    if (separator == std::string_view::npos) {
        const std::optional<std::int64_t> number = digitsOf(first);
        return number ? fraction(*number, 1) : std::nullopt;
    }
    const std::string_view second = text.substr(separator + 1);
    if (text[separator] == '.')
        return decimalRate(first, second);
    const std::optional<std::int64_t> numerator = digitsOf(first);
    const std::optional<std::int64_t> denominator = second.empty() ? std::nullopt : digitsOf(second);
    return numerator && denominator ? fraction(*numerator, *denominator) : std::nullopt;
}

std::string frameRateText(const FrameRate& rate) {
    const std::int64_t thousandths = 1000 * rate.numerator / rate.denominator;
    if (1000 % rate.denominator == 0)
        return decimalText(thousandths);
    // 24000/1001 is 23.97602…, and called 23.976.
    if (rate.denominator == broadcastDenominator && rate.numerator % 1000 == 0)
        return decimalText(thousandths);
    return std::to_string(rate.numerator) + "/" + std::to_string(rate.denominator);
}

} // namespace kinovane::tool

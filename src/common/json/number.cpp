// SPDX-License-Identifier: Apache-2.0

#include "common/json/number.hpp"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>
#include <system_error>

#include "common/json/real_number.hpp"

namespace kinovane::json {

namespace {

/// A number as digits × 10^exponent, where the digits neither begin nor end with 0; without digits it is 0.
/// The digits are a view of the number's text, because that may be as long as a document.
struct Decimal {
    bool negative = false;
    std::string_view digits; ///< May hold the decimal point.
    std::size_t digitCount = 0;
    std::int64_t exponent = 0;
};

/// Small enough that adding the length of a text cannot overflow 64 bits, and so large that no text has
/// enough digits to balance it.
constexpr std::int64_t largestExponent = std::numeric_limits<std::int64_t>::max() / 4;

/// The value of an exponent's text, whatever its length.
std::int64_t exponentOf(std::string_view text) {
    if (text.starts_with('+'))
        text.remove_prefix(1);
    std::int64_t exponent = 0;
    if (std::from_chars(text.data(), text.data() + text.size(), exponent).ec != std::errc())
        return text.starts_with('-') ? -largestExponent : largestExponent;
    return std::clamp(exponent, -largestExponent, largestExponent);
}

Decimal decimalOf(std::string_view text) {
    Decimal decimal;
    decimal.negative = text.starts_with('-');
    const std::size_t mark = std::min(text.find_first_of("eE"), text.size());
    const std::string_view mantissa = text.substr(0, mark);
    constexpr std::string_view nonzero = "123456789";
    const std::size_t first = mantissa.find_first_of(nonzero);
    if (first == std::string_view::npos)
        return decimal;
    const std::size_t last = mantissa.find_last_of(nonzero);
    const std::size_t point = std::min(mantissa.find('.'), mantissa.size());
    const bool pointInside = first < point && point < last;
    decimal.digits = mantissa.substr(first, last + 1 - first);
    decimal.digitCount = decimal.digits.size() - (pointInside ? 1 : 0);
    // The position of the last digit, counted from the decimal point.
    decimal.exponent =
        static_cast<std::int64_t>(point) - static_cast<std::int64_t>(last) - (last < point ? 1 : 0);
    if (mark < text.size())
        decimal.exponent += exponentOf(text.substr(mark + 1));
    return decimal;
}

/// How many digits the number has before the decimal point; 0 or less when it is smaller than 1.
std::int64_t wholeDigits(const Decimal& decimal) {
    return static_cast<std::int64_t>(decimal.digitCount) + decimal.exponent;
}

} // namespace

IntegerValue integerValue(std::string_view text) {
    IntegerValue result;
    const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), result.value);
    if (stop == text.data() + text.size())
        return error == std::errc() ? result : IntegerValue{0, NumberFault::tooLarge};

    const Decimal decimal = decimalOf(text);
    if (decimal.digits.empty())
        return {};
    if (decimal.exponent < 0)
        return {0, NumberFault::fraction};
    constexpr std::size_t mostDigits = std::numeric_limits<std::int64_t>::digits10 + 1;
    if (wholeDigits(decimal) > static_cast<std::int64_t>(mostDigits))
        return {0, NumberFault::tooLarge};
    std::array<char, 1 + mostDigits> whole{'-'};
    char* end = whole.data() + (decimal.negative ? 1 : 0);
    end = std::copy_if(decimal.digits.begin(), decimal.digits.end(), end,
                       [](char character) { return character != '.'; });
    end = std::fill_n(end, decimal.exponent, '0');
    return integerValue({whole.data(), static_cast<std::size_t>(end - whole.data())});
}

std::optional<double> realValue(std::string_view text) {
    if (const std::optional<double> value = nearestDouble(text))
        return value;
    // Too large or too small.
    const Decimal decimal = decimalOf(text);
    if (!decimal.digits.empty() && wholeDigits(decimal) > 0)
        return std::nullopt;
    return decimal.negative ? -0.0 : 0.0;
}

} // namespace kinovane::json

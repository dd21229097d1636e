#include "common/json_number.hpp"

#include <algorithm>
#include <charconv>
#include <limits>
#include <string>
#include <system_error>

namespace kinovane::json {

namespace {

/// A number as digits × 10^exponent, where the digits neither begin nor end with 0. No digits: the number is
/// 0.
struct Decimal {
    bool negative = false;
    std::string digits;
    std::int64_t exponent = 0;
};

Decimal decimalOf(std::string_view text) {
    Decimal decimal;
    decimal.negative = text.starts_with('-');
    if (decimal.negative)
        text.remove_prefix(1);
    const std::size_t mark = std::min(text.find_first_of("eE"), text.size());
    const std::string_view mantissa = text.substr(0, mark);
    if (mark < text.size()) {
        std::string_view exponent = text.substr(mark + 1);
        const bool positive = exponent.starts_with('+');
        if (positive)
            exponent.remove_prefix(1);
        std::from_chars(exponent.data(), exponent.data() + exponent.size(), decimal.exponent);
    }
    const std::size_t point = std::min(mantissa.find('.'), mantissa.size());
    decimal.digits = mantissa.substr(0, point);
    if (point < mantissa.size()) {
        const std::string_view fraction = mantissa.substr(point + 1);
        decimal.digits += fraction;
        decimal.exponent -= static_cast<std::int64_t>(fraction.size());
    }
    const std::size_t last = decimal.digits.find_last_not_of('0');
    const std::size_t kept = last == std::string::npos ? 0 : last + 1;
    decimal.exponent += static_cast<std::int64_t>(decimal.digits.size() - kept);
    decimal.digits.resize(kept);
    decimal.digits.erase(0, std::min(decimal.digits.find_first_not_of('0'), kept));
    return decimal;
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
    constexpr std::int64_t mostDigits = std::numeric_limits<std::int64_t>::digits10 + 1;
    if (static_cast<std::int64_t>(decimal.digits.size()) + decimal.exponent > mostDigits)
        return {0, NumberFault::tooLarge};
    std::string whole = decimal.negative ? "-" : "";
    whole += decimal.digits;
    whole.append(static_cast<std::size_t>(decimal.exponent), '0');
    return integerValue(whole);
}

std::optional<double> realValue(std::string_view text) {
    double value = 0;
    const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error == std::errc())
        return value;
    // Out of range at one end or the other; only the size of the number tells which.
    const Decimal decimal = decimalOf(text);
    if (decimal.exponent + static_cast<std::int64_t>(decimal.digits.size()) > 0)
        return std::nullopt;
    return decimal.negative ? -0.0 : 0.0;
}

} // namespace kinovane::json

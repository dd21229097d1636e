// SPDX-License-Identifier: Apache-2.0

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <optional>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "common/json/number.hpp"

namespace kinovane::test {
namespace {

constexpr std::int64_t least = std::numeric_limits<std::int64_t>::min();

/// A number's text: any digits, perhaps a fraction, perhaps an exponent.
std::string anyNumber(std::mt19937_64& random) {
    const auto below = [&](std::uint64_t end) { return random() % end; };
    const auto digits = [&](std::uint64_t count) {
        std::string text;
        for (; count > 0; --count)
            text += static_cast<char>('0' + below(10));
        return text;
    };
    std::string text = below(2) == 0 ? "-" : "";
    text += static_cast<char>('1' + below(9));
    text += digits(below(25));
    if (below(3) != 0)
        text += "." + digits(1 + below(30));
    if (below(3) != 0)
        text += "e" + std::to_string(static_cast<int>(below(700)) - 350);
    return text;
}

TEST(JSONNumber, ConvertsRealsAsTheCLibraryDoes) {
    std::mt19937_64 random(18);
    int tooLarge = 0;
    for (int attempt = 0; attempt < 100'000; ++attempt) {
        const std::string text = anyNumber(random);
        const double expected = std::strtod(text.c_str(), nullptr);
        const std::optional<double> real = json::realValue(text);
        ASSERT_EQ(real.has_value(), std::isfinite(expected)) << text;
        if (!real) {
            ++tooLarge;
            continue;
        }
        ASSERT_EQ(std::bit_cast<std::uint64_t>(*real), std::bit_cast<std::uint64_t>(expected)) << text;
    }
    EXPECT_GT(tooLarge, 1000);
}

TEST(JSONNumber, ConvertsEveryNotationOfAnInteger) {
    std::mt19937_64 random(7);
    for (int attempt = 0; attempt < 20'000; ++attempt) {
        const auto value = std::bit_cast<std::int64_t>(random() >> (random() % 64));
        const std::string text = std::to_string(attempt % 2 == 0 || value == least ? value : -value);
        const std::int64_t expected = std::strtoll(text.c_str(), nullptr, 10);
        ASSERT_EQ(json::integerValue(text).value, expected) << text;
        ASSERT_EQ(json::integerValue(text + ".00").value, expected) << text;
        ASSERT_EQ(json::integerValue(text + "000e-3").value, expected) << text;
        ASSERT_EQ(json::integerValue(text + ".5").fault, json::NumberFault::fraction) << text;
    }
}

} // namespace
} // namespace kinovane::test

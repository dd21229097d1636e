// SPDX-License-Identifier: Apache-2.0

#include "common/json/number.hpp"

#include <bit>
#include <cstdlib>
#include <limits>
#include <optional>
#include <string>

#include <gtest/gtest.h>

#include "common/json/example_record.hpp"

namespace kinovane::test {
namespace {

constexpr std::int64_t greatest = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t least = std::numeric_limits<std::int64_t>::min();

struct IntegerRow {
    std::string text;
    std::int64_t value;
};

TEST(JSONNumber, ReadsAWholeNumberInAnyNotationAsAnInteger) {
    const IntegerRow rows[] = {
        {"5", 5},
        {"5.0", 5},
        {"5e3", 5000},
        {"5E+3", 5000},
        {"50e-1", 5},
        {"-5.50e1", -55},
        {"0", 0},
        {"-0", 0},
        {"-0.0", 0},
        {"0e5", 0},
        {"0e-5", 0},
        {"0.000e999999999", 0},
        {"0.00001e5", 1},
        {"1e18", 1'000'000'000'000'000'000},
        {"9223372036854775807", greatest},
        {"9223372036854775807.0", greatest},
        {"9223372036854775.807e3", greatest},
        {"92233720368547758070e-1", greatest},
        {"-9223372036854775808", least},
        {"-9223372036854775808.000", least},
        {"9007199254740993", 9007199254740993},
        {"9007199254740993.0", 9007199254740993},
        {"1" + std::string(400, '0') + "e-400", 1},
        {"0." + std::string(400, '0') + "12e402", 12},
        {"7." + std::string(400, '0'), 7},
    };
    for (const IntegerRow& row : rows) {
        SCOPED_TRACE(row.text);
        EXPECT_EQ(json::decode<std::int64_t>(row.text), row.value);
        EXPECT_EQ(json::integerValue(row.text).fault, json::NumberFault::none);
        EXPECT_EQ(json::integerValue(row.text).value, row.value);
    }
}

struct ErrorRow {
    std::string text;
    std::string message;
};

TEST(JSONNumber, RefusesWhatIsNoInteger) {
    const ErrorRow rows[] = {
        {"5.5", "expected an integer, found 5.5"},
        {"1e-1", "expected an integer, found 1e-1"},
        {"-0.5", "expected an integer, found -0.5"},
        {"1e-400", "expected an integer, found 1e-400"},
        {"9007199254740992.5", "expected an integer, found 9007199254740992.5"},
        {"9223372036854775807.5", "expected an integer, found 9223372036854775807.5"},
        {"1." + std::string(400, '0') + "1",
         "expected an integer, found 1.00000000000000000000000000000000000000…"},
        {"9223372036854775808", "expected an integer that fits 64 bits, found 9223372036854775808"},
        {"-9223372036854775809", "expected an integer that fits 64 bits, found -9223372036854775809"},
        {"9223372036854775808.0", "expected an integer that fits 64 bits, found 9223372036854775808.0"},
        {"18446744073709551615", "expected an integer that fits 64 bits, found 18446744073709551615"},
        {"1e19", "expected an integer that fits 64 bits, found 1e19"},
        {"1e400", "expected an integer that fits 64 bits, found 1e400"},
        {"-1e999999999", "expected an integer that fits 64 bits, found -1e999999999"},
        {std::string(400, '9'),
         "expected an integer that fits 64 bits, found 9999999999999999999999999999999999999999…"},
        {"true", "expected an integer, found true"},
        {"false", "expected an integer, found false"},
        {"null", "expected an integer, found null"},
        {"\"5\"", "expected an integer, found a string"},
        {"[5]", "expected an integer, found a list"},
        {"{}", "expected an integer, found an object"},
    };
    for (const ErrorRow& row : rows) {
        SCOPED_TRACE(row.text);
        EXPECT_EQ(decodingErrorOf<std::int64_t>(row.text), (ErrorTexts{"", row.message}));
    }
}

struct RealRow {
    std::string text;
    double value;
};

TEST(JSONNumber, ReadsARealAsTheNearestDouble) {
    const RealRow rows[] = {
        {"0.1", 0.1},
        {"5", 5.0},
        {"-0", -0.0},
        {"-0.0e7", -0.0},
        {"1e308", 1e308},
        {"1.7976931348623157e308", std::numeric_limits<double>::max()},
        {"1.7976931348623158e308", std::numeric_limits<double>::max()},
        {"5e-324", std::numeric_limits<double>::denorm_min()},
        {"2.2250738585072011e-308", 2.2250738585072011e-308},
        {"1e-400", 0.0},
        {"-1e-400", -0.0},
        {"-1e-999999999", -0.0},
        {"0e999999999", 0.0},
        {"9007199254740993", 9007199254740992.0},
        {"9007199254740993.0000000000000000000000000000001", 9007199254740994.0},
        {"18446744073709551616", 18446744073709551616.0},
        {"1" + std::string(400, '0') + "e-400", 1.0},
        {"0." + std::string(400, '0') + "15e401", 1.5},
        {std::string(300, '7') + "." + std::string(100, '7'),
         std::strtod(std::string(300, '7').c_str(), nullptr)},
        {"0." + std::string(400, '3'), 1.0 / 3},
    };
    for (const RealRow& row : rows) {
        SCOPED_TRACE(row.text);
        EXPECT_EQ(std::bit_cast<std::uint64_t>(json::decode<double>(row.text)),
                  std::bit_cast<std::uint64_t>(row.value));
    }
}

TEST(JSONNumber, RefusesWhatIsNoDouble) {
    const ErrorRow rows[] = {
        {"1e309", "expected a number that fits a double, found 1e309"},
        {"-1e309", "expected a number that fits a double, found -1e309"},
        {"1e400", "expected a number that fits a double, found 1e400"},
        {"1e999999999", "expected a number that fits a double, found 1e999999999"},
        {"1.7976931348623159e308", "expected a number that fits a double, found 1.7976931348623159e308"},
        {std::string(400, '1'),
         "expected a number that fits a double, found 1111111111111111111111111111111111111111…"},
        {"true", "expected a number, found true"},
        {"null", "expected a number, found null"},
        {"\"0.1\"", "expected a number, found a string"},
        {"[]", "expected a number, found a list"},
        {"{}", "expected a number, found an object"},
    };
    for (const ErrorRow& row : rows) {
        SCOPED_TRACE(row.text);
        EXPECT_EQ(decodingErrorOf<double>(row.text), (ErrorTexts{"", row.message}));
    }
}

struct LongExponentRow {
    std::string text;
    std::optional<std::int64_t> integer;
    json::NumberFault fault; ///< Why it is no integer.
    std::optional<double> real;
};

/// A number in a message, where its length is limited.
std::string shown(const std::string& number) {
    return number.size() <= 40 ? number : number.substr(0, 40) + "…";
}

TEST(JSONNumber, AcceptsAnExponentOfAnyLength) {
    constexpr auto none = json::NumberFault::none;
    constexpr auto fraction = json::NumberFault::fraction;
    constexpr auto tooLarge = json::NumberFault::tooLarge;
    const std::string long63 = "9223372036854775807";
    const std::string thousandZeros(1000, '0');
    const LongExponentRow rows[] = {
        {"1e9999999999", {}, tooLarge, {}},
        {"1e99999999999999999999", {}, tooLarge, {}},
        {"1E+99999999999999999999", {}, tooLarge, {}},
        {"-1e99999999999999999999", {}, tooLarge, {}},
        {"0.001e99999999999999999999", {}, tooLarge, {}},
        {"1e-99999999999999999999", {}, fraction, 0.0},
        {"-1e-99999999999999999999", {}, fraction, -0.0},
        {"1000e-99999999999999999999", {}, fraction, 0.0},
        {"0e99999999999999999999", 0, none, 0.0},
        {"0e-99999999999999999999", 0, none, 0.0},
        {"-0e99999999999999999999", 0, none, -0.0},
        {"-0.000e99999999999999999999", 0, none, -0.0},
        {"-0.0e-99999999999999999999", 0, none, -0.0},
        {"1e" + thousandZeros + "3", 1000, none, 1000.0},
        {"1e+" + thousandZeros + "3", 1000, none, 1000.0},
        {"15e-" + thousandZeros + "1", {}, fraction, 1.5},
        {"1e" + std::string(1000, '9'), {}, tooLarge, {}},
        {"1e-" + std::string(1000, '9'), {}, fraction, 0.0},
        // The largest exponents that 64 bits hold, so that adding the digits to them would overflow.
        {"1e" + long63, {}, tooLarge, {}},
        {"10e" + long63, {}, tooLarge, {}},
        {"1" + thousandZeros + "e" + long63, {}, tooLarge, {}},
        {"1.5e-" + long63, {}, fraction, 0.0},
        {"-0.00015e-9223372036854775808", {}, fraction, -0.0},
        {"0." + thousandZeros + "1e-" + long63, {}, fraction, 0.0},
    };
    for (const LongExponentRow& row : rows) {
        SCOPED_TRACE(row.text);
        const json::IntegerValue integer = json::integerValue(row.text);
        EXPECT_EQ(integer.fault, row.fault);
        EXPECT_EQ(integer.value, row.integer.value_or(0));
        const std::optional<double> real = json::realValue(row.text);
        ASSERT_EQ(real.has_value(), row.real.has_value());
        if (real)
            EXPECT_EQ(std::bit_cast<std::uint64_t>(*real), std::bit_cast<std::uint64_t>(*row.real));

        // The same through the parser, of which some versions refuse such an exponent.
        if (row.integer)
            EXPECT_EQ(json::decode<std::int64_t>(row.text), *row.integer);
        else
            EXPECT_EQ(
                decodingErrorOf<std::int64_t>(row.text),
                (ErrorTexts{"", (row.fault == fraction ? "expected an integer, found "
                                                       : "expected an integer that fits 64 bits, found ") +
                                    shown(row.text)}));
        if (row.real)
            EXPECT_EQ(json::decode<double>(row.text), *row.real);
        else
            EXPECT_EQ(decodingErrorOf<double>(row.text),
                      (ErrorTexts{"", "expected a number that fits a double, found " + shown(row.text)}));
    }
}

TEST(JSONNumber, KeepsItsPlaceAmongOthersWithALongExponent) {
    const Scene scene = json::decode<Scene>(
        R"({"title":"a \"1e9999999999\" e1234567890","take":0e99999999999,"length":15E-00000000001,)"
        R"("night":true,"unknown":[1e99999999999,{"e":-1E+99999999999}],"props":[{"name":"lamp","count":)"
        R"(1e00000000003}],"extras":{"1e9999999999":7}})");
    EXPECT_EQ(scene, (Scene{"a \"1e9999999999\" e1234567890",
                            0,
                            1.5,
                            true,
                            {{"lamp", 1000}},
                            {{"1e9999999999", 7}},
                            {},
                            {}}));
}

} // namespace
} // namespace kinovane::test

// SPDX-License-Identifier: Apache-2.0

#include "json/json_output.hpp"

#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <kinovane/handoff.hpp>
#include <kinovane/json.hpp>

namespace kinovane::tool {

namespace {

namespace json = boost::json;

TEST(JSONLine, HasOneFormForEachValue) {
    struct Row {
        std::string sentence;
        json::value value;
        std::string expected;
    };
    const double infinity = std::numeric_limits<double>::infinity();
    const std::vector<Row> rows{
        {"null", nullptr, "null"},
        {"true", true, "true"},
        {"false", false, "false"},
        {"the smallest integer", std::numeric_limits<std::int64_t>::min(), "-9223372036854775808"},
        {"the largest count", std::numeric_limits<std::uint64_t>::max(), "18446744073709551615"},
        {"a whole real", 18.0, "18"},
        {"a real", 12.5, "12.5"},
        {"a real in its shortest form", 0.1, "0.1"},
        {"a real with all of its digits", 0.1 + 0.2, "0.30000000000000004"},
        {"a round real", 100000.0, "100000"},
        {"the largest real without an exponent", 999999999999999868928.0, "999999999999999868928"},
        {"a larger real", 1e21, "1e+21"},
        {"the largest real", std::numeric_limits<double>::max(), "1.7976931348623157e+308"},
        {"the smallest real without an exponent", -0.0000012345678901234567, "-0.0000012345678901234567"},
        {"a smaller real", 1.5e-7, "1.5e-07"},
        {"zero", 0.0, "0"},
        {"negative zero", -0.0, "-0"},
        {"infinity", infinity, "null"},
        {"negative infinity", -infinity, "null"},
        {"not a number", std::numeric_limits<double>::quiet_NaN(), "null"},
        {"an empty object", json::object(), "{}"},
        {"an empty list", json::array(), "[]"},
        {"members in their order", json::object{{"b", 1}, {"a", json::array{true, "c", nullptr}}},
         R"({"b":1,"a":[true,"c",null]})"},
        {"a key with escapes", json::object{{"\"\n\x7f", 1}}, R"({"\"\n\u007f":1})"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(jsonLine(row.value), row.expected + "\n") << row.sentence;
}

TEST(JSONLine, EscapesAndRepairsText) {
    struct Row {
        std::string sentence, text, expected;
    };
    const std::vector<Row> rows{
        {"no text", "", ""},
        {"other scripts", "Brèmes/灯火 น้ำ e\u0301", "Brèmes/灯火 น้ำ e\u0301"},
        {"emoji", "👨‍👩‍👧 🇫🇷 ❤️", "👨‍👩‍👧 🇫🇷 ❤️"},
        {"quotes and backslashes", R"(a "b" \c)", R"(a \"b\" \\c)"},
        {"control characters", "\n\r\t\b\x01\x1f", R"(\n\r\t\u0008\u0001\u001f)"},
        {"NUL", std::string("a\0b", 3), R"(a\u0000b)"},
        {"DEL and C1 controls", "\x7f\u0080\u009b", R"(\u007f\u0080\u009b)"},
        {"separators", "a\u2028\u2029", R"(a\u2028\u2029)"},
        {"bidirectional controls", "\u061C\u200E\u200F\u202A\u202E\u2066\u2069",
         R"(\u061c\u200e\u200f\u202a\u202e\u2066\u2069)"},
        {"a noncharacter", "\uFDD0", "\uFDD0"},
        {"bytes that are not UTF-8", "caf\xe9 \xff\x80", "caf\uFFFD \uFFFD\uFFFD"},
        {"an incomplete character", "\xe7\x81", "\uFFFD\uFFFD"},
        {"overlong UTF-8", "\xc0\xaf\xe0\x80\xaf", "\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD"},
        {"a surrogate", "\xed\xa0\x80", "\uFFFD\uFFFD\uFFFD"},
        {"beyond the last code point", "\xf4\x90\x80\x80", "\uFFFD\uFFFD\uFFFD\uFFFD"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(jsonLine(json::value(row.text)), "\"" + row.expected + "\"\n") << row.sentence;
}

TEST(JSONLine, ShowsOptionalValues) {
    EXPECT_EQ(jsonLine(optionalValue(std::optional<std::string>())), "null\n");
    EXPECT_EQ(jsonLine(optionalValue(std::optional<std::string>("x"))), "\"x\"\n");
    EXPECT_EQ(jsonLine(optionalValue(std::optional<std::int64_t>(-5))), "-5\n");
    EXPECT_EQ(jsonLine(optionalValue(std::optional<std::size_t>(7))), "7\n");
    EXPECT_EQ(jsonLine(optionalValue(std::optional<double>(1.5))), "1.5\n");
    EXPECT_EQ(jsonLine(optionalValue(std::optional<bool>(false))), "false\n");
}

TEST(ParsedJSON, IsTheSameLineAgain) {
    const std::vector<std::string> rows{
        "null",
        "[]",
        R"({"b":[1,-2,true,null,{}],"a":"x\n灯","":""})",
        "18446744073709551615",
        "-9223372036854775808",
        // Boost.JSON's own conversion is not exact for these.
        "[1.7976931348623157e+308,5e-324,0.30000000000000004,100.00000000000001,0.000001234567890123]",
    };
    for (const std::string& text : rows)
        EXPECT_EQ(jsonLine(parsedJSON(text)), text + "\n");
    const VistrelImportReceipt receipt{true, "p", "e\"", 1, 2, std::nullopt, "vistrel://p"};
    EXPECT_EQ(jsonLine(parsedJSON(encodeJSON(receipt))), encodeJSON(receipt) + "\n");
}

TEST(ParsedJSON, KeepsEveryBitOfAReal) {
    std::uint64_t bits = 1;
    for (int round = 0; round < 10000; ++round) {
        bits = bits * 6364136223846793005 + 1442695040888963407;
        const double number = static_cast<double>(bits >> 11U) * 0x1p-40;
        EXPECT_EQ(parsedJSON(jsonLine(number)).to_number<double>(), number);
    }
}

TEST(ParsedJSON, RefusesOtherText) {
    for (const char* text : {"", " ", "{", "[1", "1 2", "nul", "{\"a\":}", "\"\xff\""}) {
        try {
            ADD_FAILURE() << "accepted as " << jsonLine(parsedJSON(text));
        } catch (const boost::system::system_error&) {
        }
    }
}

} // namespace

} // namespace kinovane::tool

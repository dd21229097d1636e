// SPDX-License-Identifier: Apache-2.0

#include "json/json_text.hpp"

#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <kinovane/json.hpp>

namespace kinovane::tool {

namespace {

TEST(JSONText, EncodesValues) {
    struct Row {
        std::string sentence;
        JSONValue value;
        std::string expected;
    };
    const std::vector<Row> rows{
        {"null", nullptr, "null"},
        {"true", true, "true"},
        {"false", false, "false"},
        {"the smallest integer", std::numeric_limits<std::int64_t>::min(), "-9223372036854775808"},
        {"the largest count", std::numeric_limits<std::uint64_t>::max(), "18446744073709551615"},
        {"a whole real", 18.0, "18"},
        {"a real in its shortest form", 0.1, "0.1"},
        {"text", "Brèmes/Quay 🎬", R"("Brèmes/Quay 🎬")"},
        {"quotes and backslashes", R"(a "b" \c)", R"("a \"b\" \\c")"},
        {"control characters", std::string("\n\r\t\x01\x1f\x7f"), "\"\\n\\r\\t\\u0001\\u001f\x7f\""},
        {"a zero byte", std::string(1, '\0'), R"("\u0000")"},
        {"an absent optional", std::optional<std::string>(), "null"},
        {"a present optional", std::optional<std::string>("x"), R"("x")"},
        {"an empty object", JSONObject(), "{}"},
        {"an object", JSONObject().add("a", 1).add("b\"", JSONList().add(true).add("c")),
         R"({"a":1,"b\"":[true,"c"]})"},
        {"an empty list", JSONList(), "[]"},
        {"text that is already JSON", JSONValue::fromJSON(R"({"ok":true})"), R"({"ok":true})"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(row.value.text(), row.expected) << row.sentence;
}

TEST(JSONText, RefusesTextThatIsNotUTF8) {
    const std::vector<std::string> rows{"\xff",         "a\x80",           "\xc0\xaf",
                                        "\xe2\x82",     "\xed\xa0\x80",    "\xf4\x90\x80\x80",
                                        "\xe0\x80\x80", "\xf0\x80\x80\x80"};
    for (const std::string& text : rows) {
        try {
            const JSONValue value(text);
            ADD_FAILURE() << "accepted as " << value.text();
        } catch (const JSONEncodingError& error) {
            EXPECT_STREQ(error.what(), "A path in the result is not UTF-8, and JSON cannot carry it.");
        }
    }
}

TEST(JSONText, RefusesNumbersThatAreNotFinite) {
    for (const double number :
         {std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()}) {
        try {
            const JSONValue value(number);
            ADD_FAILURE() << "accepted as " << value.text();
        } catch (const JSONEncodingError& error) {
            EXPECT_STREQ(error.what(), "the number is not finite");
        }
    }
}

} // namespace

} // namespace kinovane::tool

// SPDX-License-Identifier: Apache-2.0

#include <limits>
#include <map>
#include <span>
#include <string>

#include <gtest/gtest.h>

#include "common/json/example_record.hpp"
#include "common/json/writer.hpp"

namespace kinovane::test {
namespace {

struct KeyRow {
    const char* sentence;
    std::string key;   ///< As the document has it.
    std::string shown; ///< As a message has it.
};

void expectShown(std::span<const KeyRow> rows) {
    for (const KeyRow& row : rows) {
        SCOPED_TRACE(row.sentence);
        EXPECT_EQ((decodingErrorOf<std::map<std::string, std::int64_t>>("{\"" + row.key + "\":true}")),
                  (ErrorTexts{row.shown, row.shown + ": expected an integer, found true"}));
    }
}

TEST(JSONMessage, ShowsControlCharactersOfAKeyAsEscapes) {
    const KeyRow rows[] = {
        {"a plain key", "sailors", "sailors"},
        {"letters beyond ASCII", "Brèmes", "Brèmes"},
        {"a bell", R"(a\u0007b)", R"(a\u0007b)"},
        {"a line break", R"(a\nb)", R"(a\u000ab)"},
        {"a NUL byte", R"(a\u0000b)", R"(a\u0000b)"},
        {"the delete character", "a\x7F", R"(a\u007f)"},
        {"the terminal's control sequence introducer", R"(\u009b)", R"(\u009b)"},
        {"a no-break space, which is no control character", R"(\u00a0)", "\xC2\xA0"},
    };
    expectShown(rows);
}

std::string repeated(std::string_view text, std::size_t times) {
    std::string result;
    for (std::size_t time = 0; time < times; ++time)
        result += text;
    return result;
}

TEST(JSONMessage, ShortensALongKey) {
    const KeyRow rows[] = {
        {"199 characters", repeated("k", 199), repeated("k", 199)},
        {"200 characters", repeated("k", 200), repeated("k", 200)},
        {"201 characters", repeated("k", 201), repeated("k", 200) + "…"},
        {"a million characters", repeated("k", 1'000'000), repeated("k", 200) + "…"},
        {"200 characters of two bytes", repeated("è", 200), repeated("è", 200)},
        {"201 characters of two bytes", repeated("è", 201), repeated("è", 200) + "…"},
        {"201 characters of four bytes", repeated("🎬", 201), repeated("🎬", 200) + "…"},
        {"200 control characters", repeated(R"(\u0007)", 200), repeated(R"(\u0007)", 200)},
        {"201 control characters", repeated(R"(\u0007)", 201), repeated(R"(\u0007)", 200) + "…"},
    };
    expectShown(rows);
}

TEST(JSONMessage, ShortensALongKeyThatCannotBeWritten) {
    const std::map<std::string, double> levels{{repeated("k", 201), std::numeric_limits<double>::infinity()}};
    try {
        FAIL() << json::encode(levels, JSONFormat::compact);
    } catch (const JSONEncodingError& error) {
        EXPECT_EQ(error.path(), repeated("k", 200) + "…");
        EXPECT_EQ(error.what(), repeated("k", 200) + "…: the number is not finite");
    }
}

} // namespace
} // namespace kinovane::test

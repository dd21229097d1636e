// SPDX-License-Identifier: Apache-2.0

#include <limits>
#include <map>
#include <string>

#include <gtest/gtest.h>

#include "common/json/example_record.hpp"
#include "common/json/writer.hpp"

namespace kinovane::test {
namespace {

TEST(JSONMessage, AKeyIsShownSoThatItCanBeRead) {
    struct Row {
        const char* sentence;
        std::string key; ///< As the document has it.
        std::string shown;
    };
    const Row rows[] = {
        {"a plain key", "sailors", "sailors"},
        {"letters beyond ASCII", "Brèmes", "Brèmes"},
        {"a bell", R"(a\u0007b)", R"(a\u0007b)"},
        {"a line break", R"(a\nb)", R"(a\u000ab)"},
        {"a NUL byte", R"(a\u0000b)", R"(a\u0000b)"},
        {"what deletes", "a\x7F", R"(a\u007f)"},
        {"what begins a command to a terminal", R"(\u009b)", R"(\u009b)"},
        {"a space that does not break is no command", R"(\u00a0)", "\xC2\xA0"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        const std::optional<Refusal> refusal =
            refusalOf<Scene>(R"({"title":"t","take":1,"length":1,"night":true,"props":[],"extras":{")" +
                             row.key + R"(":true}})");
        ASSERT_TRUE(refusal);
        EXPECT_EQ(refusal->path, "extras." + row.shown);
        EXPECT_EQ(refusal->message, "extras." + row.shown + ": expected an integer, found true");
    }
}

std::string repeated(std::string_view text, std::size_t times) {
    std::string result;
    for (std::size_t time = 0; time < times; ++time)
        result += text;
    return result;
}

TEST(JSONMessage, ALongKeyIsShortened) {
    struct Row {
        const char* sentence;
        std::string key; ///< As the document has it.
        std::string shown;
    };
    const Row rows[] = {
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
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        const std::optional<Refusal> refusal =
            refusalOf<Scene>(R"({"title":"t","take":1,"length":1,"night":true,"props":[],"extras":{")" +
                             row.key + R"(":true}})");
        ASSERT_TRUE(refusal);
        EXPECT_EQ(refusal->path, "extras." + row.shown);
        EXPECT_EQ(refusal->message, "extras." + row.shown + ": expected an integer, found true");
    }
}

TEST(JSONMessage, ALongKeyIsShortenedWhenWritingFailsToo) {
    const std::map<std::string, double> levels{{repeated("k", 201), std::numeric_limits<double>::infinity()}};
    try {
        FAIL() << json::encode(levels, JSONFormat::compact);
    } catch (const JSONEncodingError& error) {
        EXPECT_EQ(error.path(), repeated("k", 200) + "…");
    }
}

TEST(JSONMessage, ACopyOfAnErrorSaysTheSame) {
    const JSONDecodingError error("props[0].name", "props[0].name: is missing");
    const JSONDecodingError copy(error); // NOLINT(performance-unnecessary-copy-initialization)
    EXPECT_EQ(copy.path(), "props[0].name");
    EXPECT_STREQ(copy.what(), error.what());
}

// Deeper than the indentation that is kept ready.
TEST(JSONMessage, ManyLevelsAreIndentedOneByOne) {
    using Levels4 =
        std::map<std::string, std::map<std::string, std::map<std::string, std::map<std::string, Prop>>>>;
    using Levels8 =
        std::map<std::string, std::map<std::string, std::map<std::string, std::map<std::string, Levels4>>>>;
    using Levels12 =
        std::map<std::string, std::map<std::string, std::map<std::string, std::map<std::string, Levels8>>>>;
    Levels12 levels;
    levels["a"]["b"]["c"]["d"]["e"]["f"]["g"]["h"]["i"]["j"]["k"]["l"] = {"lamp", 7};
    const std::string text = json::encode(levels, JSONFormat::pretty);
    EXPECT_NE(
        text.find("\n" + std::string(24, ' ') + "\"l\": {\n" + std::string(26, ' ') + "\"count\": 7,\n"),
        std::string::npos)
        << text;
}

} // namespace
} // namespace kinovane::test

#include <string>

#include <gtest/gtest.h>

#include "common/example_record.hpp"
#include "common/json_writer.hpp"

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

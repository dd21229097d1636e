// SPDX-License-Identifier: Apache-2.0

#include "film/tool_output.hpp"

#include <chrono>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace kinovane::tool {

namespace {

using namespace std::chrono_literals;

constexpr OutputStream out = OutputStream::standardOutput;
constexpr OutputStream err = OutputStream::standardError;

using Chunks = std::vector<std::pair<OutputStream, std::string>>;

std::string shownOutput(const Chunks& chunks, bool isShown = true) {
    testing::internal::CaptureStderr();
    {
        const Console console{CommonOptions{}};
        ToolOutput output(console, "film", isShown, {});
        for (const auto& [stream, chunk] : chunks)
            output.show(stream, chunk);
    }
    return testing::internal::GetCapturedStderr();
}

TEST(ToolOutput, IsShownInLines) {
    const struct {
        const char* sentence;
        Chunks chunks;
        const char* expected;
    } rows[]{
        {"nothing", {}, ""},
        {"a line in two chunks", {{out, "one "}, {out, "line\n"}}, "one line\n"},
        {"a line without an end", {{out, "one"}}, "one\n"},
        {"both streams", {{out, "one"}, {err, "two\n"}, {out, "three"}, {err, ""}}, "one\ntwo\nthree\n"},
        {"other line breaks", {{out, "a\r\nb\rc\n\nd\r\r\n"}}, "a\nb\nc\n\nd\n\n"},
        {"a line break in two chunks", {{out, "a\r"}, {out, "\nb\n"}}, "a\nb\n"},
        {"a line break in two chunks with the other stream between",
         {{out, "a\r"}, {err, "e\n"}, {out, "\nb\n"}},
         "a\ne\nb\n"},
        {"tabulators", {{out, "a\tb\n"}}, "a    b\n"},
        {"escapes", {{out, "\x1b[31mred\x07\n"}}, "\\x1b[31mred\\x07\n"},
        {"marks of styles", {{out, "\xef\xb7\x90x\n"}}, "\\u{fdd0}x\n"},
        {"marks of direction", {{out, "\u202ex\n"}}, "\\u{202e}x\n"},
    };
    for (const auto& [sentence, chunks, expected] : rows) {
        EXPECT_EQ(shownOutput(chunks), expected) << sentence;
        EXPECT_EQ(shownOutput(chunks, false), "") << sentence;
    }
}

TEST(ToolOutput, EndsOnce) {
    testing::internal::CaptureStderr();
    const Console console{CommonOptions{}};
    ToolOutput output(console, "film", true, {});
    output.show(err, "one");
    EXPECT_TRUE(output.hasShownErrors());
    output.finish();
    output.finish();
    output.show(err, "two");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "one\n");
}

TEST(ToolOutput, TellsForHowLongTheToolHasBeenWorking) {
    EXPECT_EQ(workingText("film", 12s), "film has been working for 12 s");
    EXPECT_EQ(workingText("film", 60s), "film has been working for 1 min 0 s");
    EXPECT_EQ(workingText("fi\x1blm", 3725s), "fi\\x1blm has been working for 62 min 5 s");
}

} // namespace

} // namespace kinovane::tool

// SPDX-License-Identifier: Apache-2.0

#include "terminal/shown_text.hpp"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "terminal/style.hpp"

namespace kinovane::tool {

namespace {

struct Row {
    std::string sentence, text, expected;
};

TEST(ShownText, EscapesWhatATerminalMustNotGet) {
    const std::vector<Row> rows{
        {"an empty text", "", ""},
        {"plain text", R"(Brèmes — C:\films "a" 'b')", R"(Brèmes — C:\films "a" 'b')"},
        {"Chinese and Thai", "灯火 น้ำ", "灯火 น้ำ"},
        {"a combining accent", "e\u0301", "e\u0301"},
        {"a family, a flag, and a heart as emoji", "👨‍👩‍👧 🇫🇷 ❤️",
         "👨‍👩‍👧 🇫🇷 ❤️"},
        {"a non-joiner in Persian", "می\u200cخواهم", "می\u200cخواهم"},
        {"line breaks and tabs", "a\nb\tc\r", R"(a\nb\tc\r)"},
        {"NUL", std::string("a\0b", 3), R"(a\x00b)"},
        {"an escape sequence", "\x1b[2Jx", R"(\x1b[2Jx)"},
        {"DEL", "a\x7f", R"(a\x7f)"},
        {"a control character of two bytes", "a\u009b2J", R"(a\u{9b}2J)"},
        {"a control character of one byte",
         "a\x9b"
         "2J",
         R"(a\x9b2J)"},
        {"separators", "a\u2028b\u2029", R"(a\u{2028}b\u{2029})"},
        {"a reversed text", "\u202Etxt.exe\u202C \u200F\u061C\u2066",
         R"(\u{202e}txt.exe\u{202c} \u{200f}\u{61c}\u{2066})"},
        {"a byte-order mark", "\uFEFFa", R"(\u{feff}a)"},
        {"a soft hyphen and a zero-width space", "a\u00ADb\u200B", R"(a\u{ad}b\u{200b})"},
        {"tag characters", "🏴\U000E0067\U000E007F", R"(🏴\u{e0067}\u{e007f})"},
        {"noncharacters", "\uFDD0\uFDEF\uFFFF\U0010FFFE", R"(\u{fdd0}\u{fdef}\u{ffff}\u{10fffe})"},
        {"a style marker", styled(Style::bad, "x"), R"(\u{fdd2}x\u{fdd5})"},
        {"bytes that are not UTF-8", "caf\xe9 \xe7\x81 \x80", R"(caf\xe9 \xe7\x81 \x80)"},
        {"overlong UTF-8", "\xc0\xaf\xe0\x80\xaf", R"(\xc0\xaf\xe0\x80\xaf)"},
        {"a surrogate", "\xed\xa0\x80", R"(\xed\xa0\x80)"},
        {"beyond the last code point", "\xf4\x90\x80\x80", R"(\xf4\x90\x80\x80)"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(shown(row.text), row.expected) << row.sentence;
}

TEST(ShownText, QuotesAPathThatHasToBeEscaped) {
    const std::vector<Row> rows{
        {"an empty path", "", ""},
        {"a plain path", "/films/a.mp4", "/films/a.mp4"},
        {"spaces", "/my films/a b.mp4", "/my films/a b.mp4"},
        {"quotes and backslashes", R"(/it's "a" \b)", R"(/it's "a" \b)"},
        {"other scripts", "/Brèmes/灯 🎬", "/Brèmes/灯 🎬"},
        {"a line feed and a tab", "/a\nb\tc", R"($'/a\nb\tc')"},
        {"quotes, backslashes and a line feed", "/it's \\b\n", R"($'/it\'s \\b\n')"},
        {"a byte that is not UTF-8", "/caf\xe9/run.json", R"($'/caf\xe9/run.json')"},
        {"an escape sequence", "/a\x1b[31m\r", R"($'/a\x1b[31m\x0d')"},
        {"a digit after an escape",
         "/\x1b"
         "9g",
         R"($'/\x1b\x39g')"},
        {"a character of several bytes", "/灯\u202Ea", R"($'/灯\xe2\x80\xae\x61')"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(shownPath(row.text), row.expected) << row.sentence;
}

/// What bash passes to a program for these characters on its command line.
std::string readByBash(const std::string& word) {
    ::setenv("KINOVANE_WORD", word.c_str(), 1);
    std::string output;
    std::FILE* pipe = ::popen("bash -c \"printf %s $KINOVANE_WORD\"", "r");
    if (pipe == nullptr)
        return "bash cannot be started";
    std::array<char, 4096> buffer{};
    while (const std::size_t count = std::fread(buffer.data(), 1, buffer.size(), pipe))
        output.append(buffer.data(), count);
    ::pclose(pipe);
    return output;
}

TEST(ShownText, QuotesAPathAsTheShellReadsIt) {
    std::string everyByte = "\n";
    std::string everyPair = "\n";
    for (int byte = 1; byte < 256; ++byte) {
        everyByte += static_cast<char>(byte);
        everyPair +=
            {static_cast<char>(byte), 'f', static_cast<char>(byte), '\'', static_cast<char>(byte), '\\'};
    }
    const std::vector<std::string> paths{"/it's a \"film\"\\n\n$HOME `ls` $(ls) !x",
                                         "/caf\xe9/run.json",
                                         "/灯火/\u202Efdp.exe\u009b1",
                                         "/\x1b[31m9\x01"
                                         "1\x7f",
                                         "-\n",
                                         everyByte,
                                         everyPair};
    for (const std::string& path : paths)
        EXPECT_EQ(readByBash(shownPath(path)), path) << shownPath(path);
}

TEST(ShownText, KeepsLineFeedsAndStyleMarkersOfLines) {
    const std::vector<Row> rows{
        {"lines", "a\n\n b\n", "a\n\n b\n"},
        {"a styled text", styled(Style::heading, "a\nb"), styled(Style::heading, "a\nb")},
        {"every style marker, and the next noncharacters", "\uFDCF\uFDD0\uFDD1\uFDD2\uFDD3\uFDD4\uFDD5\uFDD6",
         "\uFDCF\uFDD0\uFDD1\uFDD2\uFDD3\uFDD4\uFDD5\\u{fdd6}"},
        {"other control characters", "a\r\n\tb\x1b[0m\x7f\u009b", "a\\r\n\\tb\\x1b[0m\\x7f\\u{9b}"},
        {"bytes that are not UTF-8", "\xff\n\xc0\xaf", "\\xff\n\\xc0\\xaf"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(cleanedLines(row.text), row.expected) << row.sentence;
}

} // namespace

} // namespace kinovane::tool

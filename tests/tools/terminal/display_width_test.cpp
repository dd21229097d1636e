// SPDX-License-Identifier: Apache-2.0

#include "terminal/display_width.hpp"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "terminal/shown_text.hpp"
#include "terminal/style.hpp"

namespace kinovane::tool {

namespace {

TEST(DisplayWidth, CountsTerminalColumns) {
    struct Row {
        std::string sentence, text;
        std::size_t expected;
    };
    const std::vector<Row> rows{
        {"nothing", "", 0},
        {"ASCII", "lamp", 4},
        {"a precomposed accent", "Brèmes", 6},
        {"a combining accent", "e\u0300", 1},
        {"an accent without a letter", "\u0300", 0},
        {"Chinese", "灯火", 4},
        {"a Hangul syllable", "한", 2},
        {"the letters of a Hangul syllable", "\u1112\u1161\u11AB", 2},
        {"halfwidth katakana", "ｱ", 1},
        {"Thai marks above and below", "ที่ดู", 2},
        {"Thai SARA AM, which has a column of its own", "น้ำ", 2},
        {"an emoji", "🎬", 2},
        {"a skin tone", "👍🏽", 2},
        {"a family", "👨‍👩‍👧‍👦", 2},
        {"two families", "👨‍👩‍👧👨‍👩‍👧", 4},
        {"a flag", "🇫🇷", 2},
        {"two flags", "🇫🇷🇯🇵", 4},
        {"half a flag", "🇫", 1},
        {"a heart as text", "❤", 1},
        {"a heart as an emoji", "❤\uFE0F", 2},
        {"a joined heart", "❤\uFE0F\u200D🔥", 2},
        {"a keycap", "1\uFE0F\u20E3", 2},
        {"a letter with an emoji selector", "a\uFE0F", 1},
        {"style markers", styled(Style::good, "灯"), 2},
        {"a marker before an accent", "e" + styled(Style::dim, "\u0301x"), 2},
        {"a line feed as it is shown", "a\n", 3},
        {"an escape as it is shown", "\x1b[2J", 7},
        {"NUL as it is shown", std::string("\0", 1), 4},
        {"a bidirectional control as it is shown", "\u202E", 8},
        {"overlong UTF-8 as it is shown", "\xc0\xaf", 8},
        {"a surrogate as it is shown", "\xed\xa0\x80", 12},
    };
    for (const Row& row : rows)
        EXPECT_EQ(displayWidth(row.text), row.expected) << row.sentence;
}

TEST(DisplayWidth, CountsEscapesAsTheyAreShown) {
    for (const std::string text :
         {"a\tb", "\xff\xfe", "🏴\U000E0067\U000E007F", "e\u0301\u2028\u0301", "\uFEFF灯"})
        EXPECT_EQ(displayWidth(text), displayWidth(shown(text))) << shown(text);
}

struct FitRow {
    std::string sentence, text;
    std::size_t columns;
    std::string expected;
};

TEST(FittedText, EndsWithAnEllipsisWhenItIsCut) {
    const std::vector<FitRow> rows{
        {"no columns", "lamp", 0, ""},
        {"no text", "", 3, ""},
        {"one column", "lamp", 1, "…"},
        {"one column for one letter", "a", 1, "a"},
        {"a text that fits", "lamp", 4, "lamp"},
        {"a text that does not fit", "lamps", 4, "lam…"},
        {"accents that fit", "e\u0301e\u0301", 2, "e\u0301e\u0301"},
        {"a cut after an accent", "e\u0301e\u0301e\u0301", 2, "e\u0301…"},
        {"no half of a wide character", "灯火灯", 4, "灯…"},
        {"a wide character that just fits", "灯火灯", 5, "灯火…"},
        {"Thai", "น้ำใจดี", 3, "น้ำ…"},
        {"a whole family", "👨‍👩‍👧👨‍👩‍👧", 3, "👨‍👩‍👧…"},
        {"no half of a flag", "🇫🇷🇯🇵", 3, "🇫🇷…"},
        {"no half of a flag that does not fit", "🇫🇷🇯🇵", 2, "…"},
        {"a heart as an emoji", "❤\uFE0F❤\uFE0F", 3, "❤\uFE0F…"},
        {"no half of an escape",
         "ab\x1b"
         "cd",
         5, "ab…"},
        {"bytes that are not UTF-8", "a\xff\xff", 6, "a\xff…"},
        {"markers are kept", styled(Style::bad, "lamps") + styled(Style::dim, "!"), 4,
         styled(Style::bad, "lam…") + styled(Style::dim, "")},
    };
    for (const FitRow& row : rows) {
        EXPECT_EQ(fitted(row.text, row.columns), row.expected) << row.sentence;
        EXPECT_LE(displayWidth(fitted(row.text, row.columns)), row.columns) << row.sentence;
    }
}

TEST(FittedText, KeepsItsEndWhenItIsCutInTheMiddle) {
    const std::vector<FitRow> rows{
        {"no columns", "lamp", 0, ""},
        {"one column", "lamp", 1, "…"},
        {"two columns", "lamp", 2, "…p"},
        {"three columns", "lamp", 3, "l…p"},
        {"a text that fits", "lamp", 4, "lamp"},
        {"a path", "/films/late-ferry/run.json", 16, "/films/…run.json"},
        {"wide characters", "灯火灯火灯火", 7, "灯…火"},
        {"an accent stays with its letter", "e\u0301abce\u0301", 4, "e\u0301…ce\u0301"},
        {"families stay whole", "👨‍👩‍👧ab👨‍👩‍👧", 5,
         "👨‍👩‍👧…👨‍👩‍👧"},
        {"flags stay whole", "🇫🇷🇯🇵🇫🇷🇯🇵", 7, "🇫🇷…🇯🇵"},
        {"markers are kept", "/" + styled(Style::heading, "films") + "/a", 5,
         "/" + styled(Style::heading, "f…") + "/a"},
    };
    for (const FitRow& row : rows) {
        EXPECT_EQ(fittedMiddle(row.text, row.columns), row.expected) << row.sentence;
        EXPECT_LE(displayWidth(fittedMiddle(row.text, row.columns)), row.columns) << row.sentence;
    }
}

TEST(WrappedText, IsBrokenAtSpacesAndInsideLongWords) {
    struct Row {
        std::string sentence, text;
        std::size_t columns;
        std::vector<std::string> expected;
    };
    const std::vector<Row> rows{
        {"an empty text is one empty line", "", 5, {""}},
        {"a text that fits", "a lamp", 6, {"a lamp"}},
        {"a text that does not fit", "a lamp for", 6, {"a lamp", "for"}},
        {"a word that is wider than a line", "a lighthouse on", 6, {"a", "lighth", "ouse", "on"}},
        {"a word after the end of a broken one", "a lighthouse x", 6, {"a", "lighth", "ouse x"}},
        {"a word of many lines", "abcdefg", 3, {"abc", "def", "g"}},
        {"no columns", "a lamp", 0, {"a", "lamp"}},
        {"columns count, not bytes", "éé éé", 5, {"éé éé"}},
        {"Chinese has no spaces", "灯火灯火灯", 5, {"灯火", "灯火", "灯"}},
        {"characters that are wider than a line", "灯火", 1, {"灯", "火"}},
        {"accents stay with their letters", "e\u0301e\u0301e\u0301", 2, {"e\u0301e\u0301", "e\u0301"}},
        {"families and flags stay whole",
         "👨‍👩‍👧🇫🇷❤️",
         3,
         {"👨‍👩‍👧", "🇫🇷", "❤️"}},
        {"Thai marks stay with their letters", "น้ำใจ", 2, {"น้ำ", "ใจ"}},
        {"styled words", styled(Style::bad, "a lamp") + " x", 4, {"\uFDD2a", "lamp\uFDD5", "x"}},
        {"escapes stay whole", "\xff\xff\xff", 9, {"\xff\xff", "\xff"}},
    };
    for (const Row& row : rows)
        EXPECT_EQ(wrapped(row.text, row.columns), row.expected) << row.sentence;
}

} // namespace

} // namespace kinovane::tool

// SPDX-License-Identifier: Apache-2.0

#include "terminal/human_text.hpp"

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "terminal/text_table.hpp"

namespace kinovane::tool {

namespace {

TEST(HumanText, ShowsDurations) {
    struct Row {
        double seconds;
        std::string expected;
    };
    const std::vector<Row> rows{
        {0, "0:00.000"},           {18, "0:18.000"},
        {0.0625, "0:00.063"},      {59.9994, "0:59.999"},
        {59.9996, "1:00.000"},     {62.5, "1:02.500"},
        {3600, "60:00.000"},       {-1.25, "-0:01.250"},
        {-0.0001, "0:00.000"},     {1e12, "16666666666:40.000"},
        {1e300, "1e+300 seconds"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(durationText(row.seconds), row.expected) << row.seconds;
}

TEST(HumanText, ShowsSizes) {
    struct Row {
        std::int64_t bytes;
        std::string expected;
    };
    const std::vector<Row> rows{
        {0, "0 B"},
        {1, "1 B"},
        {999, "999 B"},
        {1000, "1.0 kB"},
        {27280, "27.3 kB"},
        {999949, "999.9 kB"},
        {999950, "1.0 MB"},
        {1500000000, "1.5 GB"},
        {std::numeric_limits<std::int64_t>::max(), "9.2 EB"},
        {-5, "-5 B"},
        {std::numeric_limits<std::int64_t>::min(), "-9.2 EB"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(sizeText(row.bytes), row.expected) << row.bytes;
}

TEST(HumanText, ShowsCounts) {
    EXPECT_EQ(countText(0, "file", "files"), "0 files");
    EXPECT_EQ(countText(1, "file", "files"), "1 file");
    EXPECT_EQ(countText(2, "file", "files"), "2 files");
}

TEST(HumanText, ReplacesControlCharactersBySpaces) {
    struct Row {
        std::string sentence, text, expected;
    };
    const std::vector<Row> rows{
        {"plain text", "Brèmes — 灯", "Brèmes — 灯"},
        {"line breaks and tabs", "a\nb\tc\r", "a b c "},
        {"an escape sequence", "\x1b[2Jx", " [2Jx"},
        {"a control character of two bytes",
         "a\xc2\x9b"
         "2J",
         "a 2J"},
        {"a control character of one byte",
         "a\x9b"
         "2J",
         "a 2J"},
        {"DEL", "a\x7f", "a "},
    };
    for (const Row& row : rows)
        EXPECT_EQ(plainText(row.text), row.expected) << row.sentence;
}

TEST(HumanText, MeasuresDisplayWidths) {
    struct Row {
        std::string text;
        std::size_t expected;
    };
    const std::vector<Row> rows{{"", 0},     {"lamp", 4}, {"Brèmes", 6}, {"e\xcc\x80", 1},
                                {"灯火", 4}, {"🎬", 2},   {"\xff", 1}};
    for (const Row& row : rows)
        EXPECT_EQ(displayWidth(row.text), row.expected) << row.text;
}

TEST(HumanText, WrapsLines) {
    struct Row {
        std::string sentence, text;
        std::size_t width;
        std::vector<std::string> expected;
    };
    const std::vector<Row> rows{
        {"an empty text is one empty line", "", 5, {""}},
        {"a text that fits", "a lamp", 6, {"a lamp"}},
        {"a text that does not fit", "a lamp for", 6, {"a lamp", "for"}},
        {"a long word gets its own line", "a lighthouse on", 6, {"a", "lighthouse", "on"}},
        {"columns count, not bytes", "éé éé", 5, {"éé éé"}},
    };
    for (const Row& row : rows)
        EXPECT_EQ(wrappedText(row.text, row.width), row.expected) << row.sentence;
}

TEST(TextTable, AlignsItsColumnsAndWrapsTheLast) {
    using enum TextTable::Alignment;
    TextTable numbers({left, right});
    numbers.add({"été", "7"});
    numbers.add({"winter", "12"});
    EXPECT_EQ(numbers.text(), "  été      7\n"
                              "  winter  12\n");

    TextTable prose({left, left});
    prose.add({"a", std::string(60, 'x') + " " + std::string(60, 'y')});
    prose.add({"b", ""});
    EXPECT_EQ(prose.text(), "  a  " + std::string(60, 'x') + "\n     " + std::string(60, 'y') + "\n  b\n");

    EXPECT_THROW(prose.add({"alone"}), std::logic_error);
}

} // namespace

} // namespace kinovane::tool

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

TEST(TextTable, CutsWideCells) {
    using enum TextTable::Alignment;
    TextTable table({left, left});
    table.add({std::string(1000, 'x'), "y"});
    table.add({"a", "b"});
    EXPECT_EQ(table.text(200), "  " + std::string(99, 'x') + "…  y\n  a" + std::string(101, ' ') + "b\n");
}

TEST(TextTable, FitsTerminalsOfAnyWidth) {
    using enum TextTable::Alignment;
    TextTable table({left, right, left});
    table.add({"灯火", "7", "The lamp on the quay is lit."});
    table.add({"ที่", "12", "火災報知器が夜中に鳴り続けている"});
    table.addUnwrapped({"e\u0301", "", "/a path/that can be copied/run.json"});
    struct Row {
        std::string sentence;
        std::size_t columns;
        std::string expected;
    };
    const std::string narrow = "  灯火   7  The lamp on the quay\n"
                               "            is lit.\n"
                               "  ที่     12  火災報知器が夜中に鳴\n"
                               "            り続けている\n"
                               "  e\u0301         /a path/that can be copied/run.json\n";
    const std::vector<Row> rows{
        {"wide", 45,
         "  灯火   7  The lamp on the quay is lit.\n"
         "  ที่     12  火災報知器が夜中に鳴り続けている\n"
         "  e\u0301         /a path/that can be copied/run.json\n"},
        {"just wide enough for twenty columns of text", 32, narrow},
        {"narrower", 31,
         "  灯火   7\n"
         "      The lamp on the quay is\n"
         "      lit.\n"
         "  ที่     12\n"
         "      火災報知器が夜中に鳴り続\n"
         "      けている\n"
         "  e\u0301         /a path/that can be copied/run.json\n"},
        {"no columns", 0,
         "  灯火   7\n"
         "      The lamp on the quay\n"
         "      is lit.\n"
         "  ที่     12\n"
         "      火災報知器が夜中に鳴\n"
         "      り続けている\n"
         "  e\u0301         /a path/that can be copied/run.json\n"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(table.text(row.columns), row.expected) << row.sentence;
}

} // namespace

} // namespace kinovane::tool

// SPDX-License-Identifier: Apache-2.0

#include "terminal/progress_text.hpp"

#include <cstdint>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "terminal/display_width.hpp"

namespace kinovane::tool {

namespace {

constexpr std::uint64_t most = std::numeric_limits<std::uint64_t>::max();

struct Row {
    std::string sentence;
    std::size_t columns;
    double seconds;
    VerificationProgress progress;
    std::string expected;
};

void expectTexts(const std::vector<Row>& rows) {
    for (const Row& row : rows) {
        const std::string text = progressText(row.progress, row.seconds, row.columns);
        EXPECT_EQ(text, row.expected) << row.sentence;
        EXPECT_LE(displayWidth(text), row.columns - 1) << row.sentence;
    }
}

TEST(ProgressText, ShowsTheProgress) {
    expectTexts({
        {"the beginning", 80, 0, {0, 9, 0, 3'000'000'000, ""}, "  0%  0 of 9 files, 0 B of 3.0 GB"},
        {"time passed and nothing was read",
         80,
         5,
         {0, 9, 0, 3'000'000'000, "a.mp4"},
         "  0%  0 of 9 files, 0 B of 3.0 GB  a.mp4"},
        {"too early for a rate",
         80,
         0.9,
         {0, 9, 1'000'000, 3'000'000'000, "a.mp4"},
         "  0%  0 of 9 files, 1.0 MB of 3.0 GB  a.mp4"},
        {"too early for an estimate",
         80,
         2.9,
         {1, 9, 1'450'000'000, 3'000'000'000, "a.mp4"},
         " 48%  1 of 9 files, 1.4 GB of 3.0 GB, 500.0 MB/s  a.mp4"},
        {"too little done for an estimate",
         80,
         5,
         {0, 9, 149'000'000, 3'000'000'000, "a.mp4"},
         "  4%  0 of 9 files, 149.0 MB of 3.0 GB, 29.8 MB/s  a.mp4"},
        {"some files done",
         80,
         10,
         {3, 9, 400'000'000, 3'000'000'000, "a.mp4"},
         " 13%  3 of 9 files, 400.0 MB of 3.0 GB, 40.0 MB/s, 1:05 left  a.mp4"},
        {"nearly done",
         80,
         10,
         {8, 9, 2'999'999'999, 3'000'000'000, "a.mp4"},
         " 99%  8 of 9 files, 3.0 GB of 3.0 GB, 300.0 MB/s, 0:01 left  a.mp4"},
        {"done",
         80,
         10,
         {9, 9, 3'000'000'000, 3'000'000'000, "a.mp4"},
         "100%  9 of 9 files, 3.0 GB of 3.0 GB, 300.0 MB/s, 0:00 left  a.mp4"},
        {"all bytes done, and an empty file left",
         80,
         4,
         {1, 2, 8, 8, ""},
         " 99%  1 of 2 files, 8 B of 8 B, 2 B/s, 0:00 left"},
        {"empty files", 80, 4, {1, 4, 0, 0, ""}, " 25%  1 of 4 files, 0 B of 0 B"},
        {"no files", 80, 4, {0, 0, 0, 0, ""}, "100%  0 of 0 files, 0 B of 0 B"},
        {"a path with control characters",
         80,
         0,
         {1, 2, 1, 2, "a\x1b[31m\n"},
         " 50%  1 of 2 files, 1 B of 2 B  a\\x1b[31m\\n"},
        {"as many bytes as there can be",
         80,
         1,
         {1, 1, most, most, ""},
         "100%  1 of 1 file, 9.2 EB of 9.2 EB, 9.0 EB/s"},
    });
}

TEST(ProgressText, ShowsTheTimeLeft) {
    const auto row = [](std::string sentence, std::uint64_t unit, const std::string& size,
                        const std::string& left) {
        return Row{std::move(sentence),
                   90,
                   static_cast<double>(unit),
                   {1, 2, unit, 11 * unit, ""},
                   "  9%  1 of 2 files, " + size + ", 1 B/s, " + left};
    };
    expectTexts({
        row("an hour less a second", 3599 / 10, "359 B of 3.9 kB", "59:50 left"),
        row("an hour", 360, "360 B of 4.0 kB", "1:00:00 left"),
        row("hours", 7265 / 10, "726 B of 8.0 kB", "2:01:00 left"),
        row("the longest time that is shown", 35'999, "36.0 kB of 396.0 kB", "99:59:50 left"),
        row("longer", 36'000, "36.0 kB of 396.0 kB", "over 99 hours left"),
    });
}

TEST(ProgressText, FitsTerminalsOfAnyWidth) {
    const VerificationProgress half{1, 2, 1'500'000, 3'000'000, "clips/the-lamp/shot-03.mp4"};
    expectTexts({
        {"very wide", 130, 3, half,
         "[##########----------]  50%  1 of 2 files, 1.5 MB of 3.0 MB, 500.0 kB/s, 0:03 left  "
         "clips/the-lamp/shot-03.mp4"},
        {"wide", 129, 3, half,
         "[#####-----]  50%  1 of 2 files, 1.5 MB of 3.0 MB, 500.0 kB/s, 0:03 left  "
         "clips/the-lamp/shot-03.mp4"},
        {"just wide enough for a bar", 100, 3, half,
         "[#####-----]  50%  1 of 2 files, 1.5 MB of 3.0 MB, 500.0 kB/s, 0:03 left  "
         "clips/the-la…/shot-03.mp4"},
        {"not wide enough for a bar", 99, 3, half,
         " 50%  1 of 2 files, 1.5 MB of 3.0 MB, 500.0 kB/s, 0:03 left  clips/the-lamp/shot-03.mp4"},
        {"usual", 80, 3, half,
         " 50%  1 of 2 files, 1.5 MB of 3.0 MB, 500.0 kB/s, 0:03 left  clips/th…ot-03.mp4"},
        {"just wide enough for the time left", 74, 3, half,
         " 50%  1 of 2 files, 1.5 MB of 3.0 MB, 500.0 kB/s, 0:03 left  clips…03.mp4"},
        {"too narrow for the time left", 73, 3, half,
         " 50%  1 of 2 files, 1.5 MB of 3.0 MB, 500.0 kB/s  clips/the-…shot-03.mp4"},
        {"just wide enough for the file", 50, 3, half, " 50%  1 of 2 files  clips/the-lamp/shot-03.mp4"},
        {"too narrow for the file", 49, 3, half, " 50%  1 of 2 files, 1.5 MB of 3.0 MB, 500.0 kB/s"},
        {"too narrow for the rate", 40, 3, half, " 50%  1 of 2 files, 1.5 MB of 3.0 MB"},
        {"too narrow for the bytes", 30, 3, half, " 50%  1 of 2 files"},
        {"too narrow for the files", 10, 3, half, " 50%"},
        {"too narrow for the percent sign", 4, 3, half, " 50"},
        {"one column", 1, 3, half, ""},
        {"wide characters",
         50,
         0,
         {1, 2, 1, 2, "映画映画映画映画映画映画映画"},
         " 50%  1 of 2 files, 1 B of 2 B  映画映画…映画映画"},
    });
}

TEST(ThroughputText, ShowsSizeTimeAndRate) {
    struct ThroughputRow {
        std::string sentence;
        std::uint64_t bytes;
        double seconds;
        std::string expected;
    };
    const std::vector<ThroughputRow> rows{
        {"no time", 0, 0, "0 B in 1 ms"},
        {"nothing read", 0, 2, "0 B in 2.0 s"},
        {"milliseconds", 1000, 0.05, "1.0 kB in 50 ms, 20.0 kB/s"},
        {"seconds", 41'200'000, 0.3, "41.2 MB in 0.3 s, 137.3 MB/s"},
        {"almost a minute", 599, 59.9, "599 B in 59.9 s, 10 B/s"},
        {"minutes", 1'200'000, 120, "1.2 MB in 2 min 0 s, 10.0 kB/s"},
        {"hours", 3'660'000, 3660, "3.7 MB in 1 h 1 min, 1.0 kB/s"},
    };
    for (const ThroughputRow& row : rows)
        EXPECT_EQ(throughputText(row.bytes, row.seconds), row.expected) << row.sentence;
}

} // namespace

} // namespace kinovane::tool

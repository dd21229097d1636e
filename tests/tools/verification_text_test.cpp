// SPDX-License-Identifier: Apache-2.0

#include <chrono>
#include <cstdint>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "terminal/verification_line.hpp"

namespace kinovane::tool {

namespace {

using namespace std::chrono_literals;

constexpr std::uint64_t most = std::numeric_limits<std::uint64_t>::max();

struct Counts {
    std::size_t filesDone, filesTotal;
    std::uint64_t bytesDone, bytesTotal;
};

struct Row {
    std::string sentence;
    std::size_t columns;
    std::chrono::milliseconds elapsed; ///< Since the beginning.
    Counts counts;
    std::string expected;
};

void expectTexts(const std::vector<Row>& rows) {
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        std::chrono::steady_clock::time_point now(5h);
        const VerificationLine line(false, [&] { return now; });
        now += row.elapsed;
        const auto& [filesDone, filesTotal, bytesDone, bytesTotal] = row.counts;
        const VerificationProgress progress{filesDone, filesTotal, bytesDone, bytesTotal, {}};
        const std::string text = line.text(progress, row.columns);
        EXPECT_EQ(text, row.expected);
        EXPECT_LE(text.size(), row.columns - 1);
    }
}

TEST(VerificationText, ShowsTheProgress) {
    expectTexts({
        {"the beginning", 80, 0s, {0, 9, 0, 3'000'000'000}, "[----------]   0%  0 of 9 files, 0 B of 3.0 GB"},
        {"time passed and nothing was read",
         80,
         5s,
         {0, 9, 0, 3'000'000'000},
         "[----------]   0%  0 of 9 files, 0 B of 3.0 GB"},
        {"no time passed and something was read",
         80,
         0s,
         {0, 9, 1'000'000, 3'000'000'000},
         "[----------]   0%  0 of 9 files, 1.0 MB of 3.0 GB"},
        {"some files done",
         80,
         10s,
         {3, 9, 400'000'000, 3'000'000'000},
         "[#---------]  13%  3 of 9 files, 400.0 MB of 3.0 GB, 40.0 MB/s, 1:05 left"},
        {"the rate counts from the beginning",
         80,
         100s,
         {3, 9, 400'000'000, 3'000'000'000},
         "[#---------]  13%  3 of 9 files, 400.0 MB of 3.0 GB, 4.0 MB/s, 10:50 left"},
        {"nearly done",
         80,
         10s,
         {8, 9, 2'999'999'999, 3'000'000'000},
         "[#########-]  99%  8 of 9 files, 3.0 GB of 3.0 GB, 300.0 MB/s, 0:01 left"},
        {"done",
         80,
         10s,
         {9, 9, 3'000'000'000, 3'000'000'000},
         "[##########] 100%  9 of 9 files, 3.0 GB of 3.0 GB, 300.0 MB/s, 0:00 left"},
        {"all bytes done, and an empty file left",
         80,
         1s,
         {1, 2, 5, 5},
         "[#########-]  99%  1 of 2 files, 5 B of 5 B, 5 B/s, 0:00 left"},
        {"empty files", 80, 1s, {1, 4, 0, 0}, "[##--------]  25%  1 of 4 files, 0 B of 0 B"},
        {"no files", 80, 1s, {0, 0, 0, 0}, "[##########] 100%  0 of 0 files, 0 B of 0 B"},
    });
}

TEST(VerificationText, ShowsTheTimeLeft) {
    const auto row = [](std::string sentence, std::uint64_t bytesTotal, const std::string& size,
                        const std::string& left) {
        return Row{std::move(sentence),
                   79,
                   1s,
                   {1, 2, 1, bytesTotal},
                   "  0%  1 of 2 files, 1 B of " + size + ", 1 B/s, " + left};
    };
    expectTexts({
        row("an hour less a second", 3600, "3.6 kB", "59:59 left"),
        row("an hour", 3601, "3.6 kB", "1:00:00 left"),
        row("hours", 7266, "7.3 kB", "2:01:05 left"),
        row("the longest time that is shown", 360000, "360.0 kB", "99:59:59 left"),
        row("longer", 360001, "360.0 kB", "over 99 hours left"),
        row("the longest time there can be", most, "9.2 EB", "over 99 hours left"),
    });
}

TEST(VerificationText, FitsTerminalsOfAnyWidth) {
    const Counts half{1, 2, 1'500'000, 3'000'000};
    expectTexts({
        {"wide", 100, 1s, half,
         "Verifying [##########----------]  50%  1 of 2 files, 1.5 MB of 3.0 MB, 1.5 MB/s, 0:01 left"},
        {"almost wide", 99, 1s, half,
         "[#####-----]  50%  1 of 2 files, 1.5 MB of 3.0 MB, 1.5 MB/s, 0:01 left"},
        {"usual", 80, 1s, half, "[#####-----]  50%  1 of 2 files, 1.5 MB of 3.0 MB, 1.5 MB/s, 0:01 left"},
        {"usual, and as long as a line gets for a film",
         80,
         1s,
         {57, 99, 111'100'000, 999'900'000},
         "[#---------]  11%  57 of 99 files, 111.1 MB of 999.9 MB, 111.1 MB/s, 0:08 left"},
        {"usual, and even longer",
         80,
         1s,
         {157, 999, 111'100'000, 999'900'000},
         "[#---------]  11%  157 of 999 files, 111.1 MB of 999.9 MB, 111.1 MB/s"},
        {"narrow", 79, 1s, half, " 50%  1 of 2 files, 1.5 MB of 3.0 MB, 1.5 MB/s, 0:01 left"},
        {"just wide enough for the time left", 58, 1s, half,
         " 50%  1 of 2 files, 1.5 MB of 3.0 MB, 1.5 MB/s, 0:01 left"},
        {"one column less", 57, 1s, half, " 50%  1 of 2 files, 1.5 MB of 3.0 MB, 1.5 MB/s"},
        {"too narrow for the rate", 40, 1s, half, " 50%  1 of 2 files, 1.5 MB of 3.0 MB"},
        {"too narrow for the bytes", 30, 1s, half, " 50%  1 of 2 files"},
        {"too narrow for the files", 10, 1s, half, " 50%"},
        {"too narrow for the percent sign", 4, 1s, half, " 50"},
        {"one column", 1, 1s, half, ""},
    });
}

TEST(VerificationText, LimitsSizesTo64Bits) {
    expectTexts({
        {"as many bytes as there can be",
         80,
         1ms,
         {1, 1, most, most},
         "[##########] 100%  1 of 1 file, 9.2 EB of 9.2 EB, 9.0 EB/s, 0:00 left"},
    });
}

} // namespace

} // namespace kinovane::tool

// SPDX-License-Identifier: Apache-2.0

#include "terminal/waiting_line.hpp"

#include <chrono>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace kinovane::test {

namespace {

TEST(ElapsedText, IsRoundedDown) {
    struct Row {
        int seconds;
        std::string expected;
    };
    const std::vector<Row> rows{
        {0, "0 s"},
        {59, "59 s"},
        {60, "1 min 00 s"},
        {125, "2 min 05 s"},
        {3599, "59 min 59 s"},
        {3600, "1 h 00 min"},
        {3725, "1 h 02 min"},
        {360000, "100 h 00 min"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(tool::elapsedText(std::chrono::seconds(row.seconds)), row.expected);
}

TEST(WaitingText, IsNarrowerThanTheTerminal) {
    struct Row {
        int seconds;
        std::size_t columns;
        std::string expected;
    };
    const std::vector<Row> rows{
        {0, 80, "Vistrel checks"},
        {12, 80, "Vistrel checks, for 12 s"},
        {12, 25, "Vistrel checks, for 12 s"},
        {12, 24, "Vistrel checks, for 12…"},
        {12, 1, ""},
        {12, 0, ""},
    };
    for (const Row& row : rows)
        EXPECT_EQ(tool::waitingText("Vistrel checks", std::chrono::seconds(row.seconds), row.columns),
                  row.expected);
}

TEST(WaitingLine, IsSilentWithoutATerminal) {
    testing::internal::CaptureStderr();
    {
        const tool::Console console({});
        const tool::WaitingLine line(console, "Vistrel checks");
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

} // namespace

} // namespace kinovane::test

// SPDX-License-Identifier: Apache-2.0

#include "timeline/timecode.hpp"

#include <cstdio>
#include <string>

#include <gtest/gtest.h>

namespace kinovane::tool {

namespace {

TEST(Timecode, CountsHoursMinutesSecondsAndFrames) {
    const struct {
        FrameRate rate;
        std::int64_t frame;
        const char* expected;
    } rows[]{
        {{24, 1}, 0, "00:00:00:00"},
        {{24, 1}, 23, "00:00:00:23"},
        {{24, 1}, 24 * 3600 + 24 * 61 + 5, "01:01:01:05"},
        {{24'000, 1001}, 1440, "00:01:00:00"},
        {{60, 1}, 59, "00:00:00:59"},
        {{30'000, 1001}, 1799, "00:00:59;29"},
        {{30'000, 1001}, 1800, "00:01:00;02"},
        {{30'000, 1001}, 17'981, "00:09:59;29"},
        {{30'000, 1001}, 17'982, "00:10:00;00"},
        {{30'000, 1001}, 19'782, "00:11:00;02"},
        {{30'000, 1001}, 107'892, "01:00:00;00"},
        {{30'000, 1001}, 2'589'407, "23:59:59;29"},
        {{60'000, 1001}, 3600, "00:01:00;04"},
        {{60'000, 1001}, 215'784, "01:00:00;00"},
    };
    for (const auto& [rate, frame, expected] : rows)
        EXPECT_EQ(timecode(frame, rate), expected);
}

TEST(Timecode, HasTheNextNumberThatExistsForEachFrame) {
    for (const FrameRate& rate : {FrameRate{30'000, 1001}, FrameRate{60'000, 1001}}) {
        const std::int64_t perSecond = rate.timecodeRate();
        const std::int64_t dropped = perSecond == 30 ? 2 : 4;
        std::int64_t frame = 0;
        for (int minute = 0; minute < 61; ++minute)
            for (int second = 0; second < 60; ++second)
                for (std::int64_t number = second == 0 && minute % 10 != 0 ? dropped : 0; number < perSecond;
                     ++number, ++frame) {
                    char expected[32]; // NOLINT(*-c-arrays)
                    std::snprintf(expected, sizeof expected, "%02d:%02d:%02d;%02d", minute / 60, minute % 60,
                                  second, static_cast<int>(number));
                    ASSERT_EQ(timecode(frame, rate), expected);
                }
    }
}

TEST(Timecode, BeginsAgainAfterADay) {
    EXPECT_EQ(timecodeDay({24, 1}), 24 * 86'400);
    EXPECT_EQ(timecodeDay({30'000, 1001}), 2'589'408);
    EXPECT_EQ(timecodeDay({60'000, 1001}), 5'178'816);
}

} // namespace

} // namespace kinovane::tool

// SPDX-License-Identifier: Apache-2.0

#include "timeline/frame_rate.hpp"

#include <gtest/gtest.h>

namespace kinovane::tool {

namespace {

TEST(FrameRate, IsReadFromText) {
    const struct {
        const char* text;
        FrameRate expected;
        const char* shown;
    } rows[]{
        {"1", {1, 1}, "1"},
        {"24", {24, 1}, "24"},
        {"24.0", {24, 1}, "24"},
        {"024", {24, 1}, "24"},
        {"23.976", {24'000, 1001}, "23.976"},
        {"23.98", {24'000, 1001}, "23.976"},
        {"23.97", {24'000, 1001}, "23.976"},
        {"24000/1001", {24'000, 1001}, "23.976"},
        {"29.97", {30'000, 1001}, "29.97"},
        {"47.952", {48'000, 1001}, "47.952"},
        {"59.94", {60'000, 1001}, "59.94"},
        {"119.88", {120'000, 1001}, "119.88"},
        {"12.5", {25, 2}, "12.5"},
        {"25/2", {25, 2}, "12.5"},
        {"48/2", {24, 1}, "24"},
        {"100/7", {100, 7}, "100/7"},
        {"23.9", {239, 10}, "23.9"},
        {"1000", {1000, 1}, "1000"},
    };
    for (const auto& [text, expected, shown] : rows) {
        EXPECT_EQ(frameRateOf(text), expected) << text;
        EXPECT_EQ(frameRateText(expected), shown);
    }
}

TEST(FrameRate, IsNotReadFromOtherText) {
    for (const char* text : {"",
                             "x",
                             "24x",
                             " 24",
                             "24 ",
                             "-24",
                             "+24",
                             "0",
                             "0.5",
                             "1001",
                             "1000.1",
                             ".5",
                             "24.",
                             "24.-1",
                             "24.1234",
                             "24/",
                             "/24",
                             "24/0",
                             "24/-1",
                             "1/2",
                             "24/1/1",
                             "1e3",
                             "0x18",
                             "23,976",
                             "1000001/1001",
                             "99999999999999999999"})
        EXPECT_EQ(frameRateOf(text), std::nullopt) << text;
}

TEST(FrameRate, FindsTheNearestFrame) {
    const struct {
        FrameRate rate;
        std::int64_t milliseconds, frame;
    } rows[]{
        {{24, 1}, 0, 0},
        {{24, 1}, 20, 0},
        {{24, 1}, 21, 1},
        {{24, 1}, 1000, 24},
        {{25, 1}, 20, 1},
        {{25, 1}, 19, 0},
        {{25, 1}, 60, 2},
        {{30'000, 1001}, 1001, 30},
        {{24'000, 1001}, 21, 1},
        {{25, 2}, 40, 1},
        {{25, 2}, 39, 0},
        {{60'000, 1001}, 3'600'000, 215'784},
        {{1000, 1}, longestTimeline, longestTimeline},
        {{1'000'000, 1001}, longestTimeline, 3'596'403'596},
    };
    for (const auto& [rate, milliseconds, frame] : rows)
        EXPECT_EQ(rate.frameAt(milliseconds), frame) << frameRateText(rate) << " " << milliseconds;
}

TEST(FrameRate, CountsWholeFrames) {
    EXPECT_EQ((FrameRate{24, 1}.framesWithin(41)), 0);
    EXPECT_EQ((FrameRate{24, 1}.framesWithin(42)), 1);
    EXPECT_EQ((FrameRate{30'000, 1001}.framesWithin(1001)), 30);
    EXPECT_EQ((FrameRate{30'000, 1001}.framesWithin(1000)), 29);
}

} // namespace

} // namespace kinovane::tool

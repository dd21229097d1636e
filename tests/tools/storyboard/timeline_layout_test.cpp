// SPDX-License-Identifier: Apache-2.0

#include "storyboard/timeline_layout.hpp"

#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace kinovane::tool {

namespace {

/// A storyboard of shots with these lengths in milliseconds, one after the other.
Storyboard storyboardWith(const std::vector<std::int64_t>& lengths) {
    Storyboard storyboard;
    std::int64_t start = 0;
    for (const std::int64_t length : lengths) {
        StoryboardShot& shot = storyboard.shots.emplace_back();
        shot.startMilliseconds = start;
        shot.durationMilliseconds = length;
        start += length;
    }
    return storyboard;
}

TEST(TimelineLayout, HasTheLengthOfAllShots) {
    const struct {
        const char* sentence;
        std::vector<std::int64_t> lengths;
        double total;
    } rows[]{
        {"no shots", {}, 0},
        {"shots without a length", {0, 0}, 0},
        {"some shots", {3000, 2500}, 5500},
        {"a short shot beside a long one", {300'000, 40}, 300'040},
        {"a negative length", {3000, -1000}, 3000},
    };
    for (const auto& [sentence, lengths, total] : rows)
        EXPECT_EQ(TimelineLayout(storyboardWith(lengths)).total, total) << sentence;
}

TEST(TimelineLayout, HasMarksAtRoundTimes) {
    const struct {
        std::int64_t length;
        std::size_t marks;
        double distance; ///< Of neighbouring marks, in milliseconds.
    } rows[]{{40, 1, 100},
             {18'000, 181, 100},
             {300'000, 301, 1000},
             {7'200'000, 241, 30'000},
             {std::numeric_limits<std::int64_t>::max(), 257, 3.6e16}};
    for (const auto& [length, marks, distance] : rows) {
        const TimelineLayout layout(storyboardWith({length}));
        ASSERT_EQ(layout.marks.size(), marks) << length;
        for (std::size_t index = 0; index < marks; ++index)
            EXPECT_EQ(layout.marks[index].time, distance * static_cast<double>(index));
        EXPECT_EQ(layout.marks.front().level, 0U);
        EXPECT_TRUE(std::ranges::is_sorted(layout.levelWidths)) << "a finer level needs more pixels";
    }
}

TEST(TimelineLayout, PlacesLinesAtTheirOwnTimes) {
    Storyboard storyboard = storyboardWith({3000, 2000});
    storyboard.shots[0].dialogue = {{"a", "one", 1, ""}, {"a", "two", 1, ""}};
    storyboard.shots[1].dialogue = {{"a", "late", 99, ""}, {"a", "early", -1, ""}};
    const TimelineLayout layout(storyboard);
    std::string places;
    for (const TimelineItem& item : layout.lines)
        places += storyboard.shots[item.shot].dialogue[item.index].text + " " +
                  std::to_string(static_cast<int>(item.start)) + " row " + std::to_string(item.row) + "\n";
    EXPECT_EQ(places, "one 1000 row 0\ntwo 1000 row 1\nearly 2000 row 0\nlate 5000 row 0\n");
    EXPECT_EQ(layout.lineRows, 2U);
    EXPECT_EQ(layout.lines[0].labelEnd, 2000) << "its label ends where the next of its row begins";
    EXPECT_EQ(layout.lines[1].labelEnd, 5000) << "at the end of the film";
}

TEST(TimelineLayout, GivesEffectsTheirTrueLengthInsideTheFilm) {
    Storyboard storyboard = storyboardWith({3000});
    storyboard.shots[0].soundEffects = {{"short", 0.5, 1, 0, 0}, {"beyond the end", 2, 9, 0, 0}};
    const TimelineLayout layout(storyboard);
    ASSERT_EQ(layout.effects.size(), 2U);
    EXPECT_EQ(layout.effects[0].start, 500);
    EXPECT_EQ(layout.effects[0].length, 1000);
    EXPECT_EQ(layout.effects[1].length, 1000);
}

} // namespace

} // namespace kinovane::tool

// SPDX-License-Identifier: Apache-2.0

#include <gmock/gmock.h>

#include <kinovane/handoff.hpp>

#include "support/sample_film.hpp"

namespace kinovane::test {
namespace {

using testing::ElementsAre;

VistrelHandoff handoffOf(const std::vector<double>& durations, double planned = 1) {
    WorkspaceMaker maker;
    FilmProductionPlan& plan = *maker.snapshot.productionPlan;
    plan.plannedDurationSeconds = planned;
    plan.shots.clear();
    for (const double duration : durations)
        plan.shots.push_back(shotOf("s" + std::to_string(plan.shots.size()), duration));
    return VistrelHandoffBuilder::build(maker.snapshot, "/r");
}

TEST(Timeline, SecondsBecomeWholeMilliseconds) {
    struct Row {
        std::string_view sentence;
        double seconds;
        std::int64_t expected;
    };
    const std::vector<Row> rows{
        {"nothing", 0, 0},
        {"nothing, from below", -0.0, 0},
        {"whole seconds", 3, 3000},
        {"a half is rounded up", 0.0625, 63},
        {"an even half is rounded up too", 2.0625, 2063},
        {"half a millisecond", 0.0005, 1},
        {"just less than half", 0.000499999, 0},
        {"a negative half is rounded down", -0.0625, -63},
        {"an even negative half is rounded down too", -2.0625, -2063},
        {"half a negative millisecond", -0.0005, -1},
        {"a third", 1.0 / 3, 333},
        {"two thirds", 2.0 / 3, 667},
        {"the smallest positive number", 5e-324, 0},
        {"the longest that fits", 9223372036854774.0, 9223372036854773760},
        {"the lowest that fits", -9223372036854775.808, INT64_MIN},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        EXPECT_EQ(handoffOf({row.seconds}).shots.at(0).durationMilliseconds, row.expected);
        EXPECT_EQ(handoffOf({}, row.seconds).project.durationMilliseconds, row.expected);
    }
}

TEST(Timeline, EachShotStartsWhereTheOneBeforeItEnds) {
    struct Row {
        std::string_view sentence;
        std::vector<double> durations;
        std::vector<std::int64_t> starts;
    };
    const std::vector<Row> rows{
        {"no shots", {}, {}},
        {"three equal shots", {1.5, 1.5, 1.5}, {0, 1500, 3000}},
        {"rounded lengths are added, not lengths that are rounded later",
         {0.0625, 0.0625, 0.0625},
         {0, 63, 126}},
        {"lengths too short to count", {0.0004, 0.0004, 0.0004, 1}, {0, 0, 0, 0}},
        {"a negative length goes back", {2, -0.5, 1}, {0, 2000, 1500}},
        {"up to the last millisecond that can be counted",
         {-9223372036854775.808, 9223372036854774.0, 1},
         {0, INT64_MIN, -2048}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        std::vector<std::int64_t> starts;
        std::int64_t order = 0;
        for (const VistrelHandoffShot& shot : handoffOf(row.durations).shots) {
            starts.push_back(shot.timelineStartMilliseconds);
            EXPECT_EQ(shot.order, order++);
        }
        EXPECT_EQ(starts, row.starts);
    }
}

TEST(Timeline, ThePlannedLengthIsNotTheSumOfTheShots) {
    EXPECT_EQ(handoffOf({1, 2}, 17.25).project.durationMilliseconds, 17250);
}

} // namespace
} // namespace kinovane::test

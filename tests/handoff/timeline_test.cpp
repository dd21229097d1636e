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

TEST(Timeline, RoundsTheDurationsOfShotsAndFilm) {
    struct Row {
        std::string_view sentence;
        double seconds;
        std::int64_t expected;
    };
    const std::vector<Row> rows{
        {"a half", 0.0625, 63},
        {"a negative half", -2.0625, -2063},
        {"the longest that fits", 9223372036854774.0, 9223372036854773760},
        {"the lowest that fits", -9223372036854775.808, INT64_MIN},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        EXPECT_EQ(handoffOf({row.seconds}).shots.at(0).durationMilliseconds, row.expected);
        EXPECT_EQ(handoffOf({}, row.seconds).project.durationMilliseconds, row.expected);
    }
}

TEST(Timeline, StartsEachShotWhereTheOneBeforeEnds) {
    struct Row {
        std::string_view sentence;
        std::vector<double> durations;
        std::vector<std::int64_t> starts;
    };
    const std::vector<Row> rows{
        {"no shots", {}, {}},
        {"three equal shots", {1.5, 1.5, 1.5}, {0, 1500, 3000}},
        {"durations are rounded before they are added", {0.0625, 0.0625, 0.0625}, {0, 63, 126}},
        {"durations that round to zero", {0.0004, 0.0004, 0.0004, 1}, {0, 0, 0, 0}},
        {"a negative duration", {2, -0.5, 1}, {0, 2000, 1500}},
        {"up to the limits of 64 bits",
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

TEST(Timeline, DoesNotChangeThePlannedDuration) {
    EXPECT_EQ(handoffOf({1, 2}, 17.25).project.durationMilliseconds, 17250);
}

} // namespace
} // namespace kinovane::test

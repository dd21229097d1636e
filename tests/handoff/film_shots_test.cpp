// SPDX-License-Identifier: Apache-2.0

#include <limits>

#include <gtest/gtest.h>

#include <kinovane/film_shots.hpp>
#include <kinovane/handoff.hpp>

#include "support/sample_film.hpp"

namespace kinovane::test {
namespace {

TEST(FilmShots, AgreeWithTheHandoffOfTheSampleFilm) {
    const FilmWorkspaceSnapshot snapshot = FilmProjectLoader::load(sampleFilm() / "run.json");
    const VistrelHandoff handoff = VistrelHandoffBuilder::build(snapshot, "/r");
    const std::vector<FilmShot> found = shots(snapshot);
    ASSERT_EQ(found.size(), handoff.shots.size());
    for (std::size_t index = 0; index < found.size(); ++index) {
        SCOPED_TRACE(index);
        const FilmShot& shot = found[index];
        const VistrelHandoffShot& exported = handoff.shots[index];
        EXPECT_EQ(shot.planned, snapshot.productionPlan->shots[index]);
        EXPECT_EQ(shot.order, exported.order);
        EXPECT_EQ(shot.startMilliseconds, exported.timelineStartMilliseconds);
        EXPECT_EQ(shot.durationMilliseconds, exported.durationMilliseconds);
        EXPECT_EQ(shot.keyframe.has_value(), exported.keyframeAssetId.has_value());
        EXPECT_EQ(shot.clip.has_value(), exported.clipAssetId.has_value());
        EXPECT_EQ(shot.cast.size(), shot.planned.characters.size());
        ASSERT_TRUE(shot.location);
        EXPECT_EQ(shot.location->id, shot.planned.location);
        ASSERT_TRUE(shot.state);
        EXPECT_EQ(shot.state->id, shot.planned.id);
    }
}

TEST(FilmShots, AreNoneWithoutAPlan) {
    WorkspaceMaker maker;
    maker.snapshot.productionPlan.reset();
    EXPECT_TRUE(shots(maker.snapshot).empty());
}

TEST(FilmShots, TakeTheRecordsThatBelongToThem) {
    WorkspaceMaker maker;
    FilmProductionPlan& plan = *maker.snapshot.productionPlan;
    plan.shots[0].characters = {"b", "nobody", "a"};
    plan.shots[0].location = "quay";
    plan.cast = {
        {"a", "first a", {}, {}, {}, {}}, {"a", "second a", {}, {}, {}, {}}, {"b", "b", {}, {}, {}, {}}};
    plan.locations = {{"quay", "first", {}, {}, {}}, {"quay", "second", {}, {}, {}}};
    maker.snapshot.project.shots = {{"s1", "old", 1, {}}, {"s1", "new", 2, {}}, {"s2", {}, {}, {}}};
    maker.list("shot-keyframe", "frames/s1.png").bytes = 1;
    maker.list("shot-keyframe", "frames/s1.png").bytes = 2;
    maker.list("draft", "frames/s1.png").bytes = 3;
    maker.list("shot-clip", "./clips/s1.mp4");

    const std::vector<FilmShot> found = shots(maker.snapshot);
    ASSERT_EQ(found.size(), 1U);
    ASSERT_EQ(found[0].cast.size(), 2U);
    EXPECT_EQ(found[0].cast[0].name, "b");
    EXPECT_EQ(found[0].cast[1].name, "first a");
    EXPECT_EQ(found[0].location->name, "first");
    EXPECT_EQ(found[0].state->status, "new");
    EXPECT_EQ(found[0].keyframe->bytes, 2);
    EXPECT_FALSE(found[0].clip);
}

TEST(FilmShots, HaveNoTimesBeyondTheTimeline) {
    WorkspaceMaker maker;
    const double longest = 9223372036854774.0;
    maker.snapshot.productionPlan->shots = {shotOf("a", longest), shotOf("b", longest), shotOf("c", 1),
                                            shotOf("d", std::numeric_limits<double>::quiet_NaN())};
    const std::vector<FilmShot> found = shots(maker.snapshot);
    EXPECT_EQ(found[0].startMilliseconds, 0);
    EXPECT_EQ(found[1].startMilliseconds, 9223372036854773760);
    EXPECT_EQ(found[2].startMilliseconds, std::nullopt);
    EXPECT_EQ(found[2].durationMilliseconds, 1000);
    EXPECT_EQ(found[3].durationMilliseconds, std::nullopt);
}

} // namespace
} // namespace kinovane::test

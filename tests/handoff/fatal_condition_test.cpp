// SPDX-License-Identifier: Apache-2.0

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include <kinovane/handoff.hpp>

#include "support/sample_film.hpp"

namespace kinovane::test {
namespace {

// Each of these ends the process: a sound workspace cannot hold it, and going on would publish something
// wrong.

class FatalCondition : public testing::Test {
  protected:
    void SetUp() override { GTEST_FLAG_SET(death_test_style, "threadsafe"); }

    void expectEnd(const std::string& message) {
        EXPECT_EXIT(VistrelHandoffBuilder::build(maker.snapshot, "/r"), testing::KilledBySignal(SIGABRT),
                    message);
    }

    FilmProductionPlan& plan() { return *maker.snapshot.productionPlan; }

    WorkspaceMaker maker;
};

TEST_F(FatalCondition, TwoExportedArtifactsWithOnePath) {
    maker.add("score", "x", "content");
    maker.add("poster", "x", "content");
    expectEnd("^Duplicate values for key: 'x'\n$");
}

TEST_F(FatalCondition, OnePathBesideAKindThatIsNotExported) {
    maker.add("score", "x", "content");
    maker.add("archived-take", "x", "content");
    maker.add("archived-take", "x", "content");
    EXPECT_EQ(VistrelHandoffBuilder::build(maker.snapshot, "/r").assets.size(), 1U);
}

TEST_F(FatalCondition, TwoPathsToOneFileAreTwoPaths) {
    maker.add("score", "x", "content");
    maker.add("score", "./x", "content");
    EXPECT_EQ(VistrelHandoffBuilder::build(maker.snapshot, "/r").assets.size(), 2U);
}

TEST_F(FatalCondition, AFailingArtifactComesFirst) {
    maker.add("score", "x", "content");
    maker.add("poster", "x", "content");
    maker.list("score", "missing");
    EXPECT_THROW(VistrelHandoffBuilder::build(maker.snapshot, "/r"), VistrelHandoffError);
}

TEST_F(FatalCondition, DurationsThatDoNotFit) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    struct Row {
        std::string_view sentence;
        double seconds;
    };
    const std::vector<Row> rows{
        {"infinite", infinity},
        {"infinitely negative", -infinity},
        {"not a number", std::nan("")},
        {"finite, but not in milliseconds", 1e306},
        {"the first that is too long", 9223372036854775.808},
        {"the first that is too low", -9223372036854778.0},
        {"the largest number", std::numeric_limits<double>::max()},
        {"the lowest number", std::numeric_limits<double>::lowest()},
    };
    const std::string message = "^A duration of .* seconds does not fit 64 bits of milliseconds\n$";
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        plan().shots[0].durationSeconds = row.seconds;
        expectEnd(message);
        plan().shots[0].durationSeconds = 1;
        plan().plannedDurationSeconds = row.seconds;
        expectEnd(message);
        plan().plannedDurationSeconds = 1;
    }
}

TEST_F(FatalCondition, ATimelineThatDoesNotFit) {
    const std::string message = "^The film's timeline does not fit 64 bits of milliseconds\n$";
    plan().shots = {shotOf("a", 9223372036854774.0), shotOf("b", 2), shotOf("c", 1)};
    expectEnd(message);
    plan().shots = {shotOf("a", -9223372036854775.808), shotOf("b", -1), shotOf("c", 1)};
    expectEnd(message);
    plan().shots = {shotOf("a", 9e15), shotOf("b", 9e15)};
    expectEnd(message);
}

} // namespace
} // namespace kinovane::test

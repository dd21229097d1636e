// SPDX-License-Identifier: Apache-2.0

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include <kinovane/handoff.hpp>

#include "support/sample_film.hpp"

namespace kinovane::test {
namespace {

// Conditions that end the process, because continuing would publish a wrong manifest, and similar workspaces
// that are valid.

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

TEST_F(FatalCondition, IsTwoExportedArtifactsWithOnePath) {
    maker.add("score", "x", "content");
    maker.add("poster", "x", "content");
    expectEnd("^Duplicate values for key: 'x'\n$");
}

TEST_F(FatalCondition, IsNotThePathOfAKindThatIsNotExported) {
    maker.add("score", "x", "content");
    maker.add("archived-take", "x", "content");
    maker.add("archived-take", "x", "content");
    EXPECT_EQ(VistrelHandoffBuilder::build(maker.snapshot, "/r").assets.size(), 1U);
}

TEST_F(FatalCondition, IsNotTwoPathsToOneFile) {
    maker.add("score", "x", "content");
    maker.add("score", "./x", "content");
    EXPECT_EQ(VistrelHandoffBuilder::build(maker.snapshot, "/r").assets.size(), 2U);
}

TEST_F(FatalCondition, IsCheckedAfterAllArtifacts) {
    maker.add("score", "x", "content");
    maker.add("poster", "x", "content");
    maker.list("score", "missing");
    EXPECT_THROW(VistrelHandoffBuilder::build(maker.snapshot, "/r"), VistrelHandoffError);
}

TEST_F(FatalCondition, IsADurationThatDoesNotFit) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    struct Row {
        std::string_view sentence;
        double seconds;
        std::string printed; ///< A regular expression.
    };
    const std::vector<Row> rows{
        {"infinite", infinity, "inf"},
        {"infinitely negative", -infinity, "-inf"},
        {"not a number", std::nan(""), "nan"},
        {"finite, but infinite in milliseconds", 1e306, "1[0-9]{306}\\.000000"},
        {"the smallest that is too large", 9223372036854775.808, "9223372036854776\\.000000"},
        {"the largest that is too small", -9223372036854778.0, "-9223372036854778\\.000000"},
        {"the largest number", std::numeric_limits<double>::max(), "1797[0-9]{305}\\.000000"},
        {"the lowest number", std::numeric_limits<double>::lowest(), "-1797[0-9]{305}\\.000000"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        const std::string message =
            "^A duration of " + row.printed + " seconds does not fit 64 bits of milliseconds\n$";
        plan().shots[0].durationSeconds = row.seconds;
        expectEnd(message);
        plan().shots[0].durationSeconds = 1;
        plan().plannedDurationSeconds = row.seconds;
        expectEnd(message);
        plan().plannedDurationSeconds = 1;
    }
}

TEST_F(FatalCondition, IsATimelineThatDoesNotFit) {
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

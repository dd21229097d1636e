// SPDX-License-Identifier: Apache-2.0

#include <algorithm>
#include <stdexcept>

#include <gmock/gmock.h>

#include <kinovane/handoff.hpp>

#include "support/sample_film.hpp"

namespace kinovane::test {
namespace {

using testing::ElementsAre;
using testing::UnorderedElementsAre;

/// A workspace with a sound, a missing, a sound, a damaged and a sound artifact.
class BuildOutcomes : public testing::Test {
  protected:
    BuildOutcomes() {
        maker_.add("poster", "a", "a");
        maker_.list("poster", "b");
        maker_.add("poster", "c", "c");
        maker_.add("poster", "d", "d").sha256 = std::string(emptyDigest);
        maker_.add("poster", "e", "e");
    }

    /// The description of the error that a build throws, with what onOutcome was told in `told_`.
    std::string build(HandoffBuildOptions options) {
        told_.clear();
        options.onOutcome = [&](const ArtifactOutcome& outcome) {
            told_.push_back(outcome.artifact.path + (outcome.sound() ? " sound" : " bad"));
        };
        try {
            (void)VistrelHandoffBuilder::build(maker_.snapshot, "/r", "now", options);
            return "no error";
        } catch (const VistrelHandoffError& error) {
            return error.errorDescription();
        }
    }

    WorkspaceMaker maker_;
    std::vector<std::string> told_;
};

TEST_F(BuildOutcomes, AreToldUntilTheFirstFailure) {
    EXPECT_EQ(build({}), "The handoff artifact is missing: b");
    EXPECT_THAT(told_, ElementsAre("a sound", "b bad"));
}

TEST_F(BuildOutcomes, AreToldForEveryArtifactWhenAsked) {
    EXPECT_EQ(build({.examineAll = true}), "The handoff artifact is missing: b");
    EXPECT_THAT(told_, ElementsAre("a sound", "b bad", "c sound", "d bad", "e sound"));
    EXPECT_EQ(build({.workers = 4, .examineAll = true}), "The handoff artifact is missing: b");
    EXPECT_THAT(told_, UnorderedElementsAre("a sound", "b bad", "c sound", "d bad", "e sound"));
}

TEST_F(BuildOutcomes, AreThoseOfTheAudit) {
    std::vector<ArtifactOutcome> told;
    HandoffBuildOptions options{.examineAll = true};
    options.onOutcome = [&](const ArtifactOutcome& outcome) { told.push_back(outcome); };
    EXPECT_THROW((void)VistrelHandoffBuilder::build(maker_.snapshot, "/r", "now", options),
                 VistrelHandoffError);
    EXPECT_EQ(told, VistrelHandoffBuilder::audit(maker_.snapshot));
    told.clear();
    EXPECT_EQ(VistrelHandoffBuilder::audit(maker_.snapshot, options), told);
}

TEST_F(BuildOutcomes, NameAPathThatIsNotUTF8) {
    maker_.snapshot.project.artifacts.clear();
    maker_.add("poster", "\xFF", "x");
    std::error_code failure;
    HandoffBuildOptions options;
    options.onOutcome = [&](const ArtifactOutcome& outcome) { failure = outcome.failure; };
    EXPECT_THROW((void)VistrelHandoffBuilder::build(maker_.snapshot, "/r", "now", options),
                 JSONEncodingError);
    EXPECT_EQ(failure, std::errc::illegal_byte_sequence);
}

TEST_F(BuildOutcomes, EndTheBuildWhenTheFunctionThrows) {
    HandoffBuildOptions options{.examineAll = true};
    options.onOutcome = [](const ArtifactOutcome&) { throw std::runtime_error("enough"); };
    EXPECT_THROW((void)VistrelHandoffBuilder::build(maker_.snapshot, "/r", "now", options),
                 std::runtime_error);
}

TEST(ExportedKinds, AreListed) {
    const auto kinds = VistrelHandoffBuilder::exportedKinds();
    EXPECT_EQ(kinds.size(), 29U);
    for (const std::string_view kind : kinds) {
        WorkspaceMaker maker;
        maker.add(kind, "a", "a");
        EXPECT_EQ(VistrelHandoffBuilder::audit(maker.snapshot).size(), 1U) << kind;
    }
    EXPECT_EQ(std::ranges::count(kinds, "shot-clip"), 1);
}

} // namespace
} // namespace kinovane::test

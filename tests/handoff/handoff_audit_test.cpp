// SPDX-License-Identifier: Apache-2.0

#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <kinovane/handoff.hpp>

#include "support/child_counts.hpp"
#include "support/sample_film.hpp"

namespace kinovane::test {
namespace {

constexpr std::string_view noDigest = "sha256:none";

/// Sound artifacts and one of every kind of damage, with the expected descriptions.
struct Damage {
    WorkspaceMaker maker;
    std::vector<std::string> descriptions;

    Damage() {
        maker.add("poster", "first.png", "1");
        descriptions.emplace_back("The handoff artifact is sound: first.png");
        maker.add("poster", "swapped.png", "2").sha256 = noDigest;
        descriptions.emplace_back("Artifact hash mismatch for swapped.png. Expected sha256:none, got "
                                  "sha256:d4735e3a265e16eee03f59718b9b5d03019c07d8b6c51f90da3a666eec13ab35.");
        maker.list("poster", "gone.png");
        descriptions.emplace_back("The handoff artifact is missing: gone.png");
        maker.list("prompt-log", "not-exported.json");
        maker.list("poster", "../outside.png");
        descriptions.emplace_back("The handoff contains an unsafe artifact path: ../outside.png");
        std::filesystem::create_directory(maker.directory / "folder");
        maker.list("poster", "folder");
        descriptions.emplace_back("The handoff artifact could not be read: folder (Is a directory)");
        maker.add("poster", "last.png", "3");
        descriptions.emplace_back("The handoff artifact is sound: last.png");
    }
};

TEST(HandoffAudit, ReportsEveryDamagedFile) {
    const Damage damage;
    for (const unsigned workers : {1U, 2U, 8U}) {
        SCOPED_TRACE(workers);
        const auto outcomes = VistrelHandoffBuilder::audit(damage.maker.snapshot, {workers, {}, {}});
        std::vector<std::string> descriptions;
        for (const ArtifactOutcome& outcome : outcomes) {
            descriptions.push_back(outcome.description());
            EXPECT_EQ(outcome.sound(), outcome.description().starts_with("The handoff artifact is sound"));
        }
        EXPECT_EQ(descriptions, damage.descriptions);
    }
}

TEST(HandoffAudit, NeedsNoProductionPlan) {
    Damage damage;
    damage.maker.snapshot.productionPlan.reset();
    EXPECT_EQ(VistrelHandoffBuilder::audit(damage.maker.snapshot).size(), damage.descriptions.size());
}

TEST(HandoffAudit, KeepsTheOrderOfASoundFilm) {
    const FilmWorkspaceSnapshot film = FilmProjectLoader::load(sampleFilm() / "run.json");
    const VistrelHandoff handoff = VistrelHandoffBuilder::build(film, "/r");
    const auto outcomes = VistrelHandoffBuilder::audit(film, {2, {}, {}});
    ASSERT_EQ(outcomes.size(), handoff.assets.size());
    for (std::size_t index = 0; index < outcomes.size(); ++index) {
        EXPECT_TRUE(outcomes[index].sound());
        EXPECT_EQ(outcomes[index].artifact.path, handoff.assets[index].relativePath);
    }
}

TEST(HandoffAudit, ExaminesTwoArtifactsWithOnePath) {
    WorkspaceMaker maker;
    maker.add("poster", "a.png", "1");
    maker.add("thumbnail", "a.png", "1");
    EXPECT_EQ(VistrelHandoffBuilder::audit(maker.snapshot).size(), 2U);
}

TEST(HandoffAudit, CompletesTheProgressAlthoughFilesAreDamaged) {
    const Damage damage;
    VerificationProgress last;
    VistrelHandoffBuilder::audit(damage.maker.snapshot,
                                 {2, [&](const VerificationProgress& progress) { last = progress; }, {}});
    EXPECT_EQ(last.filesDone, last.filesTotal);
    EXPECT_EQ(last.filesTotal, damage.descriptions.size());
    EXPECT_EQ(last.bytesDone, last.bytesTotal);
}

TEST(HandoffAudit, EndsOnAnExceptionOfTheCallbackAndOnAStop) {
    const Damage damage;
    const ProcessCounts before = countProcess();
    for (const unsigned workers : {1U, 4U}) {
        EXPECT_THROW(
            VistrelHandoffBuilder::audit(
                damage.maker.snapshot,
                {workers, [](const VerificationProgress&) { throw std::domain_error("enough"); }, {}}),
            std::domain_error);
        std::stop_source stop;
        stop.request_stop();
        try {
            VistrelHandoffBuilder::audit(damage.maker.snapshot, {workers, {}, stop.get_token()});
            FAIL() << "no exception";
        } catch (const std::system_error& error) {
            EXPECT_EQ(error.code(), std::errc::operation_canceled);
        }
    }
    EXPECT_EQ(settledCounts(before), before);
}

} // namespace
} // namespace kinovane::test

// SPDX-License-Identifier: Apache-2.0

#include "support/sample_film.hpp"

#include <cstdint>
#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

#include <gtest/gtest.h>

#include <kinovane/workspace.hpp>

namespace kinovane::test {
namespace {

TEST(SampleFilm, LoadsWithAllItsRecords) {
    const FilmWorkspaceSnapshot film = FilmProjectLoader::load(sampleFilm() / "run.json");
    EXPECT_EQ(film.root, sampleFilm());
    EXPECT_EQ(film.project.title, "A Lamp for the Late Ferry");
    EXPECT_EQ(film.project.brief.targetDurationSeconds, 18.0);
    EXPECT_EQ(film.project.brief.usage, "Sample film");
    EXPECT_EQ(film.project.brief.mustHaves,
              (std::vector<std::string>{"Seven lamps", "A ferry that answers"}));
    EXPECT_EQ(film.project.approvals.size(), 6U);
    EXPECT_EQ(film.project.departments.size(), 8U);
    EXPECT_EQ(film.project.shots.size(), 7U);
    EXPECT_EQ(film.project.reviewRequests.size(), 2U);
    EXPECT_EQ(film.project.jobs.size(), 19U);
    EXPECT_EQ(film.project.artifacts.size(), 64U);
    EXPECT_EQ(film.project.issues.size(), 1U);
    EXPECT_EQ(film.project.proof.completedCount(), 10);
    ASSERT_TRUE(film.productionPlan);
    EXPECT_EQ(film.productionPlan->cast.size(), 3U);
    EXPECT_EQ(film.productionPlan->locations.size(), 2U);
    EXPECT_EQ(film.productionPlan->shots.size(), 7U);
    EXPECT_EQ(film.productionPlan->plannedDurationSeconds, 18.0);
    ASSERT_TRUE(film.treatment);
    EXPECT_EQ(film.treatment->beats.size(), 7U);
    EXPECT_EQ(film.playableCutURL(), sampleFilm() / "delivery/a-lamp-for-the-late-ferry.mp4");
    for (const FilmArtifact& artifact : film.project.artifacts) {
        SCOPED_TRACE(artifact.path);
        std::error_code missing;
        EXPECT_EQ(std::filesystem::file_size(film.artifactURL(artifact), missing),
                  static_cast<std::uintmax_t>(artifact.bytes));
    }
}

} // namespace
} // namespace kinovane::test

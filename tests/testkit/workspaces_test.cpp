// SPDX-License-Identifier: Apache-2.0

#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <kinovane/handoff.hpp>
#include <kinovane/preflight.hpp>
#include <kinovane/testing/environment_variable.hpp>
#include <kinovane/testing/workspaces.hpp>

namespace kinovane::testing {
namespace {

namespace fs = std::filesystem;

FilmStatusResponse statusOf(const fs::path& runManifest) {
    return FilmToolClient(filmSimulator()).status(runManifest).get();
}

/// The reasons why the film's artifacts cannot be exported.
std::vector<VistrelHandoffError> refusalsOf(const FilmWorkspaceSnapshot& film) {
    std::vector<VistrelHandoffError> refusals;
    for (const ArtifactOutcome& outcome : VistrelHandoffBuilder::audit(film))
        if (outcome.refusal)
            refusals.push_back(*outcome.refusal);
    return refusals;
}

/// The recorded digest of the artifact at this path.
std::string recordedDigest(const FilmWorkspaceSnapshot& film, std::string_view path) {
    for (const FilmArtifact& artifact : film.project.artifacts)
        if (artifact.path == path)
            return artifact.sha256;
    ADD_FAILURE() << "there is no artifact " << path;
    return {};
}

struct StageRow {
    const char* sentence;
    fs::path (*make)(const fs::path&);
    const char* phase;
    std::optional<std::string> nextGate;
    std::string status;
};

TEST(ReadyFilm, HasReachedItsStage) {
    const std::vector<StageRow> rows{
        {"a planned film", plannedFilm, "plan", "plan", "waiting-for-approval"},
        {"a film in production", filmInProduction, "rough-cut", "rough-cut", "waiting-for-approval"},
        {"a finished film", finishedFilm, "done", std::nullopt, "completed"},
    };
    for (const StageRow& row : rows) {
        SCOPED_TRACE(row.sentence);
        const TemporaryDirectory directory;
        const fs::path runManifest = row.make(directory / "film");
        const FilmStatusResponse status = statusOf(runManifest);
        EXPECT_EQ(runManifest, directory / "film/run.json");
        EXPECT_EQ(status.phase, row.phase);
        EXPECT_EQ(status.nextGate, row.nextGate);
        EXPECT_EQ(status.status, row.status);
        EXPECT_EQ(status.title, filmTitle);

        const FilmWorkspaceSnapshot film = FilmProjectLoader::load(runManifest);
        EXPECT_EQ(refusalsOf(film), std::vector<VistrelHandoffError>());
        EXPECT_EQ(film.project.createdAt, filmTime);
        EXPECT_EQ(film.project.updatedAt, filmTime);
    }
}

TEST(ReadyFilm, CanBePublishedWhenItIsFinished) {
    const TemporaryDirectory directory;
    const FilmWorkspaceSnapshot film = FilmProjectLoader::load(finishedFilm(directory / "film"));
    EXPECT_TRUE(VistrelHandoffBuilder::preflight(film).empty());
    EXPECT_FALSE(VistrelHandoffBuilder::build(film, film.root.string()).assets.empty());
}

TEST(ReadyFilm, IsTheSameEachTime) {
    const TemporaryDirectory directory;
    const FilmWorkspaceSnapshot first = FilmProjectLoader::load(finishedFilm(directory / "first"));
    const FilmWorkspaceSnapshot second = FilmProjectLoader::load(finishedFilm(directory / "second"));
    EXPECT_EQ(first.project, second.project);
    EXPECT_EQ(first.productionPlan, second.productionPlan);
    EXPECT_EQ(first.treatment, second.treatment);
}

TEST(ReadyFilm, IgnoresTheEnvironmentOfTheTest) {
    const EnvironmentVariable misbehaviour("FILM_MISBEHAVE", "exit-4");
    const EnvironmentVariable clock("FILM_CLOCK", "1999-12-31T23:59:59Z");
    const TemporaryDirectory directory;
    EXPECT_EQ(FilmProjectLoader::load(finishedFilm(directory / "film")).project.updatedAt, filmTime);
}

TEST(ReadyFilm, ReportsAFolderInUse) {
    const TemporaryDirectory directory;
    finishedFilm(directory / "film");
    EXPECT_THROW(finishedFilm(directory / "film"), FilmToolError);
}

TEST(InterruptedFilm, RefusesAChangeUntilItIsRecovered) {
    const TemporaryDirectory directory;
    const fs::path runManifest = filmWithInterruptedStep(directory / "film");
    const FilmToolClient film(filmSimulator());

    ASSERT_EQ(statusOf(runManifest).issues.size(), 1U);
    EXPECT_EQ(statusOf(runManifest).issues.front().code, "interrupted-step");
    EXPECT_THROW(film.advance(runManifest).get(), FilmToolError);

    film.recover(runManifest).get();
    EXPECT_TRUE(film.advance(runManifest).get().succeeded());
}

TEST(DamagedFilm, HasOneClipWithAnotherDigest) {
    const TemporaryDirectory directory;
    const FilmWorkspaceSnapshot film = FilmProjectLoader::load(filmWithDamagedClip(directory / "film"));
    const fs::path clip = film.root / affectedClip;
    const std::string expected = recordedDigest(film, affectedClip);
    const std::string actual = VistrelHandoffBuilder::sha256(clip);
    EXPECT_NE(actual, expected);
    EXPECT_EQ(refusalsOf(film),
              std::vector<VistrelHandoffError>{VistrelHandoffError(
                  VistrelHandoffError::hashMismatch{std::string(affectedClip), expected, actual})});
}

TEST(DamagedFilm, LacksOneClip) {
    const TemporaryDirectory directory;
    const FilmWorkspaceSnapshot film = FilmProjectLoader::load(filmWithMissingClip(directory / "film"));
    EXPECT_EQ(refusalsOf(film), std::vector<VistrelHandoffError>{VistrelHandoffError(
                                    VistrelHandoffError::missingArtifact{std::string(affectedClip)})});
}

TEST(DamagedFilm, HasALinkToAFileOutside) {
    const TemporaryDirectory directory;
    const FilmWorkspaceSnapshot film = FilmProjectLoader::load(filmWithLinkLeadingOut(directory / "film"));
    EXPECT_EQ(VistrelHandoffBuilder::sha256(film.root / affectedClip), recordedDigest(film, affectedClip));
    EXPECT_EQ(refusalsOf(film), std::vector<VistrelHandoffError>{VistrelHandoffError(
                                    VistrelHandoffError::unsafeArtifactPath{std::string(affectedClip)})});
}

TEST(DamagedFilm, HasAHalfWrittenProject) {
    const TemporaryDirectory directory;
    const fs::path runManifest = filmWithHalfWrittenProject(directory / "film");
    try {
        FilmProjectLoader::load(runManifest);
        ADD_FAILURE() << "the film was loaded";
    } catch (const FilmProjectError& error) {
        EXPECT_TRUE(std::holds_alternative<FilmProjectError::invalidProject>(error.value())) << error.what();
    }
}

TEST(DamagedFilm, LacksTheProductionPlan) {
    const TemporaryDirectory directory;
    const FilmWorkspaceSnapshot film = FilmProjectLoader::load(filmWithoutProductionPlan(directory / "film"));
    const std::vector<PreflightFinding> findings = VistrelHandoffBuilder::preflight(film);
    ASSERT_FALSE(findings.empty());
    EXPECT_EQ(findings.front().code, PreflightCode::productionPlanMissing);
}

} // namespace
} // namespace kinovane::testing

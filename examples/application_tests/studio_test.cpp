// SPDX-License-Identifier: Apache-2.0

#include "studio.hpp"

#include <algorithm>
#include <fstream>
#include <optional>
#include <vector>

#include <gtest/gtest.h>

#include <kinovane/testing/environment_variable.hpp>
#include <kinovane/testing/release_pipe.hpp>
#include <kinovane/testing/workspaces.hpp>

using namespace kinovane::testing;

namespace {

//! [fixture]
/// The application with the simulators instead of the real programs. Each test has a folder of its own.
struct StudioTest : testing::Test {
    // Variables of the developer's shell must not change what the simulators do.
    EnvironmentVariable film{"FILM_MISBEHAVE", std::nullopt};
    EnvironmentVariable vistrel{"VISTREL_MISBEHAVE", std::nullopt};
    EnvironmentVariable quexrun{"QUEXRUN_MISBEHAVE", std::nullopt};
    EnvironmentVariable models{"QUEXRUN_STATUS_FILE", std::nullopt};

    TemporaryDirectory directory;
    EnvironmentVariable library{"VISTREL_LIBRARY", (directory / "library").string()};
    Studio studio{Programs{filmSimulator(), vistrelSimulator(), quexrunSimulator()}};

    bool libraryIsEmpty() const { return !std::filesystem::exists(directory / "library"); }
};
//! [fixture]

TEST_F(StudioTest, ShowsTitleAndShots) {
    EXPECT_EQ(studio.open(finishedFilm(directory / "film")), "The Last Train, 3 shots");
}

//! [documents]
TEST_F(StudioTest, ExplainsADocumentThatIsHalfWritten) {
    const std::string text = studio.open(filmWithHalfWrittenProject(directory / "film"));
    EXPECT_TRUE(text.starts_with("The film project could not be read: film-project.json: line ")) << text;
}
//! [documents]

TEST_F(StudioTest, NamesTheGateThatAProductionWaitsFor) {
    const std::filesystem::path run = filmInProduction(directory / "film");
    kinovane::FilmToolClient(filmSimulator()).approve(run, "rough-cut", "fine", "Noor").get();
    EXPECT_EQ(studio.advance(run).get(), "Waiting for your approval: delivery");
}

//! [stop]
TEST_F(StudioTest, StopsARun) {
    const std::filesystem::path run = plannedFilm(directory / "film");
    ReleasePipe pipe;
    const EnvironmentVariable slow("FILM_MISBEHAVE", "slow");
    const EnvironmentVariable release("FILM_RELEASE", pipe.path());

    kinovane::Task<std::string> text = studio.advance(run);
    pipe.waitUntilReached(); // The film tool is running now.
    studio.stop();
    EXPECT_EQ(text.get(), "film: stopped at the user's request");
}
//! [stop]

TEST_F(StudioTest, StopsAProgramThatIgnoresTheRequest) {
    const std::filesystem::path run = plannedFilm(directory / "film");
    ReleasePipe pipe;
    const EnvironmentVariable stubborn("FILM_MISBEHAVE", "stubborn");
    const EnvironmentVariable release("FILM_RELEASE", pipe.path());

    Studio impatient(Programs{.film = filmSimulator(), .gracePeriod = std::chrono::milliseconds(1)});
    kinovane::Task<std::string> text = impatient.advance(run);
    pipe.waitUntilReached();
    impatient.stop();
    EXPECT_EQ(text.get(), "film: stopped at the user's request");
}

//! [failures]
TEST_F(StudioTest, ShowsWhyTheFilmToolFailed) {
    struct Row {
        const char* misbehaviour;
        const char* expected;
    };
    const std::vector<Row> rows{
        {"complain", "The projector has lost a reel. Try again after the intermission.\n"},
        {"exit-4", "Film command exited 4."},
        {"killed", "film was ended by signal 9 (Killed)."},
    };
    const std::filesystem::path run = plannedFilm(directory / "film");
    for (const Row& row : rows) {
        SCOPED_TRACE(row.misbehaviour);
        const EnvironmentVariable misbehaviour("FILM_MISBEHAVE", row.misbehaviour);
        EXPECT_EQ(studio.advance(run).get(), row.expected);
    }
}
//! [failures]

TEST_F(StudioTest, ShowsThatAProgramIsMissing) {
    Studio incomplete(Programs{.film = (directory / "film").string()});
    EXPECT_EQ(incomplete.advance(directory / "run.json").get(),
              "Required executable not found: " + (directory / "film").string());
}

//! [publish]
TEST_F(StudioTest, PublishesWithRisingProgress) {
    std::vector<int> percent;
    const std::string text = studio
                                 .publish(finishedFilm(directory / "film"), directory / "handoff.json",
                                          [&](int value) { percent.push_back(value); })
                                 .get();
    EXPECT_EQ(text, "Published");
    EXPECT_TRUE(std::is_sorted(percent.begin(), percent.end()));
    EXPECT_EQ(percent.back(), 100);
    EXPECT_FALSE(libraryIsEmpty());
}
//! [publish]

//! [damage]
TEST_F(StudioTest, DoesNotPublishADamagedFilm) {
    struct Row {
        const char* sentence;
        std::filesystem::path (*make)(const std::filesystem::path&);
        const char* expected;
    };
    const std::vector<Row> rows{
        {"a damaged clip", filmWithDamagedClip, "Artifact hash mismatch for clips/shot-02.mp4. "},
        {"a missing clip", filmWithMissingClip, "The handoff artifact is missing: clips/shot-02.mp4"},
        {"a link to a file outside", filmWithLinkLeadingOut,
         "The handoff contains an unsafe artifact path: clips/shot-02.mp4"},
        {"no production plan", filmWithoutProductionPlan,
         "Not published: The workspace has no production plan. A film is published once its plan was "
         "accepted."},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        const std::filesystem::path run = row.make(directory / row.sentence);
        const std::string text = studio.publish(run, directory / "handoff.json").get();
        EXPECT_EQ(text.substr(0, text.find("Expected sha256:")), row.expected); // Without the two digests.
        EXPECT_TRUE(libraryIsEmpty());
    }
}
//! [damage]

//! [refusals]
TEST_F(StudioTest, ShowsWhyVistrelDidNotImport) {
    struct Row {
        const char* misbehaviour;
        const char* expected;
    };
    const std::vector<Row> rows{
        {"complain",
         "Vistrel refused the film in the dry run: The library is being backed up. Try again in a moment."},
        {"refuse-import", "Vistrel refused the film: The library is being backed up. Try again in a moment."},
        {"not-ok", "Vistrel refused the film in the dry run."},
        {"exit-3", "vistrel: Film command exited 3."},
        {"not-json", "vistrel: Film command returned invalid JSON: line 1, column 1: this is not valid JSON"},
    };
    const std::filesystem::path run = finishedFilm(directory / "film");
    for (const Row& row : rows) {
        SCOPED_TRACE(row.misbehaviour);
        const EnvironmentVariable misbehaviour("VISTREL_MISBEHAVE", row.misbehaviour);
        EXPECT_EQ(studio.publish(run, directory / "handoff.json").get(), row.expected);
        EXPECT_TRUE(libraryIsEmpty());
    }
}
//! [refusals]

//! [models]
TEST_F(StudioTest, ChoosesTheLargestModelThatCanBeStarted) { EXPECT_EQ(studio.model(), "Heron 32B"); }

TEST_F(StudioTest, ShowsThatNoModelIsInstalled) {
    const std::filesystem::path file = directory / "status.json";
    std::ofstream(file) << R"({"models": [], "pi": {"installed": false}})";
    const EnvironmentVariable none("QUEXRUN_STATUS_FILE", file.string());
    EXPECT_EQ(studio.model(), "No model is installed");
}
//! [models]

} // namespace

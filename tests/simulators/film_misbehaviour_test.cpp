// SPDX-License-Identifier: Apache-2.0

#include <functional>

#include <fcntl.h>
#include <sys/stat.h>

#include <gtest/gtest.h>

#include "simulators/simulator_call.hpp"
#include "support/task_failure.hpp"
#include "support/variable.hpp"

namespace kinovane::test {
namespace {

/// A film that has just been planned by a tool that behaves.
struct FilmMisbehaviour : testing::Test {
    TemporaryDirectory directory;
    Variable good{"FILM_MISBEHAVE", std::nullopt};
    FilmToolClient film{programPath("film")};
    std::string run = film.plan("An idea", "A title", 6, directory / "film").get().string();

    /// The commands whose replies the library reads.
    struct Command {
        const char* name;
        std::function<FilmToolError()> failure;
        std::vector<std::string> arguments;
    };
    std::vector<Command> commands() const {
        const std::string second = (directory / "second").string();
        return {
            {"plan",
             [=, this] { return errorOf(film.plan("i", "t", 3, second)); },
             {"plan", "--idea", "i", "--title", "t", "--duration", "3", "--output-dir", second}},
            {"status", [this] { return errorOf(film.status(run)); }, {"status", run}},
            {"export-vistrel", [this] { return errorOf(film.exportVistrel(run)); }, {"export-vistrel", run}},
            {"agent", [this] { return errorOf(film.agentLaunchSpec(run, "pi")); },
             FilmToolClient::agentLaunchArguments(run, "pi", programPath("film"))},
        };
    }
};

FilmToolError invalid(const std::string& message) { return FilmToolError::invalidJSON{message}; }

TEST_F(FilmMisbehaviour, ReportsInvalidReplies) {
    struct Row {
        const char* behaviour;
        std::vector<std::string> messages; ///< For the commands in their order.
    };
    const std::vector<Row> rows{
        {"not-json", std::vector<std::string>(4, "line 1, column 1: this is not valid JSON")},
        {"noise", std::vector<std::string>(4, "line 1, column 2: this is not valid JSON")},
        {"missing-key",
         {"status.runManifest is missing", "proof is missing", "manifestSha256 is missing",
          "cwd is missing"}},
        {"wrong-type",
         {"status.runManifest: expected a string, found a number", "shots: expected an integer, found a list",
          "bytes: expected an integer, found a list", "environment: expected an object, found a list"}},
    };
    for (const Row& row : rows) {
        const Variable misbehave("FILM_MISBEHAVE", row.behaviour);
        const auto all = commands();
        for (std::size_t index = 0; index < all.size(); ++index) {
            SCOPED_TRACE(std::string(row.behaviour) + " for " + all[index].name);
            const FilmToolError error = all[index].failure();
            EXPECT_EQ(error, invalid(row.messages[index]));
            EXPECT_EQ(error.errorDescription(), "Film command returned invalid JSON: " + row.messages[index]);
        }
    }
}

TEST_F(FilmMisbehaviour, ReportsFailures) {
    struct Row {
        const char* behaviour;
        std::int32_t exitCode;
        std::string errors, description;
    };
    const std::string reason = "The projector has lost a reel. Try again after the intermission.\n";
    const std::string onlyRun = "FILM_MISBEHAVE: only \"run\" can be cut off\n";
    const std::string unknown =
        "FILM_MISBEHAVE: \"nap\" is unknown; known are not-json missing-key wrong-type "
        "noise flood exit-4 complain slow stubborn killed cut-off\n";
    const std::vector<Row> rows{
        {"exit-4", 4, "", "Film command exited 4."},
        {"complain", 4, reason, reason},
        {"killed", 9, "", "Film command exited 9."},
        {"cut-off", 2, onlyRun, onlyRun},
        {"nap", 2, unknown, unknown},
    };
    for (const Row& row : rows) {
        const Variable misbehave("FILM_MISBEHAVE", row.behaviour);
        for (const Command& command : commands()) {
            SCOPED_TRACE(std::string(row.behaviour) + " for " + command.name);
            const FilmToolError error = command.failure();
            EXPECT_EQ(error, FilmToolError(FilmToolError::commandFailed{
                                 {programPath("film"), command.arguments, row.exitCode, "", row.errors}}));
            EXPECT_EQ(error.errorDescription(), row.description);
        }
    }
}

TEST_F(FilmMisbehaviour, ChangesNothingButLogsTheCall) {
    const std::string project = contentOf(directory / "film/film-project.json");
    for (const char* behaviour : {"not-json", "missing-key", "wrong-type", "noise"}) {
        SCOPED_TRACE(behaviour);
        const std::string log = contentOf(directory / "film/film-tool-log.jsonl");
        const Variable misbehave("FILM_MISBEHAVE", behaviour);
        // Replies that the library does not read cause no failure.
        film.approve(run, "plan", "n", "m").get();
        EXPECT_TRUE(film.advance(run).get().succeeded());
        EXPECT_EQ(contentOf(directory / "film/film-project.json"), project);
        EXPECT_GT(contentOf(directory / "film/film-tool-log.jsonl").size(), log.size());
    }
    EXPECT_EQ(namesIn(directory.path()), std::vector<std::string>{"film"});
}

TEST_F(FilmMisbehaviour, HasNoEffectWhenEmpty) {
    const Variable misbehave("FILM_MISBEHAVE", "");
    EXPECT_EQ(film.status(run).get().title, "A title");
}

TEST_F(FilmMisbehaviour, WaitsForItsRelease) {
    const std::string pipe = (directory / "release").string();
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    const std::string fast = film.run({"status", run}).get().stdout;
    Task<ProcessResult> waiting =
        film.run({"status", run}, {{"FILM_MISBEHAVE", "slow"}, {"FILM_RELEASE", pipe}});
    EXPECT_FALSE(waiting.done());
    // Blocks until the tool opens the other end, so it has not continued by itself.
    const int end = ::open(pipe.c_str(), O_WRONLY | O_CLOEXEC);
    ASSERT_GE(end, 0);
    ::close(end);
    const ProcessResult result = waiting.get();
    EXPECT_EQ(result.stdout, fast);
    EXPECT_EQ(result.stderr, "");
}

TEST_F(FilmMisbehaviour, RequiresAPipeToWaitFor) {
    for (const std::string& release : {std::string(), run, (directory / "nothing").string()}) {
        SCOPED_TRACE(release);
        EXPECT_EQ(call(programPath("film"), {"status", run},
                       {{"FILM_MISBEHAVE", "slow"}, {"FILM_RELEASE", release}}),
                  (ProcessResult{programPath("film"),
                                 {"status", run},
                                 2,
                                 "",
                                 "FILM_RELEASE does not name a pipe to wait for\n"}));
    }
}

} // namespace
} // namespace kinovane::test

// SPDX-License-Identifier: Apache-2.0

#include <chrono>
#include <csignal>
#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <kinovane/agent_runtime.hpp>
#include <kinovane/handoff.hpp>
#include <kinovane/testing/release_pipe.hpp>
#include <kinovane/testing/workspaces.hpp>

namespace kinovane::testing {
namespace {

namespace fs = std::filesystem;

/// A call of each simulator that can be made to misbehave.
struct Call {
    std::string name; ///< The first word of its environment variables.
    std::string program;
    std::vector<std::string> arguments;
};

struct Simulator : ::testing::Test {
    TemporaryDirectory directory;
    fs::path runManifest = finishedFilm(directory / "film");
    fs::path manifest = directory / "handoff.json";

    Simulator() {
        const FilmWorkspaceSnapshot film = FilmProjectLoader::load(runManifest);
        VistrelHandoffBuilder::write(VistrelHandoffBuilder::build(film, film.root.string()), manifest);
    }

    std::vector<Call> calls() const {
        return {
            {"FILM", filmSimulator(), {"status", runManifest.string()}},
            {"VISTREL",
             vistrelSimulator(),
             {"production", "import-film", manifest.string(), "--dry-run", "--output", "json"}},
            {"QUEXRUN", quexrunSimulator(), {"agent", "status", "--json"}},
        };
    }

    static Task<ProcessResult> start(const Call& call, const std::string& behaviour, const ReleasePipe& pipe,
                                     RunOptions options = RunOptions()) {
        const std::map<std::string, std::string> environment{{call.name + "_MISBEHAVE", behaviour},
                                                             {call.name + "_RELEASE", pipe.path()}};
        return FilmToolClient(call.program).run(call.arguments, environment, std::move(options));
    }

    /// Stops a run that waits for its pipe; the number of the signal that ended it.
    static int signalOfStoppedRun(const Call& call, const std::string& behaviour,
                                  std::chrono::milliseconds gracePeriod) {
        ReleasePipe pipe;
        StopSource source;
        RunOptions options;
        options.stop = source.token();
        options.gracePeriod = gracePeriod;
        Task<ProcessResult> run = start(call, behaviour, pipe, options);
        pipe.waitUntilReached();
        source.requestStop();
        try {
            run.get();
        } catch (const RunStopped& stopped) {
            return stopped.result().exitCode;
        }
        ADD_FAILURE() << "the run was not stopped";
        return 0;
    }
};

TEST_F(Simulator, IsFoundAndRuns) {
    EXPECT_FALSE(QuexRunAgentClient(quexrunSimulator()).status().get().models.empty());
    EXPECT_EQ(FilmToolClient(piSimulator()).run({"--version"}).get().stdout, "pi 0.0.0-simulator\n");
    EXPECT_EQ(FilmToolClient::resolveExecutable(vistrelSimulator()), vistrelSimulator());
}

TEST_F(Simulator, WaitsUntilItIsReleased) {
    for (const Call& call : calls()) {
        SCOPED_TRACE(call.name);
        ReleasePipe pipe;
        Task<ProcessResult> run = start(call, "slow", pipe);
        pipe.waitUntilReached();
        EXPECT_FALSE(run.done());
        pipe.release();
        EXPECT_EQ(run.get().stdout, FilmToolClient(call.program).run(call.arguments).get().stdout);
    }
}

TEST_F(Simulator, IsStoppedWhileItWaits) {
    for (const Call& call : calls()) {
        SCOPED_TRACE(call.name);
        EXPECT_EQ(signalOfStoppedRun(call, "slow", std::chrono::hours(1)), SIGTERM);
    }
}

TEST_F(Simulator, IgnoresTerminationWhenItIsStubborn) {
    for (const Call& call : calls()) {
        SCOPED_TRACE(call.name);
        EXPECT_EQ(signalOfStoppedRun(call, "stubborn", std::chrono::milliseconds(1)), SIGKILL);
    }
}

TEST_F(Simulator, FloodsBothStreams) {
    for (const Call& call : calls()) {
        SCOPED_TRACE(call.name);
        const ProcessResult result = start(call, "flood", ReleasePipe()).get();
        EXPECT_GT(result.stdout.size(), std::size_t{8} << 20U);
        EXPECT_EQ(result.stdout.front(), '{');
        EXPECT_EQ(result.stderr.size(), std::size_t{8} << 20U);
    }
}

TEST_F(Simulator, RefusesAnImportAfterTheDryRun) {
    const VistrelClient importer(vistrelSimulator());
    RunOptions options;
    options.environment = {{"VISTREL_MISBEHAVE", "refuse-import"},
                           {"VISTREL_LIBRARY", (directory / "library").string()}};
    EXPECT_TRUE(importer.validate(manifest, options).get().ok);
    try {
        importer.import(manifest, options).get();
        ADD_FAILURE() << "the film was imported";
    } catch (const FilmToolError& error) {
        EXPECT_STREQ(error.what(), "The library is being backed up. Try again in a moment.\n");
    }
    EXPECT_FALSE(fs::exists(directory / "library"));
}

} // namespace
} // namespace kinovane::testing

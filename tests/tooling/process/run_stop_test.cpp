// SPDX-License-Identifier: Apache-2.0

#include <chrono>
#include <filesystem>
#include <latch>
#include <thread>
#include <vector>

#include <gmock/gmock.h>

#include <kinovane/run_options.hpp>

#include "support/child_counts.hpp"
#include "support/joining_thread.hpp"
#include "support/rounds.hpp"
#include "support/temporary_directory.hpp"
#include "tooling/process/controlled_outcome.hpp"

namespace kinovane::test {
namespace {

using namespace std::chrono_literals;

TEST(RunStop, EndsTheProgramAndWhatItStarted) {
    const TemporaryDirectory directory;
    const Fifo gate(directory / "gate");
    Fifo reached(directory / "reached");
    StopSource source;
    Task<ProcessResult> task =
        FilmToolClient(testProgramPath())
            .run({"grandchild", gate.path(), "announce", reached.path(), "wait", gate.path()}, {},
                 {.stop = source.token()});
    reached.awaitAnnouncements();
    source.requestStop();
    try {
        (void)task.get();
        ADD_FAILURE() << "the run was not stopped";
    } catch (const RunStopped& error) {
        EXPECT_EQ(error.code(), std::errc::operation_canceled);
        EXPECT_EQ(error.result().exitCode, 15);
        EXPECT_EQ(error.result().stdout, ""); // The grandchild wrote nothing late.
    }
    EXPECT_EQ(countProcess().children, 0U);
}

TEST(RunStop, EndsAGrandchildThatHoldsThePipes) {
    const TemporaryDirectory directory;
    const Fifo gate(directory / "gate");
    Fifo reached(directory / "reached");
    StopSource source;
    Task<ProcessResult> task =
        FilmToolClient(testProgramPath())
            .run({"ignore", "15", "grandchild", gate.path(), "announce", reached.path(), "exit", "3"}, {},
                 {.stop = source.token(), .gracePeriod = 50ms});
    reached.awaitAnnouncements();
    source.requestStop();
    EXPECT_THROW((void)task.get(), RunStopped);
}

TEST(RunStop, BeforeTheStartStartsNothing) {
    const TemporaryDirectory directory;
    StopSource source;
    source.requestStop();
    source.requestStop();
    EXPECT_EQ(outcomeWith({"create", (directory / "made").string()}, {.stop = source.token()}),
              "canceled, 0: ");
    EXPECT_FALSE(std::filesystem::exists(directory / "made"));
}

TEST(RunStop, AfterTheEndChangesNothing) {
    StopSource source;
    EXPECT_EQ(outcomeWith({"out", "done"}, {.stop = source.token()}), "done");
    source.requestStop();
    EXPECT_EQ(outcomeWith({"out", "done"}, {}), "done");
}

TEST(RunStop, FromOnOutput) {
    const TemporaryDirectory directory;
    const Fifo gate(directory / "gate");
    StopSource source;
    RunOptions options{.stop = source.token()};
    options.onOutput = [&](OutputStream, std::string_view) { source.requestStop(); };
    EXPECT_EQ(outcomeWith({"out", "x", "wait", gate.path()}, options), "canceled, 15: x");
}

TEST(RunStop, LeavesAProgramTheTimeToCleanUp) {
    const TemporaryDirectory directory;
    StopSource source;
    RunOptions options{.stop = source.token()};
    options.onOutput = [&](OutputStream, std::string_view chunk) {
        if (chunk == "ready")
            source.requestStop();
    };
    EXPECT_EQ(outcomeWith({"on-term", "cleaned up"}, options), "canceled, 0: readycleaned up");
}

// The second request does not shorten the grace period.
TEST(RunStop, MayBeRequestedTwice) {
    StopSource source;
    RunOptions options{.stop = source.token()};
    options.onOutput = [&](OutputStream, std::string_view) { source.requestStop(); };
    EXPECT_EQ(outcomeWith({"on-term", "cleaned up"}, options), "canceled, 0: readycleaned up");
}

// Each request may come before the program is started, while it is started, or afterwards. This program does
// not end by itself.
TEST(RunStop, RacesWithTheStart) {
    const TemporaryDirectory directory;
    const Fifo gate(directory / "gate");
    constexpr int threads = 4;
    const ProcessCounts before = settledCounts(countProcess());
    for (int round = 0; round < 200; ++round) {
        StopSource source;
        std::latch together(threads + 1);
        std::vector<JoiningThread> stoppers;
        for (int thread = 0; thread < threads; ++thread)
            stoppers.emplace_back([&] {
                together.arrive_and_wait();
                source.requestStop();
            });
        together.arrive_and_wait();
        EXPECT_THAT(outcomeWith({"wait", gate.path()}, {.stop = source.token()}),
                    testing::AnyOf("canceled, 0: ", "canceled, 15: "));
    }
    EXPECT_EQ(settledCounts(before), before);
}

// Either the program ended by itself or it was stopped; it was waited for in both cases, and no signal was
// sent to an identifier that was free for another process.
TEST(RunStop, RacesWithAProgramThatEndsByItself) {
    int stopped = 0;
    const int rounds = raceRounds(1000);
    const ProcessCounts before = countProcess();
    for (int round = 0; round < rounds; ++round) {
        StopSource source;
        Task<ProcessResult> task =
            FilmToolClient("/bin/true").run({}, {}, {.stop = source.token(), .gracePeriod = 0ms});
        JoiningThread first;
        if (round % 2 == 0)
            first = JoiningThread([&] { source.requestStop(); });
        for (int spin = 0; spin < round % 200; ++spin)
            std::this_thread::yield();
        source.requestStop();
        try {
            EXPECT_EQ(task.get().exitCode, 0);
        } catch (const RunStopped&) {
            ++stopped;
        }
    }
    EXPECT_EQ(settledCounts(before), before);
    EXPECT_GT(stopped, 0);
    EXPECT_LT(stopped, rounds);
}

} // namespace
} // namespace kinovane::test

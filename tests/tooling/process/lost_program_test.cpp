// SPDX-License-Identifier: Apache-2.0

// The application takes the exit status of a program that the library has started. Its process identifier may
// then belong to another process.

#include <atomic>
#include <cerrno>
#include <csignal>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include <dlfcn.h>
#include <poll.h>
#include <sys/wait.h>

#include <gtest/gtest.h>

#include <kinovane/run_options.hpp>

#include "support/temporary_directory.hpp"
#include "tooling/process/controlled_outcome.hpp"

namespace {

std::atomic<int> signalsSent = 0;
std::atomic<bool> pollFails = false;

} // namespace

// These replace the C library's functions of the same names, and call them.

extern "C" int kill(pid_t process, int signal) noexcept {
    static const auto next = reinterpret_cast<decltype(&::kill)>(::dlsym(RTLD_NEXT, "kill"));
    ++signalsSent;
    return next(process, signal);
}

extern "C" int poll(pollfd* waited, nfds_t count, int timeout) {
    static const auto next = reinterpret_cast<decltype(&::poll)>(::dlsym(RTLD_NEXT, "poll"));
    if (pollFails) {
        errno = ENOMEM;
        return -1;
    }
    return next(waited, count, timeout);
}

namespace kinovane::test {
namespace {

const std::string startedBut =
    "Could not launch film command: " + testProgramPath() + " was started and may have done its work, but ";

const std::string statusLost =
    startedBut + "its exit status was lost: waitpid: No child processes (the application ignores the end of "
                 "its child processes, SIGCHLD, or waits for children that it did not start)";

// Another process keeps the output open, so that the run lasts until it has to be ended.
TEST(LostProgram, GetsNoSignal) {
    StopSource source;
    struct Row {
        std::string_view sentence;
        RunOptions options;
        std::function<void(Fifo& gate)> endRun;
        std::string expected;
    };
    const auto openGate = [](Fifo& gate) { gate.open(); };
    const auto refuseOutput = [](OutputStream, std::string_view) { throw std::runtime_error("enough"); };
    const std::vector<Row> rows{
        {"nobody ends the run", {.stop = source.token()}, openGate, statusLost},
        {"onOutput throws", {.onOutput = refuseOutput}, openGate, statusLost},
        {"poll fails",
         {.stop = source.token()},
         [](Fifo& gate) {
             pollFails = true;
             gate.open();
         },
         startedBut + "its output was lost: poll: Cannot allocate memory"},
        {"a stop is requested", {.stop = source.token()}, [&](Fifo&) { source.requestStop(); }, statusLost},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        const TemporaryDirectory directory;
        Fifo gate(directory / "gate");
        Fifo reached(directory / "reached");
        Task<ProcessResult> task =
            FilmToolClient(testProgramPath())
                .run({"grandchild", gate.path(), "announce", reached.path(), "exit", "7"}, {}, row.options);
        reached.awaitAnnouncements();
        int status = 0;
        ASSERT_GT(::waitpid(-1, &status, 0), 0);
        signalsSent = 0;
        row.endRun(gate);
        EXPECT_EQ(outcomeOf(std::move(task)), row.expected);
        EXPECT_EQ(signalsSent, 0);
        pollFails = false;
    }
}

TEST(LostProgram, IsToldFromOneThatRuns) {
    const TemporaryDirectory directory;
    const Fifo gate(directory / "gate");
    signalsSent = 0;
    EXPECT_EQ(outcomeWith({"wait", gate.path()}, {.timeLimit = std::chrono::milliseconds(0)}),
              "timed out, 15: ");
    EXPECT_EQ(signalsSent, 2); // SIGTERM, and SIGKILL for what is left of the group.
}

} // namespace
} // namespace kinovane::test

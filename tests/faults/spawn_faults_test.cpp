// SPDX-License-Identifier: Apache-2.0

// What is left of a program's start, and of the program, when a call goes wrong.

#include <cerrno>
#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

#include <unistd.h>

#include <gtest/gtest.h>

#include <kinovane/tooling.hpp>

#include "faults/fault_sweep.hpp"
#include "support/child_counts.hpp"
#include "support/forked_process.hpp"
#include "support/sample_film.hpp"
#include "tooling/process/resting_counts.hpp"

namespace kinovane::test {

namespace {

const std::vector<Call> startCalls{Call::stat,  Call::fstat,   Call::faccessat,  Call::pipe2,
                                   Call::fcntl, Call::poll,    Call::posixSpawn, Call::read,
                                   Call::close, Call::waitpid, Call::spawnSetup, Call::pthreadCreate};

std::string join(const ProcessResult& result) { return result.stdout + "|" + result.stderr; }

const std::string launchFailed = "Could not launch film command: ";
const std::string afterTheStart =
    launchFailed + programPath("test_program") + " was started and may have done its work, but ";

/// Whether the text names the program, some call and the reason.
bool isLaunchFailure(const std::string& text, const std::string& why) {
    const std::string program = launchFailed + programPath("test_program") + ": ";
    return text.starts_with(program) && text.ends_with(": " + why) &&
           text.find_first_of(": ", program.size()) == text.size() - why.size() - 2;
}

/// Where it went wrong decides which error it is.
void checkTold(const Fault& fault, const Outcome& outcome) {
    if (outcome.kind == Outcome::Kind::result)
        return;
    EXPECT_EQ(outcome.kind, Outcome::Kind::toolError) << outcome.text;
    const std::string why = std::generic_category().message(fault.error);
    switch (fault.call) {
    case Call::stat:
    case Call::faccessat:
        EXPECT_EQ(outcome.text, "Required executable not found: " + programPath("test_program"));
        break;
    case Call::read:
        EXPECT_EQ(outcome.text, afterTheStart + "its output was lost: read: " + why);
        break;
    case Call::poll:
        EXPECT_EQ(outcome.text, afterTheStart + "its output was lost: poll: " + why);
        break;
    case Call::waitpid:
        EXPECT_EQ(outcome.text, afterTheStart + "its exit status was lost: waitpid: " + why +
                                    " (the application ignores the end of its child processes, SIGCHLD, or "
                                    "waits for children that it did not start)");
        break;
    case Call::pthreadCreate:
        EXPECT_EQ(outcome.text, launchFailed + "no thread could be started: " + why);
        break;
    case Call::pipe2:
        EXPECT_EQ(outcome.text, launchFailed + programPath("test_program") + ": pipe: " + why);
        break;
    default:
        EXPECT_TRUE(isLaunchFailure(outcome.text, why)) << outcome.text;
    }
}

FaultSweep sweepOf(const std::string& path, const std::vector<std::string>& arguments) {
    return {
        .path = path,
        .operation =
            [arguments] { return join(FilmToolClient(programPath("test_program")).run(arguments).get()); },
        .expectedCalls = startCalls,
        .check = checkTold,
        // How often a pipe is read depends on how fast the program writes.
        .repeatable = false};
}

TEST(SpawnFaults, AShortRun) {
    FaultSweep sweep = sweepOf("running a program", {"out", "x", "err", "y"});
    sweep.moreFaults = {{Call::read, 0, Fault::Manner::shortened, 0, forever},
                        {Call::read, 0, Fault::Manner::refused, EIO, forever},
                        {Call::pipe2, 0, Fault::Manner::refused, EMFILE, forever}};
    sweep.run();
}

// Large enough for a larger pipe, and for a program that has to be stopped in the middle.
TEST(SpawnFaults, ARunWithMuchOutput) {
    sweepOf("running a program with much output", {"flood", "1100000"}).run();
}

TEST(SpawnFaults, AFailingProgram) {
    FaultSweep sweep = sweepOf("running a program that fails", {"out", "x", "exit", "3"});
    sweep.check = [](const Fault& fault, const Outcome& outcome) {
        EXPECT_NE(outcome.kind, Outcome::Kind::result);
        if (outcome.text != "Film command exited 3.")
            checkTold(fault, outcome);
    };
    sweep.run();
}

// A working directory that cannot be read is no reason to look for another program.
TEST(SpawnFaults, ByARelativePath) {
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(std::filesystem::path(programPath("test_program")).parent_path());
    FaultSweep sweep = sweepOf("running a program by a relative path", {"out", "x"});
    sweep.operation = [] { return join(FilmToolClient("./test_program").run({"out", "x"}).get()); };
    sweep.expectedCalls.push_back(Call::getcwd);
    sweep.check = [](const Fault& fault, const Outcome& outcome) {
        const bool notFound = fault.call == Call::stat || fault.call == Call::faccessat;
        if (notFound || (fault.call == Call::getcwd && fault.error == ENOENT))
            EXPECT_EQ(outcome.text, "Required executable not found: ./test_program");
        else if (fault.call == Call::getcwd)
            EXPECT_EQ(outcome.text, launchFailed + "./test_program: getcwd: " +
                                        std::generic_category().message(fault.error));
        else
            checkTold(fault, outcome);
    };
    sweep.run();
    std::filesystem::current_path(before);
}

// The first pipe then gets the place of standard input, and has to move away.
TEST(SpawnFaults, WithoutStandardInput) {
    EXPECT_EQ(inForkedProcess([] {
                  ::close(STDIN_FILENO);
                  sweepOf("running a program without standard input", {"out", "x"}).run();
                  return std::string(testing::Test::HasFailure() ? "failed" : "passed");
              }),
              "passed");
}

// An error after the start ends the run, and while the rest is cleared away calls may be interrupted too. The
// program still writes when nobody reads any more.
TEST(SpawnFaults, InterruptedWhileClearingAway) {
    const FaultSweep sweep = sweepOf("", {"flood", "300000"});
    const ProcessCounts before = restingCounts();
    {
        const FaultPlan plan({{Call::poll, 1, Fault::Manner::refused, ENOMEM},
                              {Call::waitpid, 0, Fault::Manner::refused, EINTR, 3},
                              {Call::close, 2, Fault::Manner::reportedLate, EINTR, forever}});
        EXPECT_EQ(outcomeOf(sweep.operation).text,
                  afterTheStart + "its output was lost: poll: Cannot allocate memory");
        EXPECT_EQ(plan.census()[static_cast<std::size_t>(Call::waitpid)], 4U);
    }
    EXPECT_TRUE(settledCounts(before) == before) << "something was left";
}

} // namespace

} // namespace kinovane::test

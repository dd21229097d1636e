// SPDX-License-Identifier: Apache-2.0

// Running a program when system calls fail.

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

/// Whether the text names the program, a call and the reason.
bool isLaunchFailure(const std::string& text, const std::string& why) {
    const std::string program = launchFailed + programPath("test_program") + ": ";
    return text.starts_with(program) && text.ends_with(": " + why) &&
           text.find_first_of(": ", program.size()) == text.size() - why.size() - 2;
}

/// The call that failed determines the error.
void checkError(const Fault& fault, const Outcome& outcome) {
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

FaultSweep sweepOf(const std::string& name, const std::vector<std::string>& arguments) {
    return {
        .name = name,
        .operation =
            [arguments] { return join(FilmToolClient(programPath("test_program")).run(arguments).get()); },
        .expectedCalls = startCalls,
        .check = checkError,
        // How often a pipe is read depends on how fast the program writes.
        .repeatable = false};
}

TEST(SpawnFaults, AreReportedForAShortRun) {
    FaultSweep sweep = sweepOf("running a program", {"out", "x", "err", "y"});
    sweep.moreFaults = {{Call::read, 0, Fault::Kind::shortened, 0, forever},
                        {Call::read, 0, Fault::Kind::refused, EIO, forever},
                        {Call::pipe2, 0, Fault::Kind::refused, EMFILE, forever}};
    sweep.run();
}

// More than a pipe holds, so that the program may still be writing when the run ends.
TEST(SpawnFaults, AreReportedForARunWithMuchOutput) {
    sweepOf("running a program with much output", {"flood", "300000"}).run();
}

TEST(SpawnFaults, AreReportedForAFailingProgram) {
    FaultSweep sweep = sweepOf("running a program that fails", {"out", "x", "exit", "3"});
    sweep.check = [](const Fault& fault, const Outcome& outcome) {
        EXPECT_NE(outcome.kind, Outcome::Kind::result);
        if (outcome.text != "Film command exited 3.")
            checkError(fault, outcome);
    };
    sweep.run();
}

// A working directory that cannot be read is no reason to look for another program.
TEST(SpawnFaults, AreReportedForARelativePath) {
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
            checkError(fault, outcome);
    };
    sweep.run();
    std::filesystem::current_path(before);
}

// The first pipe then gets descriptor 0 and has to be duplicated.
TEST(SpawnFaults, AreReportedWithoutStandardInput) {
    EXPECT_EQ(inForkedProcess([] {
                  ::close(STDIN_FILENO);
                  sweepOf("running a program without standard input", {"out", "x"}).run();
                  return std::string(testing::Test::HasFailure() ? "failed" : "passed");
              }),
              "passed");
}

// After an error the run ends, and the calls of the cleanup may be interrupted as well. The program still
// writes when its output is no longer read.
TEST(SpawnFaults, DoNotLeakWhenTheCleanupIsInterrupted) {
    const FaultSweep sweep = sweepOf("", {"flood", "300000"});
    const ProcessCounts before = restingCounts();
    {
        const FaultPlan plan({{Call::poll, 1, Fault::Kind::refused, ENOMEM},
                              {Call::waitpid, 0, Fault::Kind::refused, EINTR, 3},
                              {Call::close, 2, Fault::Kind::reportedLate, EINTR, forever}});
        EXPECT_EQ(outcomeOf(sweep.operation).text,
                  afterTheStart + "its output was lost: poll: Cannot allocate memory");
        EXPECT_EQ(plan.counts()[static_cast<std::size_t>(Call::waitpid)], 4U);
    }
    EXPECT_TRUE(settledCounts(before) == before) << "a descriptor, thread or child was left";
}

} // namespace

} // namespace kinovane::test

// SPDX-License-Identifier: Apache-2.0

// Resources after many runs, and runs at the same time.

#include <chrono>
#include <filesystem>
#include <functional>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <kinovane/tooling.hpp>

#include "programs/numbered_lines.hpp"
#include "support/temporary_directory.hpp"
#include "tooling/process/controlled_outcome.hpp"
#include "tooling/process/resting_counts.hpp"
#include "tooling/process/test_program.hpp"

namespace kinovane::test {

namespace fs = std::filesystem;

namespace {

void expectCounts(const ProcessCounts& expected) {
    const ProcessCounts counts = settledCounts(expected);
    EXPECT_EQ(counts.descriptors, expected.descriptors);
    EXPECT_EQ(counts.threads, expected.threads);
    EXPECT_EQ(counts.children, expected.children);
}

class ProcessRuns : public testing::Test {
  protected:
    // The first run makes sanitizers and the C library start threads and open files that they keep.
    ProcessRuns() {
        (void)outputOfTestProgram({});
        counts_ = restingCounts();
    }

    void expectNothingLeft() const { expectCounts(counts_); }

    TemporaryDirectory directory;

  private:
    ProcessCounts counts_;
};

TEST_F(ProcessRuns, LeaveNothingBehind) {
    const std::string text = (directory.write("text", "x")).string();
    fs::permissions(text, fs::perms::owner_all);
    const std::string nul("\0", 1);
    const std::string prefix = "Could not launch film command: ";
    struct Row {
        const char* sentence;
        std::string executable;
        std::vector<std::string> arguments;
        std::map<std::string, std::string> environment;
        std::string outcome;
    };
    const std::vector<Row> rows{
        {"runs", testProgramPath(), {"out", "x", "err", "y"}, {}, "x"},
        {"runs with additions to the environment", testProgramPath(), {"out", "x"}, {{"KEY", "value"}}, "x"},
        {"failed runs", testProgramPath(), {"exit", "3"}, {}, "Film command exited 3."},
        {"killed runs", testProgramPath(), {"signal", "9"}, {}, "Film command exited 9."},
        {"missing programs",
         "kinovane-no-such-tool",
         {},
         {},
         "Required executable not found: kinovane-no-such-tool"},
        {"files that are not programs", text, {}, {}, prefix + text + ": posix_spawn: Exec format error"},
        {"NUL bytes in arguments",
         testProgramPath(),
         {nul},
         {},
         prefix + testProgramPath() + ": an argument holds a NUL byte"},
        {"NUL bytes in values",
         testProgramPath(),
         {},
         {{"KEY", nul}},
         prefix + testProgramPath() + ": an environment variable holds a NUL byte"},
        {"bad keys",
         testProgramPath(),
         {},
         {{"", ""}},
         prefix + testProgramPath() + ": \"\" cannot be the name of an environment variable"},
        {"arguments too long",
         testProgramPath(),
         {std::string(200'000, 'x')},
         {},
         prefix + testProgramPath() + ": posix_spawn: Argument list too long"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        for (int run = 0; run < 200; ++run)
            ASSERT_EQ(outcomeOf(FilmToolClient(row.executable).run(row.arguments, row.environment)),
                      row.outcome);
        expectNothingLeft();
    }
}

TEST_F(ProcessRuns, LeaveNothingBehindWhenStopped) {
    const Fifo gate(directory / "gate");
    struct Row {
        std::string_view sentence;
        std::vector<std::string> arguments;
        std::function<void(RunOptions&, StopSource&)> end;
        std::string expected;
    };
    const std::vector<Row> rows{
        {"stops before the start",
         {},
         [](RunOptions&, StopSource& source) { source.requestStop(); },
         "canceled, 0: "},
        {"stops with SIGTERM",
         {"out", "x", "wait", gate.path()},
         [](RunOptions& options, StopSource& source) {
             options.onOutput = [&](OutputStream, std::string_view) { source.requestStop(); };
         },
         "canceled, 15: x"},
        {"stops with SIGKILL",
         {"ignore", "15", "out", "x", "wait", gate.path()},
         [](RunOptions& options, StopSource& source) {
             options.gracePeriod = std::chrono::milliseconds(0);
             options.onOutput = [&](OutputStream, std::string_view) { source.requestStop(); };
         },
         "canceled, 9: x"},
        {"exceptions from onOutput",
         {"out", "x", "wait", gate.path()},
         [](RunOptions& options, StopSource&) {
             options.onOutput = [](OutputStream, std::string_view) { throw std::runtime_error("enough"); };
         },
         "enough"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        for (int run = 0; run < 200; ++run) {
            StopSource source;
            RunOptions options{.stop = source.token()};
            row.end(options, source);
            ASSERT_EQ(outcomeWith(row.arguments, options), row.expected);
        }
        expectNothingLeft();
    }
}

TEST_F(ProcessRuns, LeaveNothingBehindWhenTasksAreDropped) {
    for (int run = 0; run < 200; ++run) {
        (void)startTestProgram({"out", "x"});
        (void)FilmToolClient("kinovane-no-such-tool").run({});
    }
    expectNothingLeft();
}

TEST_F(ProcessRuns, AreIndependentOfOneAnother) {
    const FilmToolClient client(testProgramPath());
    std::vector<Task<ProcessResult>> tasks;
    for (int run = 0; run < 50; ++run) {
        const std::string name = "run " + std::to_string(run);
        tasks.push_back(client.run({"out", name, "flood", "100000", "err", name}));
    }
    for (std::size_t run = 0; run < tasks.size(); ++run) {
        const std::string name = "run " + std::to_string(run);
        const ProcessResult result = tasks[run].get();
        EXPECT_EQ(result.arguments.at(1), name);
        EXPECT_TRUE(result.stdout == name + numberedLines("output", 100'000)) << name;
        EXPECT_TRUE(result.stderr == numberedLines("errors", 100'000) + name) << name;
    }
    expectNothingLeft();
}

// A program that inherited the pipes of another would keep that run from ending.
TEST_F(ProcessRuns, InheritOnlyTheirOwnPipes) {
    {
        Fifo gate(directory / "gate");
        std::vector<Task<ProcessResult>> waiting;
        std::vector<Task<ProcessResult>> quick;
        for (int pair = 0; pair < 40; ++pair) {
            waiting.push_back(startTestProgram({"wait", gate.path(), "out", "waited"}));
            quick.push_back(startTestProgram({"out", std::to_string(pair)}));
        }
        for (std::size_t pair = 0; pair < quick.size(); ++pair)
            EXPECT_EQ(outcomeOf(std::move(quick[pair])), std::to_string(pair));
        for (const Task<ProcessResult>& task : waiting)
            EXPECT_FALSE(task.done());
        gate.open();
        for (Task<ProcessResult>& task : waiting)
            EXPECT_EQ(outcomeOf(std::move(task)), "waited");
    }
    expectNothingLeft();
}

// All programs must be running before the first may end.
TEST_F(ProcessRuns, StartWithoutWaitingForOneAnother) {
    constexpr std::size_t runs = 64;
    {
        Fifo gate(directory / "gate");
        Fifo reached(directory / "reached");
        std::vector<Task<ProcessResult>> tasks;
        for (std::size_t run = 0; run < runs; ++run)
            tasks.push_back(startTestProgram(
                {"announce", reached.path(), "wait", gate.path(), "out", std::to_string(run)}));
        reached.awaitAnnouncements(runs);
        for (const Task<ProcessResult>& task : tasks)
            EXPECT_FALSE(task.done());
        gate.open();
        for (std::size_t run = 0; run < runs; ++run)
            EXPECT_EQ(outcomeOf(std::move(tasks[run])), std::to_string(run));
    }
    expectNothingLeft();
}

TEST_F(ProcessRuns, FinishWhenTheirTaskIsDropped) {
    const fs::path made = directory / "made";
    {
        Fifo gate(directory / "gate");
        Fifo reached(directory / "reached");
        (void)startTestProgram({"wait", gate.path(), "create", made.string(), "announce", reached.path()});
        EXPECT_FALSE(fs::exists(made));
        gate.open();
        reached.awaitAnnouncements();
        EXPECT_TRUE(fs::exists(made));
    }
    expectNothingLeft();
}

TEST_F(ProcessRuns, LeaveOtherChildrenToTheApplication) {
    const pid_t other = ::fork();
    ASSERT_GE(other, 0);
    if (other == 0)
        ::_exit(5);
    siginfo_t ended{};
    ASSERT_EQ(::waitid(P_PID, static_cast<id_t>(other), &ended, WEXITED | WNOWAIT), 0);
    EXPECT_EQ(outputOfTestProgram({"out", "x"}), "x");
    int status = 0;
    EXPECT_EQ(::waitpid(other, &status, 0), other);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 5);
}

} // namespace

} // namespace kinovane::test

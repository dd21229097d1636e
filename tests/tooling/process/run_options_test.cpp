// SPDX-License-Identifier: Apache-2.0

#include <chrono>

#include <gmock/gmock.h>

#include <kinovane/run_options.hpp>

#include "support/child_counts.hpp"
#include "support/temporary_directory.hpp"
#include "tooling/process/controlled_outcome.hpp"

namespace kinovane::test {
namespace {

using namespace std::chrono_literals;
using testing::HasSubstr;

TEST(RunOptions, ChangeWhatTheChildFinds) {
    const TemporaryDirectory directory;
    struct Row {
        std::string_view sentence;
        std::vector<std::string> arguments;
        RunOptions options;
        std::string expected;
    };
    const std::string program = testProgramPath();
    StopSource stopped;
    stopped.requestStop();
    const std::vector<Row> rows{
        {"the working directory",
         {"directory"},
         {.workingDirectory = directory.path()},
         directory.path().string()},
        {"no input", {"input-kind"}, {.standardInput = StandardInput::empty}, "null"},
        {"no input to copy", {"copy", "out", "end"}, {.standardInput = StandardInput::empty}, "end"},
        {"a working directory that is not there",
         {"directory"},
         {.workingDirectory = directory / "none"},
         "Could not launch film command: " + program + ": the working directory " +
             (directory / "none").string() + ": No such file or directory"},
        {"a working directory with a NUL byte",
         {"directory"},
         {.workingDirectory = std::string("/tmp\0x", 6)},
         "Could not launch film command: " + program + ": the working directory holds a NUL byte"},
        {"a working directory that is a file",
         {"directory"},
         {.workingDirectory = program},
         "Could not launch film command: " + program + ": the working directory " + program +
             ": Not a directory"},
        {"a variable's name with a NUL byte",
         {},
         {.environment = {{std::string("A\0B", 3), ""}}},
         "Could not launch film command: " + program + ": an environment variable holds a NUL byte"},
        {"a variable's value with a NUL byte",
         {},
         {.environment = {{"A", std::string("b\0", 2)}}},
         "Could not launch film command: " + program + ": an environment variable holds a NUL byte"},
        {"a variable without a name",
         {},
         {.environment = {{"", "a"}}},
         "Could not launch film command: " + program +
             ": \"\" cannot be the name of an environment variable"},
        {"a name that no variable can have",
         {},
         {.environment = {{"A=B", ""}}},
         "Could not launch film command: " + program +
             ": \"A=B\" cannot be the name of an environment variable"},
        {"a negative time limit", {}, {.timeLimit = -1ms}, "the time limit is negative"},
        {"a negative grace period", {}, {.gracePeriod = -1ms}, "the grace period is negative"},
        {"a negative time limit of a stopped run",
         {},
         {.stop = stopped.token(), .timeLimit = -1ms},
         "the time limit is negative"},
        {"a stopped run without any time", {}, {.stop = stopped.token(), .timeLimit = 0ms}, "canceled, 0: "},
        {"a stopped run in a working directory that is not there",
         {},
         {.workingDirectory = directory / "none", .stop = stopped.token()},
         "canceled, 0: "},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        EXPECT_EQ(outcomeWith(row.arguments, row.options), row.expected);
    }
}

TEST(RunOptions, DoNotHideAMissingProgram) {
    StopSource stopped;
    stopped.requestStop();
    EXPECT_EQ(outcomeOf(FilmToolClient("no-such-film").run({}, {}, {.stop = stopped.token()})),
              "Required executable not found: no-such-film");
}

TEST(RunOptions, ReplaceVariablesOfTheOperation) {
    RunOptions options;
    options.environment = {{"KINOVANE_A", "options"}};
    const ProcessResult result =
        FilmToolClient(testProgramPath())
            .run({"environment"}, {{"KINOVANE_A", "call"}, {"KINOVANE_B", "call"}}, options)
            .get();
    EXPECT_THAT(result.stdout, HasSubstr("KINOVANE_A=options"));
    EXPECT_THAT(result.stdout, HasSubstr("KINOVANE_B=call"));
}

TEST(RunOptions, GiveTheOutputAsItArrives) {
    const TemporaryDirectory directory;
    Fifo gate(directory / "gate");
    std::string output;
    std::string errors;
    RunOptions options;
    options.onOutput = [&](OutputStream stream, std::string_view chunk) {
        (stream == OutputStream::standardOutput ? output : errors) += chunk;
        if (output == "first\n")
            gate.open(); // The program goes on only once its first line has arrived.
    };
    const ProcessResult result =
        FilmToolClient(testProgramPath())
            .run({"out", "first\n", "wait", gate.path(), "out-hex", "FF", "err", "\xC3\xA9"}, {}, options)
            .get();
    EXPECT_EQ(output, "first\n\xEF\xBF\xBD");
    EXPECT_EQ(errors, "\xC3\xA9");
    EXPECT_EQ(result.stdout, output);
    EXPECT_EQ(result.stderr, errors);
}

TEST(RunOptions, GiveAllOfALargeOutput) {
    std::size_t received = 0;
    RunOptions options;
    options.onOutput = [&](OutputStream, std::string_view chunk) { received += chunk.size(); };
    const ProcessResult result =
        FilmToolClient(testProgramPath()).run({"flood", "3000000"}, {}, options).get();
    EXPECT_EQ(received, result.stdout.size() + result.stderr.size());
    EXPECT_GE(received, 6000000U);
}

TEST(RunOptions, EndTheRunWhenOnOutputThrows) {
    const TemporaryDirectory directory;
    const Fifo gate(directory / "gate");
    RunOptions options;
    options.onOutput = [](OutputStream, std::string_view) { throw std::runtime_error("no more of this"); };
    EXPECT_EQ(outcomeWith({"out", "x", "wait", gate.path()}, options), "no more of this");
    EXPECT_EQ(countProcess().children, 0U);
}

TEST(RunOptions, EndTheRunAtTheTimeLimit) {
    const TemporaryDirectory directory;
    const Fifo gate(directory / "gate");
    struct Row {
        std::string_view sentence;
        std::vector<std::string> arguments;
        RunOptions options;
        std::string expected;
    };
    const std::vector<Row> rows{
        {"no time at all", {"wait", gate.path()}, {.timeLimit = 0ms}, "timed out, 15: "},
        {"a short time; the output so far is kept",
         {"out", "x", "wait", gate.path()},
         {.timeLimit = 200ms},
         "timed out, 15: x"},
        {"SIGTERM is ignored",
         {"ignore", "15", "out", "x", "wait", gate.path()},
         {.timeLimit = 200ms, .gracePeriod = 50ms},
         "timed out, 9: x"},
        {"an hour for a short run", {"out", "done"}, {.timeLimit = 1h}, "done"},
        {"the longest time", {"out", "done"}, {.timeLimit = std::chrono::milliseconds::max()}, "done"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        EXPECT_EQ(outcomeWith(row.arguments, row.options), row.expected);
        EXPECT_EQ(countProcess().children, 0U);
    }
}

} // namespace
} // namespace kinovane::test

// SPDX-License-Identifier: Apache-2.0

#include "tooling/process/process_runner.hpp"

#include <array>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <kinovane/tooling.hpp>

#include "programs/numbered_lines.hpp"
#include "support/temporary_directory.hpp"
#include "tooling/process/test_program.hpp"

namespace kinovane::test {

namespace fs = std::filesystem;

namespace {

/// The error of a run of the test program; absent if it succeeds.
std::optional<FilmToolError> errorOf(std::vector<std::string> arguments) {
    try {
        (void)startTestProgram(std::move(arguments)).get();
        return std::nullopt;
    } catch (const FilmToolError& error) {
        return error;
    }
}

TEST(ProcessRunner, ReturnsTheResultOfARun) {
    struct Row {
        const char* sentence;
        std::vector<std::string> arguments;
        std::string output;
        std::string errors;
    };
    const std::vector<Row> rows{
        {"no arguments, no output", {}, "", ""},
        {"output", {"out", "hello\n"}, "hello\n", ""},
        {"standard error does not make a run fail", {"err", "careful"}, "", "careful"},
        {"both", {"out", "1", "err", "2", "out", "3", "err", "4"}, "13", "24"},
        {"standard output closed early", {"out", "1", "close", "1", "err", "2", "err", "3"}, "1", "23"},
        {"standard error closed early", {"err", "1", "close", "2", "out", "2", "out", "3"}, "23", "1"},
        {"both closed before the end", {"close", "1", "close", "2", "exit", "0"}, "", ""},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        const ProcessResult expected{testProgramPath(), row.arguments, 0, row.output, row.errors};
        EXPECT_EQ(startTestProgram(row.arguments).get(), expected);
        EXPECT_EQ(runSynchronously(testProgramPath(), row.arguments), expected);
        EXPECT_TRUE(expected.succeeded());
    }
}

TEST(ProcessRunner, ReportsTheResultOfAFailedRun) {
    struct Row {
        const char* sentence;
        std::vector<std::string> arguments;
        std::int32_t exitCode;
        std::string output;
        std::string errors;
        std::string description;
    };
    const std::vector<Row> rows{
        {"no text on standard error", {"exit", "3"}, 3, "", "", "Film command exited 3."},
        {"standard output does not describe the error",
         {"out", "x", "exit", "3"},
         3,
         "x",
         "",
         "Film command exited 3."},
        {"a text on standard error", {"err", "boom\n", "exit", "3"}, 3, "", "boom\n", "boom\n"},
        {"white space on standard error", {"err", "\n", "exit", "1"}, 1, "", "\n", "\n"},
        {"bytes that are not UTF-8", {"err-hex", "FF0A", "exit", "1"}, 1, "", "\uFFFD\n", "\uFFFD\n"},
        {"the largest status", {"exit", "255"}, 255, "", "", "Film command exited 255."},
        {"ended by SIGKILL", {"out", "x", "signal", "9"}, 9, "x", "", "Film command exited 9."},
        {"ended by SIGTERM", {"signal", "15"}, 15, "", "", "Film command exited 15."},
        {"killed after a text on standard error", {"err", "late", "signal", "1"}, 1, "", "late", "late"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        const FilmToolError expected(FilmToolError::commandFailed{
            ProcessResult{testProgramPath(), row.arguments, row.exitCode, row.output, row.errors}});
        const auto error = errorOf(row.arguments);
        ASSERT_TRUE(error.has_value());
        EXPECT_EQ(*error, expected);
        EXPECT_EQ(error->errorDescription(), row.description);
        const auto* failed = std::get_if<FilmToolError::commandFailed>(&error->value());
        ASSERT_NE(failed, nullptr);
        EXPECT_FALSE(failed->result.succeeded());
    }
}

TEST(ProcessRunner, ReplacesInvalidUTF8) {
    struct Row {
        const char* sentence;
        std::vector<std::string> bytes; ///< Written one after the other.
        std::string expected;
    };
    const std::vector<Row> rows{
        {"valid text is unchanged", {"41C3A9E282ACF09F8EAC"}, "A\u00E9\u20AC\U0001F3AC"},
        {"a byte that never occurs in UTF-8", {"41FF42"}, "A\uFFFDB"},
        {"a continuation byte alone", {"80"}, "\uFFFD"},
        {"a sequence cut off at the end", {"41E282"}, "A\uFFFD"},
        {"a sequence cut off in the middle", {"F09F9841"}, "\uFFFDA"},
        {"an overlong form", {"C0AF"}, "\uFFFD\uFFFD"},
        {"half a surrogate pair", {"EDA080"}, "\uFFFD\uFFFD\uFFFD"},
        {"a code point beyond U+10FFFF", {"F4908080"}, "\uFFFD\uFFFD\uFFFD\uFFFD"},
        {"U+10FFFF", {"F48FBFBF"}, "\U0010FFFF"},
        {"a sequence written in two halves", {"E2", "82AC"}, "\u20AC"},
        {"a NUL byte", {"410042"}, std::string("A\0B", 3)},
        {"a byte-order mark", {"EFBBBF41"}, "\uFEFFA"},
        {"line ends", {"0D0A0A0D"}, "\r\n\n\r"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        std::vector<std::string> arguments;
        for (const char* verb : {"out-hex", "err-hex"})
            for (const std::string& bytes : row.bytes)
                arguments.insert(arguments.end(), {verb, bytes});
        const ProcessResult result = startTestProgram(arguments).get();
        EXPECT_EQ(result.stdout, row.expected);
        EXPECT_EQ(result.stderr, row.expected);
    }
}

TEST(ProcessRunner, CapturesMegabytesOnBothStreams) {
    for (const std::size_t bytes : {4'096U, 65'536U, 65'537U, 8'000'001U}) {
        SCOPED_TRACE(bytes);
        const ProcessResult result = startTestProgram({"flood", std::to_string(bytes)}).get();
        // Not EXPECT_EQ, which would print the texts.
        EXPECT_EQ(result.stdout.size(), bytes);
        EXPECT_TRUE(result.stdout == numberedLines("output", bytes));
        EXPECT_EQ(result.stderr.size(), bytes);
        EXPECT_TRUE(result.stderr == numberedLines("errors", bytes));
    }
}

TEST(ProcessRunner, CapturesMegabytesOfAFailedRun) {
    const auto error = errorOf({"flood", "3000000", "exit", "4"});
    ASSERT_TRUE(error.has_value());
    EXPECT_TRUE(error->errorDescription() == numberedLines("errors", 3'000'000));
}

// Any process that holds the pipe may still write to it, so the run lasts until the last one has closed it.
TEST(ProcessRunner, WaitsUntilTheOutputEnds) {
    const TemporaryDirectory directory;
    Fifo gate(directory / "gate");
    Fifo reached(directory / "reached");
    Task<ProcessResult> task =
        startTestProgram({"out", "early output\n", "grandchild", gate.path(), "announce", reached.path()});
    reached.awaitAnnouncements();
    // Waits for the program's end and leaves its status to the library.
    siginfo_t ended{};
    ASSERT_EQ(::waitid(P_ALL, 0, &ended, WEXITED | WNOWAIT), 0);
    EXPECT_EQ(ended.si_code, CLD_EXITED);
    EXPECT_FALSE(task.done());
    gate.open();
    const ProcessResult result = task.get();
    EXPECT_EQ(result.stdout, "early output\nlate output\n");
    EXPECT_EQ(result.stderr, "late errors\n");
}

// The output has ended, but the exit status is not known before the program ends.
TEST(ProcessRunner, WaitsUntilTheProgramEnds) {
    const TemporaryDirectory directory;
    Fifo gate(directory / "gate");
    Fifo reached(directory / "reached");
    Task<ProcessResult> task =
        startTestProgram({"close", "1", "close", "2", "announce", reached.path(), "wait", gate.path()});
    reached.awaitAnnouncements();
    EXPECT_FALSE(task.done());
    gate.open();
    EXPECT_EQ(task.get().exitCode, 0);
}

TEST(ProcessRunner, FindsTheProgramByName) {
    const std::string former = std::getenv("PATH") != nullptr ? std::getenv("PATH") : "";
    ::setenv("PATH", fs::path(testProgramPath()).parent_path().c_str(), 1);
    const FilmToolClient client("test_program");
    const ProcessResult result = client.run({"out", "here"}).get();
    ::setenv("PATH", former.c_str(), 1);
    EXPECT_EQ(result, (ProcessResult{testProgramPath(), {"out", "here"}, 0, "here", ""}));
    EXPECT_EQ(client.executable(), "test_program");
}

} // namespace

} // namespace kinovane::test

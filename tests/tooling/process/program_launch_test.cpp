// SPDX-License-Identifier: Apache-2.0

// Programs that cannot be started, and what must not be left behind.

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>

#include <gtest/gtest.h>

#include <kinovane/tooling.hpp>

#include "support/forked_process.hpp"
#include "support/limits.hpp"
#include "support/ordinary_user.hpp"
#include "support/temporary_directory.hpp"
#include "tooling/process/child_process.hpp"
#include "tooling/process/process_runner.hpp"
#include "tooling/process/resting_counts.hpp"
#include "tooling/process/test_program.hpp"

namespace kinovane::test {

namespace fs = std::filesystem;

namespace {

const std::string prefix = "Could not launch film command: ";

const std::string noThread = "no thread could be started: Resource temporarily unavailable";

/// Runs the test program 21 times. Returns the outcome, and whether a later run had another outcome or
/// resources were left.
std::string outcomeOfMany(const std::vector<std::string>& arguments) {
    std::string outcome = outputOfTestProgram(arguments);
    const ProcessCounts before = restingCounts();
    for (int run = 0; run < 20; ++run)
        if (const std::string again = outputOfTestProgram(arguments); again != outcome)
            return outcome + ", and then: " + again;
    return settledCounts(before) == before ? outcome : outcome + ", and resources were left";
}

TEST(ProgramLaunch, FailsForFilesThatAreNotPrograms) {
    const TemporaryDirectory directory;
    struct Row {
        const char* sentence;
        const char* content;
        std::string message;
    };
    const std::vector<Row> rows{
        {"a text file", "Once upon a time\n", "Exec format error"},
        {"an empty file", "", "Exec format error"},
        {"a damaged program", "\177ELF\002\001\001", "Exec format error"},
        {"a script without its interpreter", "#!/kinovane/no/such/interpreter\n",
         "No such file or directory"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        const fs::path file = directory.write("film", row.content);
        fs::permissions(file, fs::perms::owner_all);
        EXPECT_EQ(outcomeOf(FilmToolClient(file.string()).run({})),
                  prefix + file.string() + ": posix_spawn: " + row.message);
    }
}

TEST(ProgramLaunch, FailsForAMissingProgram) {
    try {
        (void)FilmToolClient("kinovane-no-such-tool").run({"plan"}).get();
        ADD_FAILURE() << "the program ran";
    } catch (const FilmToolError& error) {
        EXPECT_EQ(error, FilmToolError(FilmToolError::executableNotFound{"kinovane-no-such-tool"}));
    }
    EXPECT_EQ(outcomeOf(FilmToolClient("").run({})), "Required executable not found: ");
}

// Between the lookup and the start a program may be removed or replaced.
TEST(ProgramLaunch, FailsForAProgramThatChangedAfterTheLookup) {
    const TemporaryDirectory directory;
    struct Row {
        const char* sentence;
        std::string path;
        std::string message;
    };
    const std::vector<Row> rows{
        {"no file", (directory / "nothing").string(), "No such file or directory"},
        {"a directory", directory.path().string(), "Permission denied"},
        {"a file that may not be executed", directory.write("plain", "x").string(), "Permission denied"},
        {"a file in place of a directory", (directory / "plain/film").string(), "Not a directory"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        try {
            (void)runSynchronously(row.path, {});
            ADD_FAILURE() << "the program ran";
        } catch (const FilmToolError& error) {
            EXPECT_EQ(error,
                      FilmToolError(FilmToolError::launchFailed{row.path + ": posix_spawn: " + row.message}));
        }
    }
}

// The lookup refuses such a name first. This check is for callers that start a program without a lookup.
TEST(ProgramLaunch, FailsForAPathWithANULByte) {
    try {
        const ChildProcess child(std::string("/bin/true\0x", 11), {}, {});
        ADD_FAILURE() << "the program was started";
    } catch (const FilmToolError& error) {
        EXPECT_EQ(error.errorDescription(),
                  "Could not launch film command: the program's path holds a NUL byte");
    }
}

TEST(ProgramLaunch, FailsWithoutDescriptors) {
    struct Row {
        const char* sentence;
        int descriptors;
        std::string expected;
    };
    const std::string noPipe = prefix + testProgramPath() + ": pipe: Too many open files";
    const std::vector<Row> rows{
        {"none for the first pipe", 0, noPipe},
        {"half of the first pipe", 1, noPipe},
        {"none for the second pipe", 2, noPipe},
        {"half of the second pipe", 3, noPipe},
        {"none for standard input", 4, prefix + testProgramPath() + ": fcntl: Too many open files"},
        {"just enough", 5, "works"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        EXPECT_EQ(inForkedProcess([&] {
                      leaveDescriptors(row.descriptors);
                      // Descriptors cannot be counted here, because that needs one. A leak changes the
                      // outcome of a later run.
                      std::string outcome;
                      for (int run = 0; run < 20; ++run)
                          if (const std::string again = outputOfTestProgram({"out", "works"});
                              again != outcome)
                              outcome += again;
                      return outcome;
                  }),
                  row.expected);
    }
}

// Only a limit on processes makes starting a thread fail, and it does not apply to the superuser.
TEST(ProgramLaunch, FailsWithoutThreads) {
    EXPECT_EQ(asOrdinaryUser([] {
                  limitTo(RLIMIT_NPROC, 0);
                  return outcomeOfMany({"out", "works"});
              }),
              prefix + noThread);
}

TEST(ProgramLaunch, ReportsMissingThreadsThroughTheTask) {
    EXPECT_EQ(asOrdinaryUser([] {
                  limitTo(RLIMIT_NPROC, 0);
                  Task<ProcessResult> task = startTestProgram({"out", "works"});
                  const bool done = task.done();
                  std::string text = done ? "done: " : "not done: ";
                  task.then([](const std::function<void()>& job) { job(); },
                            [&](Task<ProcessResult> finished) { text += outcomeOf(std::move(finished)); });
                  return text;
              }),
              "done: " + prefix + noThread);
}

TEST(ProgramLaunch, FailsIfTheApplicationIgnoresSIGCHLD) {
    struct Row {
        const char* sentence;
        void (*handler)(int);
        int flags;
    };
    const std::vector<Row> rows{
        {"ignored", SIG_IGN, 0},
        {"SA_NOCLDWAIT", SIG_DFL, SA_NOCLDWAIT},
        {"a handler with SA_NOCLDWAIT", [](int) {}, SA_NOCLDWAIT},
    };
    const TemporaryDirectory directory;
    const std::string made = (directory / "made").string();
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        EXPECT_EQ(inForkedProcess([&] {
                      struct sigaction action{};
                      action.sa_handler = row.handler;
                      action.sa_flags = row.flags;
                      ::sigaction(SIGCHLD, &action, nullptr);
                      return outcomeOfMany({"create", made});
                  }),
                  prefix + testProgramPath() +
                      ": not started, because its exit status would be lost: the application ignores the end "
                      "of its child processes (SIGCHLD)");
        EXPECT_FALSE(fs::exists(made)) << "the program ran";
    }
}

// Another process keeps the program's output open, so that the library does not wait for the program before
// this test does.
TEST(ProgramLaunch, ReportsAnExitStatusThatTheApplicationTook) {
    const TemporaryDirectory directory;
    Fifo gate(directory / "gate");
    Fifo reached(directory / "reached");
    Task<ProcessResult> task =
        startTestProgram({"grandchild", gate.path(), "announce", reached.path(), "exit", "7"});
    reached.awaitAnnouncements();
    int status = 0;
    ASSERT_GT(::waitpid(-1, &status, 0), 0);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 7);
    EXPECT_FALSE(task.done());
    gate.open();
    EXPECT_EQ(outcomeOf(std::move(task)),
              prefix + testProgramPath() +
                  " was started and may have done its work, but its exit status was lost: waitpid: No child "
                  "processes (the application ignores the end of its child processes, SIGCHLD, or waits for "
                  "children that it did not start)");
}

} // namespace

} // namespace kinovane::test

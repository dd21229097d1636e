// SPDX-License-Identifier: Apache-2.0

#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <kinovane/tooling.hpp>

#include "agent_runtime/agent_records.hpp"
#include "support/child_counts.hpp"
#include "support/recorder.hpp"
#include "support/task_failure.hpp"

namespace kinovane::test {

namespace {

using Texts = std::vector<std::string>;

TEST(AgentClient, KeepsTheNameOfItsProgram) {
    EXPECT_EQ(QuexRunAgentClient("~/quexrun").executable(), "~/quexrun");
    EXPECT_EQ(QuexRunAgentClient("a"), QuexRunAgentClient("a"));
    EXPECT_NE(QuexRunAgentClient("a"), QuexRunAgentClient("b"));
}

TEST(AgentClient, PassesTheStatusCommandAndTheInheritedEnvironment) {
    const Recorder recorder(statusRow().fullDocument());
    EXPECT_EQ(QuexRunAgentClient(Recorder::path()).status().get(), fullStatus());
    EXPECT_EQ(recorder.arguments(), (Texts{"agent", "status", "--json"}));
    EXPECT_EQ(recorder.environment(), ownEnvironment());
}

TEST(AgentClient, DecodesReplies) {
    const Variable errors("RECORDER_ERRORS", "Nothing to worry about.\n");
    struct Row {
        const char* sentence;
        std::string output;
        QuexRunAgentStatus expected;
    };
    const std::vector<Row> rows{
        {"no models, no pi", R"({"models": [], "pi": {"installed": false}})", {{}, {false, {}, {}}}},
        {"nulls",
         R"({"models":[],"pi":{"installed":true,"path":null,"version":null}})",
         {{}, {true, {}, {}}}},
        {"white space around it", "\r\n\t " + statusRow().fullDocument() + "\n\n", fullStatus()},
        {"a byte-order mark", "\xEF\xBB\xBF" + statusRow().fullDocument(), fullStatus()},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        const Recorder recorder(row.output);
        EXPECT_EQ(QuexRunAgentClient(Recorder::path()).status().get(), row.expected);
    }
}

TEST(AgentClient, RefusesRepliesThatCannotBeDecoded) {
    const Variable errors("RECORDER_ERRORS", "Not part of the error.\n");
    struct Row {
        const char* sentence;
        std::string output;
        std::string expected;
    };
    const std::vector<Row> rows{
        {"an empty reply", "", "line 1, column 1: the document ends too early"},
        {"a word", "ready", "line 1, column 1: this is not valid JSON"},
        {"a second reply", R"({"models":[],"pi":{"installed":false}} {})",
         "line 1, column 40: something follows the end of the document"},
        {"a list", "[]", "expected an object, found a list"},
        {"no pi", statusRow().documentWithout("pi"), "pi is missing"},
        {"no models", statusRow().documentWithout("models"), "models is missing"},
        {"a model without its engine",
         R"({"models":[{"id":"a","displayName":"A","installed":true,"recommendedUnifiedMemoryGB":8,)"
         R"("startableByQuexRun":true}],"pi":{"installed":true}})",
         "models[0].servingEngine is missing"},
        {"a model without its last key",
         R"({"models":[{"id":"a","displayName":"A","installed":true,"recommendedUnifiedMemoryGB":8,)"
         R"("servingEngine":"e"}],"pi":{"installed":true}})",
         "models[0].startableByQuexRun is missing"},
        {"memory with a fraction",
         R"({"models":[{"id":"a","displayName":"A","installed":true,"recommendedUnifiedMemoryGB":7.5,)"
         R"("servingEngine":"e","startableByQuexRun":true}],"pi":{"installed":true}})",
         "models[0].recommendedUnifiedMemoryGB: expected an integer, found 7.5"},
        {"a pi whose installed is a string", R"({"models":[],"pi":{"installed":"yes"}})",
         "pi.installed: expected true or false, found a string"},
        {"a version that is a number", R"({"models":[],"pi":{"installed":true,"version":1.4}})",
         "pi.version: expected a string, found a number"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        const Recorder recorder(row.output);
        const FilmToolError error = errorOf(QuexRunAgentClient(Recorder::path()).status());
        EXPECT_EQ(error, FilmToolError(FilmToolError::invalidJSON{"quexrun agent status: " + row.expected}));
        EXPECT_EQ(error.errorDescription(),
                  "Film command returned invalid JSON: quexrun agent status: " + row.expected);
    }
}

TEST(AgentClient, ReportsAFailedCommand) {
    struct Row {
        const char* status;
        std::int32_t exitCode;
        const char* errors;
        const char* expected;
    };
    // The reply is valid, but is not decoded if the command fails.
    const std::string output = statusRow().fullDocument();
    for (const Row& row : {Row{"3", 3, "", "Film command exited 3."}, Row{"1", 1, "boom\n", "boom\n"},
                           Row{"255", 255, " ", " "}}) {
        SCOPED_TRACE(row.expected);
        const Recorder recorder(output);
        const Variable status("RECORDER_STATUS", row.status);
        const Variable errors("RECORDER_ERRORS", row.errors);
        const FilmToolError error = errorOf(QuexRunAgentClient(Recorder::path()).status());
        EXPECT_EQ(error,
                  FilmToolError(FilmToolError::commandFailed{
                      {Recorder::path(), {"agent", "status", "--json"}, row.exitCode, output, row.errors}}));
        EXPECT_EQ(error.errorDescription(), row.expected);
    }
}

TEST(AgentClient, ReportsAFailedStartThroughTheTask) {
    const TemporaryDirectory directory;
    const ProcessCounts before = countProcess();
    struct Row {
        std::string executable;
        FilmToolError expected;
        std::string description;
    };
    const std::string broken = brokenProgram(directory).string();
    const std::vector<Row> rows{
        {"kinovane-no-such-runtime", FilmToolError::executableNotFound{"kinovane-no-such-runtime"},
         "Required executable not found: kinovane-no-such-runtime"},
        {"~/no-such-directory/quexrun", FilmToolError::executableNotFound{"~/no-such-directory/quexrun"},
         "Required executable not found: ~/no-such-directory/quexrun"},
        {"/tmp", FilmToolError::executableNotFound{"/tmp"}, "Required executable not found: /tmp"},
        {broken, FilmToolError::launchFailed{broken + ": posix_spawn: Exec format error"},
         "Could not launch film command: " + broken + ": posix_spawn: Exec format error"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.executable);
        Task<QuexRunAgentStatus> task = QuexRunAgentClient(row.executable).status();
        const FilmToolError error = errorOf(std::move(task));
        EXPECT_EQ(error, row.expected);
        EXPECT_EQ(error.errorDescription(), row.description);
    }
    EXPECT_EQ(settledCounts(before), before);
}

TEST(AgentClient, FindsARelativeProgramInTheDirectoryOfTheCall) {
    const TemporaryDirectory directory;
    const Variable output("RECORDER_OUTPUT", statusRow().fullDocument());
    std::filesystem::create_directories(directory / "here/bin");
    std::filesystem::create_directories(directory / "there");
    std::filesystem::copy_file(Recorder::path(), directory / "here/bin/quexrun");
    const std::filesystem::path before = std::filesystem::current_path();
    for (int round = 0; round < 20; ++round) {
        std::filesystem::current_path(directory / "here");
        Task<QuexRunAgentStatus> task = QuexRunAgentClient("bin/quexrun").status();
        std::filesystem::current_path(directory / "there");
        EXPECT_EQ(failureOf(std::move(task)), "");
    }
    std::filesystem::current_path(before);
}

TEST(AgentClient, RunsSeveralProgramsAtOnce) {
    const Variable output("RECORDER_OUTPUT", statusRow().fullDocument());
    const QuexRunAgentClient client(Recorder::path());
    std::vector<Task<QuexRunAgentStatus>> tasks;
    for (int index = 0; index < 16; ++index)
        tasks.push_back(client.status());
    for (Task<QuexRunAgentStatus>& task : tasks)
        EXPECT_EQ(task.get(), fullStatus());
}

} // namespace

} // namespace kinovane::test

// SPDX-License-Identifier: Apache-2.0

#include <gtest/gtest.h>

#include <kinovane/agent_runtime.hpp>

#include "simulators/simulator_call.hpp"
#include "support/task_failure.hpp"
#include "support/variable.hpp"

namespace kinovane::test {
namespace {

const std::vector<std::string> question{"agent", "status", "--json"};

/// A runtime without a status file or misbehaviour.
struct QuexRun : testing::Test {
    Variable statusFile{"QUEXRUN_STATUS_FILE", std::nullopt};
    Variable good{"QUEXRUN_MISBEHAVE", std::nullopt};
    QuexRunAgentClient client{programPath("quexrun")};
};

TEST_F(QuexRun, AcceptsOnlyTheFormOfItsUsage) {
    for (const std::vector<std::string>& arguments :
         std::vector<std::vector<std::string>>{{},
                                               {""},
                                               {"agent"},
                                               {"agent", "status"},
                                               {"agent", "--json", "status"},
                                               {"status", "--json"},
                                               {"agents", "status", "--json"},
                                               {"agent", "Status", "--json"},
                                               {"agent", "status", "--JSON"},
                                               {"agent", "status", "--json=1"},
                                               {"agent", "status", "--json", ""},
                                               {"agent", "status", "--json", "--json"}}) {
        SCOPED_TRACE(testing::PrintToString(arguments));
        EXPECT_EQ(call(programPath("quexrun"), arguments),
                  (ProcessResult{programPath("quexrun"), arguments, 2, "",
                                 "usage: quexrun agent status --json\n"}));
    }
}

TEST_F(QuexRun, PrintsTheStatusFileUnchanged) {
    const TemporaryDirectory directory;
    for (const std::string content : {"", "no status\n", R"({"models":[],"pi":{"installed":false}})"}) {
        SCOPED_TRACE(content);
        const Variable file("QUEXRUN_STATUS_FILE", directory.write("status.json", content).string());
        EXPECT_EQ(call(programPath("quexrun"), question).stdout, content);
    }
    const Variable file("QUEXRUN_STATUS_FILE", (directory / "status.json").string());
    EXPECT_EQ(client.status().get(), QuexRunAgentStatus{});
    EXPECT_EQ(client.status().get().bestInstalledModel(), std::nullopt);

    const std::string missing = (directory / "missing.json").string();
    const Variable missingFile("QUEXRUN_STATUS_FILE", missing);
    EXPECT_EQ(errorOf(client.status()),
              FilmToolError(FilmToolError::commandFailed{
                  {programPath("quexrun"), question, 1, "",
                   "cannot open \"" + missing + "\": No such file or directory\n"}}));
}

TEST_F(QuexRun, ReportsInvalidReplies) {
    struct Row {
        const char* behaviour;
        std::string message;
    };
    const std::vector<Row> rows{
        {"not-json", "quexrun agent status: line 1, column 1: this is not valid JSON"},
        {"noise", "quexrun agent status: line 1, column 2: this is not valid JSON"},
        {"missing-key", "quexrun agent status: models[0].servingEngine is missing"},
        {"wrong-type", "quexrun agent status: models[0].installed: expected true or false, found a string"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.behaviour);
        const Variable misbehave("QUEXRUN_MISBEHAVE", row.behaviour);
        EXPECT_EQ(errorOf(client.status()), FilmToolError(FilmToolError::invalidJSON{row.message}));
    }
}

TEST_F(QuexRun, ReportsFailures) {
    struct Row {
        const char* behaviour;
        std::int32_t exitCode;
        std::string errors, description;
    };
    const std::string reason = "The agent runtime is being updated. Try again in a moment.\n";
    const std::string unknown = "QUEXRUN_MISBEHAVE: \"nap\" is unknown; known are not-json missing-key "
                                "wrong-type noise flood exit-5 complain slow stubborn killed\n";
    const std::vector<Row> rows{
        {"exit-5", 5, "", "Film command exited 5."},
        {"complain", 5, reason, reason},
        {"killed", 9, "", "Film command exited 9."},
        {"nap", 2, unknown, unknown},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.behaviour);
        const Variable misbehave("QUEXRUN_MISBEHAVE", row.behaviour);
        const FilmToolError error = errorOf(client.status());
        EXPECT_EQ(error, FilmToolError(FilmToolError::commandFailed{
                             {programPath("quexrun"), question, row.exitCode, "", row.errors}}));
        EXPECT_EQ(error.errorDescription(), row.description);
    }
}

TEST_F(QuexRun, IgnoresAnEmptyMisbehaviour) {
    const Variable misbehave("QUEXRUN_MISBEHAVE", "");
    EXPECT_EQ(client.status().get().models.size(), 4U);
}

} // namespace
} // namespace kinovane::test

// SPDX-License-Identifier: Apache-2.0

#include "tooling/film_tool/replies.hpp"

#include <filesystem>

#include <gtest/gtest.h>

#include "support/record_checks.hpp"
#include "support/recorder.hpp"
#include "support/task_failure.hpp"

namespace kinovane::test {

namespace {

TEST(FilmToolReply, ReadsEveryKeyIntoItsMember) {
    for (const RecordRow& record : replyRecords())
        checkDecoding(record);
}

TEST(FilmToolReply, RefusesMissingKeysAndWrongTypes) {
    for (const RecordRow& record : replyRecords())
        checkRefusals(record);
}

TEST(FilmToolReply, DiffersInEachMember) {
    for (const RecordRow& record : replyRecords())
        checkEquality(record);
}

TEST(FilmToolReply, WritesItsKeysInDeclaredOrder) {
    for (const RecordRow& record : replyRecords())
        checkEncoding(record);
}

TEST(FilmToolReply, NamesThePathOfAnErrorInAStatus) {
    struct Row {
        const char* sentence;
        std::string key;
        std::string value;
        std::string expected;
    };
    const std::vector<Row> rows{
        {"a list of shots", "shots", R"([{"id":"s1"}])", "shots: expected an integer, found a list"},
        {"a list of jobs", "jobs", "[]", "jobs: expected an integer, found a list"},
        {"a list of artifacts", "artifacts", "[]", "artifacts: expected an integer, found a list"},
        {"a question that is null", "openQuestions", R"(["who?",null])",
         "openQuestions[1]: expected a string, found null"},
        {"an approval without a status", "approvals", R"({"plan":{"status":"open"},"treatment":{}})",
         "approvals.treatment.status is missing"},
        {"an approval that is a string", "approvals", R"({"plan":"approved"})",
         "approvals.plan: expected an object, found a string"},
        {"an approval that is null", "approvals", R"({"plan":null})",
         "approvals.plan: expected an object, found null"},
        {"an approver that is a number", "approvals", R"({"plan":{"status":"s","approvedBy":7}})",
         "approvals.plan.approvedBy: expected a string, found a number"},
        {"a count with a fraction", "taskCounts", R"({"done":3,"queued":0.5})",
         "taskCounts.queued: expected an integer, found 0.5"},
        {"a count that is null", "taskCounts", R"({"done":null})",
         "taskCounts.done: expected an integer, found null"},
        {"a count beyond 64 bits", "artifacts", "9223372036854775808",
         "artifacts: expected an integer that fits 64 bits, found 9223372036854775808"},
        {"a request without a note", "reviewRequests",
         R"([{"shotId":"s1","status":"open","recordedAt":"now"}])", "reviewRequests[0].note is missing"},
        {"a request with a take that is a string", "reviewRequests",
         R"([{"shotId":"s","note":"n","status":"s","recordedAt":"r","archivedTake":"2"}])",
         "reviewRequests[0].archivedTake: expected an integer, found a string"},
        {"an issue whose blocking is null", "issues", R"([{"code":"c","message":"m","blocking":null}])",
         "issues[0].blocking: expected true or false, found null"},
        {"a second issue without a code", "issues",
         R"([{"code":"c","message":"m","blocking":true},{"message":"m","blocking":true}])",
         "issues[1].code is missing"},
        {"an empty proof", "proof", "{}", "proof.creation is missing"},
        {"a proof with a number", "proof", R"({"creation":1})",
         "proof.creation: expected true or false, found a number"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        EXPECT_EQ(refusalOf<FilmStatusResponse>(statusRow().documentWith(row.key, row.value)), row.expected);
    }
}

TEST(FilmToolReply, NamesThePathOfAnErrorInALaunchSpec) {
    struct Row {
        const char* sentence;
        std::string key;
        std::string value;
        std::string expected;
    };
    const std::vector<Row> rows{
        {"a command that is a string", "command", R"("pi --run")",
         "command: expected a list, found a string"},
        {"a number in the command", "command", R"(["pi",7])",
         "command[1]: expected a string, found a number"},
        {"a variable that is a number", "environment", R"({"A":"a","B":1})",
         "environment.B: expected a string, found a number"},
        {"a variable that is null", "environment", R"({"A":null})",
         "environment.A: expected a string, found null"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        EXPECT_EQ(refusalOf<PiAgentLaunchSpec>(launchSpecRow().documentWith(row.key, row.value)),
                  row.expected);
    }
}

TEST(FilmToolReply, MayHoldEmptyListsAndMaps) {
    const auto status = decodeJSON<FilmStatusResponse>(statusRow().documentWith("taskCounts", "{}"));
    EXPECT_TRUE(status.taskCounts.empty());
    EXPECT_TRUE(
        decodeJSON<FilmStatusResponse>(statusRow().documentWith("approvals", "{}")).approvals.empty());
    EXPECT_TRUE(decodeJSON<FilmStatusResponse>(statusRow().documentWith("openQuestions", "[]"))
                    .openQuestions.empty());
    EXPECT_TRUE(
        decodeJSON<PiAgentLaunchSpec>(launchSpecRow().documentWith("environment", "{}")).environment.empty());
}

TEST(FilmToolReply, MayHoldAnyKeyAndContractVersion) {
    const auto status = decodeJSON<FilmStatusResponse>(
        statusRow().documentWith("taskCounts", R"({"":1,"résumé":2,"in a queue":3})"));
    EXPECT_EQ(status.taskCounts,
              (std::map<std::string, std::int64_t>{{"", 1}, {"résumé", 2}, {"in a queue", 3}}));
    const auto other = decodeJSON<FilmVistrelExportReceipt>(
        exportReceiptRow().documentWith("contractVersion", R"("anything at all")"));
    EXPECT_EQ(other.contractVersion, "anything at all");
}

TEST(FilmToolReply, MayReportARefusedExport) {
    const Recorder recorder(exportReceiptRow().documentWithout("runId"));
    FilmVistrelExportReceipt expected = fullExportReceipt();
    expected.runId.reset();
    ASSERT_FALSE(expected.ok);
    EXPECT_EQ(FilmToolClient(Recorder::path()).exportVistrel("/films/run.json").get(), expected);
}

TEST(FilmToolReply, MayHaveWhiteSpaceOrAByteOrderMarkAroundIt) {
    const FilmToolClient client(Recorder::path());
    {
        const Recorder recorder("\r\n\t " + statusRow().fullDocument() + "\n\n");
        EXPECT_EQ(client.status("/films/run.json").get(), fullStatus());
    }
    {
        const Recorder recorder("\xEF\xBB\xBF" + exportReceiptRow().fullDocument());
        EXPECT_EQ(client.exportVistrel("/films/run.json").get(), fullExportReceipt());
    }
    {
        const Recorder recorder(launchSpecRow().fullDocument());
        EXPECT_EQ(client.agentLaunchSpec("/films/run.json", "pi").get(), fullLaunchSpec());
    }
}

std::string planned(const std::string& reply) {
    const Recorder recorder(reply);
    return FilmToolClient(Recorder::path()).plan("idea", "title", 90, "/films").get().string();
}

TEST(FilmToolReply, HoldsTheRunManifestOfAPlan) {
    const auto here = [](const char* path) { return (std::filesystem::current_path() / path).string(); };
    struct Row {
        const char* sentence;
        std::string reply;
        std::string expected;
    };
    const std::vector<Row> rows{
        {"only the run manifest", R"({"status":{"runManifest":"/films/a/run.json"}})", "/films/a/run.json"},
        {"among other keys", planReply("/films/a/run.json"), "/films/a/run.json"},
        {"a whole status", R"({"status":)" + statusRow().documentWith("runManifest", R"("/r.json")") + "}",
         "/r.json"},
        {"with spaces and punctuation", planReply("/my films/100%20 #1?/Brèmes – 灯.json"),
         "/my films/100%20 #1?/Brèmes – 灯.json"},
        {"a relative path", planReply("a lamp/run.json"), here("a lamp/run.json")},
        {"a relative path with a dot", planReply("./a lamp/run.json"), here("a lamp/run.json")},
        {"a tilde is not expanded", planReply("~/run.json"), here("~/run.json")},
        {"an escaped slash", planReply(R"(\/films\/run.json)"), "/films/run.json"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        EXPECT_EQ(planned(row.reply), row.expected);
    }
}

TEST(FilmToolReply, IsRefusedWithoutTheRunManifestOfAPlan) {
    struct Row {
        const char* sentence;
        std::string reply;
        std::string expected;
    };
    const std::vector<Row> rows{
        {"no status", R"({"runManifest":"/films/run.json"})", "status is missing"},
        {"a status that is null", R"({"status":null})", "status: expected an object, found null"},
        {"a status that is a string", R"({"status":"planned"})",
         "status: expected an object, found a string"},
        {"no run manifest", R"({"status":{"phase":"plan"}})", "status.runManifest is missing"},
        {"a run manifest that is null", R"({"status":{"runManifest":null}})",
         "status.runManifest: expected a string, found null"},
        {"a run manifest that is a list", R"({"status":{"runManifest":["/films/run.json"]}})",
         "status.runManifest: expected a string, found a list"},
        {"an empty run manifest", planReply(""), "status.runManifest is empty"},
        {"a list", "[]", "expected an object, found a list"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        const Recorder recorder(row.reply);
        EXPECT_EQ(errorOf(FilmToolClient(Recorder::path()).plan("idea", "title", 90, "/films")),
                  FilmToolError(FilmToolError::invalidJSON{row.expected}));
    }
}

} // namespace

} // namespace kinovane::test

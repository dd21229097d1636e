// SPDX-License-Identifier: Apache-2.0

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tools/command_line_tool.hpp"

namespace kinovane::test {

namespace {

constexpr double tooLong = 9.3e15; // Seconds; in milliseconds more than 64 bits.

/// A workspace that cannot be published, and the findings about its documents, one in each line.
struct Row {
    std::string sentence;
    std::function<void(WorkspaceMaker&)> damage;
    std::vector<std::string> findings;
    bool json = false;
};

void recordTwice(WorkspaceMaker& workspace) {
    workspace.add("poster", "poster.png", "a poster");
    workspace.add("score", "poster.png", "a poster");
}

const std::vector<Row>& rows() {
    static const std::string twice = "The project records this file twice: poster.png";
    static const std::string duration =
        "The duration of the shot \"s1\" does not fit 64 bits of milliseconds.";
    static const std::vector<Row> all{
        {"a path recorded twice", recordTwice, {twice}},
        {"the same, as JSON", recordTwice, {twice}, true},
        {"a duration out of range",
         [](auto& workspace) { workspace.snapshot.productionPlan->shots[0].durationSeconds = tooLong; },
         {duration}},
        {"a planned duration out of range",
         [](auto& workspace) { workspace.snapshot.productionPlan->plannedDurationSeconds = -tooLong; },
         {"The film's planned duration does not fit 64 bits of milliseconds."}},
        {"a timeline out of range",
         [](auto& workspace) {
             workspace.snapshot.productionPlan->shots = {shotOf("s1", 9e15), shotOf("s2", 9e15)};
         },
         {"With the shot \"s2\" the film does not fit 64 bits of milliseconds."}},
        {"a digest that no file can have",
         [](auto& workspace) { workspace.add("poster", "poster.png", "").sha256 = "sha256:0"; },
         {"The recorded digest is not \"sha256:\" and 64 lowercase digits: poster.png"}},
        {"several findings",
         [](auto& workspace) {
             recordTwice(workspace);
             workspace.list("score", "../score.m4a");
             workspace.snapshot.productionPlan->shots[0].durationSeconds = tooLong;
         },
         {twice, duration, "The path does not lead to a file in the film's folder: ../score.m4a"}},
        {"control characters in a path",
         [](auto& workspace) {
             workspace.list("score", "../a\x1b[31m\nb");
             workspace.list("score", "../c");
         },
         {"The path does not lead to a file in the film's folder: ../a [31m b",
          "The path does not lead to a file in the film's folder: ../c"}},
    };
    return all;
}

TEST(PublishPreflight, ListsWhatPreventsTheHandoff) {
    for (const Row& row : rows()) {
        SCOPED_TRACE(row.sentence);
        WorkspaceMaker workspace;
        row.damage(workspace);
        writeDocuments(workspace);
        std::vector<std::string> arguments{"publish", workspace.snapshot.runManifest.string(), "--vistrel",
                                           programPath("vistrel")};
        if (row.json)
            arguments.emplace_back("--json");
        std::string errors;
        for (const std::string& finding : row.findings)
            errors += "kinovane: " + finding + "\n";
        EXPECT_EQ(runCommandLineTool(arguments), (Outcome{4, row.json ? "" : "Loaded    t\n", errors}));
        EXPECT_FALSE(std::filesystem::exists(workspace.directory / "vistrel-handoff.json"));
    }
}

// The other commands show such a workspace like any other.
TEST(PublishPreflight, IsNotNeededToInspectOrVerify) {
    for (const Row& row : rows()) {
        SCOPED_TRACE(row.sentence);
        WorkspaceMaker workspace;
        row.damage(workspace);
        writeDocuments(workspace);
        for (const char* command : {"inspect", "verify"}) {
            const Outcome outcome = runCommandLineTool({command, workspace.snapshot.runManifest.string()});
            EXPECT_EQ(outcome.err, "") << command;
            EXPECT_NE(outcome.out, "") << command;
        }
    }
}

} // namespace

} // namespace kinovane::test

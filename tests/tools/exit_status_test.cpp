// SPDX-License-Identifier: Apache-2.0

#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/temporary_directory.hpp"
#include "tools/command_line_tool.hpp"

namespace kinovane::test {

namespace {

namespace fs = std::filesystem;
using Arguments = std::vector<std::string>;

TEST(ExitStatus, Is2ForInvalidArguments) {
    struct Row {
        std::string sentence;
        Arguments arguments;
        std::string message, help;
    };
    const std::vector<Row> rows{
        {"no command", {}, "A command is needed: inspect, verify, publish or doctor", "kinovane --help"},
        {"an unknown command",
         {"import"},
         "A command is needed: inspect, verify, publish or doctor",
         "kinovane --help"},
        {"no workspace", {"inspect"}, "RUN_JSON is required", "kinovane inspect --help"},
        {"two workspaces",
         {"inspect", "a", "b"},
         "The following argument was not expected: b",
         "kinovane inspect --help"},
        {"an unknown option",
         {"inspect", "a", "--frob"},
         "The following argument was not expected: --frob",
         "kinovane inspect --help"},
        {"no program", {"publish", "a"}, "--vistrel is required", "kinovane publish --help"},
        {"an option without its value",
         {"publish", "a", "--vistrel"},
         "--vistrel: 1 required PROGRAM missing",
         "kinovane publish --help"},
        {"no workers",
         {"publish", "a", "--vistrel", "v", "--workers", "0"},
         "--workers: \"0\" is not a whole number from 1 to 256",
         "kinovane publish --help"},
        {"fewer than no workers",
         {"publish", "a", "--vistrel", "v", "--workers=-1"},
         "--workers: \"-1\" is not a whole number from 1 to 256",
         "kinovane publish --help"},
        {"too many workers",
         {"publish", "a", "--vistrel", "v", "--workers", "257"},
         "--workers: \"257\" is not a whole number from 1 to 256",
         "kinovane publish --help"},
        {"workers in words",
         {"publish", "a", "--vistrel", "v", "--workers", "two"},
         "--workers: \"two\" is not a whole number from 1 to 256",
         "kinovane publish --help"},
        {"nothing to verify", {"verify"}, "RUN_JSON is required", "kinovane verify --help"},
        {"no workers to verify",
         {"verify", "a", "--workers", "0"},
         "--workers: \"0\" is not a whole number from 1 to 256",
         "kinovane verify --help"},
        {"an option of another command",
         {"verify", "a", "--dry-run"},
         "The following argument was not expected: --dry-run",
         "kinovane verify --help"},
        {"a workspace for the doctor",
         {"doctor", "a"},
         "The following argument was not expected: a",
         "kinovane doctor --help"},
        {"a program without its name",
         {"doctor", "--pi"},
         "--pi: 1 required PROGRAM missing",
         "kinovane doctor --help"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(runCommandLineTool(row.arguments),
                  (Outcome{2, "", "kinovane: " + row.message + "\nFor help: " + row.help + "\n"}))
            << row.sentence;
}

TEST(ExitStatus, Is0ForHelpAndVersion) {
    struct Row {
        Arguments arguments;
        std::string prefix;
    };
    const std::vector<Row> rows{
        {{"--version"}, "kinovane 1.0\n"},
        {{"--help"},
         "Looks into the workspace of a film, verifies its files, publishes the film to Vistrel, and shows "
         "whether the programs for it are there.\n"},
        {{"inspect", "--help"}, "Show what there is to know about a film's workspace\n"},
        {{"verify", "--help"}, "Examine every file that is handed over, and show all that are damaged\n"},
        {{"publish", "-h"}, "Verify a film's files, write its handoff manifest and import it into Vistrel\n"},
        {{"doctor", "--help"},
         "Show which external programs and models are there, and what to do about those that are not\n"},
    };
    for (const Row& row : rows) {
        const Outcome outcome = runCommandLineTool(row.arguments);
        EXPECT_EQ(outcome.status, 0);
        EXPECT_EQ(outcome.err, "");
        EXPECT_EQ(outcome.out.substr(0, row.prefix.size()), row.prefix);
    }
}

TEST(ExitStatus, Is4ForAPathThatIsNotUTF8) {
    const TemporaryDirectory directory;
    const fs::path run = directory.write("caf\xe9/run.json", "");
    directory.write("caf\xe9/film-project.json", smallestProject());
    EXPECT_EQ(runCommandLineTool({"inspect", run.string(), "--json"}),
              (Outcome{4, "", "kinovane: A path in the result is not UTF-8, and JSON cannot carry it.\n"}));
    EXPECT_EQ(runCommandLineTool({"inspect", run.string()}).status, 0);
}

} // namespace

} // namespace kinovane::test

// SPDX-License-Identifier: Apache-2.0

#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "arguments/command_line.hpp"
#include "terminal/display_width.hpp"
#include "terminal/style.hpp"

namespace kinovane::tool {

namespace {

const std::vector<std::string> commands{
    "status",  "inspect", "shots",    "artifacts", "open",    "storyboard", "verify",
    "publish", "copy",    "timeline", "plan",      "approve", "advance",    "review",
    "reroll",  "recover", "export",   "doctor",    "help",    "completion", "manual"};

std::string noticeOf(std::vector<const char*> arguments, std::size_t columns = 100) {
    CommonOptions options;
    arguments.insert(arguments.begin(), "kinovane");
    const Command command =
        parseCommandLine(static_cast<int>(arguments.size()), arguments.data(), options, columns);
    return rendered(std::get<Notice>(command).text, false);
}

TEST(Help, OfACommandIsWhatHelpShows) {
    for (const std::string& command : commands) {
        const std::string help = noticeOf({"help", command.c_str()});
        EXPECT_EQ(help, noticeOf({command.c_str(), "--help"})) << command;
        EXPECT_NE(help.find("Usage: kinovane " + command + " [OPTIONS]"), std::string::npos) << help;
    }
}

TEST(Help, NamesEveryCommand) {
    const std::string help = noticeOf({"--help"});
    for (const std::string& command : commands)
        EXPECT_NE(help.find("\n  " + command + " "), std::string::npos) << command;
    EXPECT_EQ(help, noticeOf({"help"}));
}

TEST(Help, FitsTheTerminal) {
    for (const std::size_t columns : {40U, 60U, 80U, 100U})
        for (const std::string& command : commands) {
            // The examples at the end are not wrapped, so that they can be copied.
            std::string help = noticeOf({"help", command.c_str()}, columns);
            help.erase(std::min(help.find("\nExample"), help.size()));
            help.erase(std::min(help.find("\nThe film tool's output"), help.size()));
            for (std::size_t begin = 0; begin < help.size();) {
                const std::size_t end = std::min(help.find('\n', begin), help.size());
                const std::string line = help.substr(begin, end - begin);
                if (!line.starts_with("Usage: "))
                    EXPECT_LE(displayWidth(line), columns) << command << ": " << line;
                begin = end + 1;
            }
        }
}

TEST(Help, ShowsArgumentsAndOptions) {
    EXPECT_EQ(noticeOf({"help", "copy"}), R"(Copy a film to another disk, and verify the copy.

Usage: kinovane copy [OPTIONS] FILM TARGET

Arguments:
  FILM                        The film's folder, or the run.json in it
  TARGET                      The folder of the copy

Options of all commands:
  -h, --help                  Show this help
  --version                   Show the version
  --json                      Print JSON instead of text, errors included
  -q, --quiet                 Print no steps and no progress
  -v, --verbose               Print digests, and each file that is examined
  --color WHEN                Use color: auto, always or never (default: auto)
  --progress HOW              Show progress: auto, json (one object a line on standard error) or
                              none

Example:
  kinovane copy my-film /media/archive/my-film

A copy that was interrupted is continued by the same command. A file of the target that
differs from the film is reported and never replaced.
)");
}

TEST(CommonOptions, StandBeforeOrAfterTheCommand) {
    struct Row {
        std::string sentence;
        std::vector<const char*> arguments;
    };
    const std::vector<Row> rows{
        {"before", {"kinovane", "--json", "-q", "--color=never", "--progress", "json", "shots", "a"}},
        {"after", {"kinovane", "shots", "a", "--json", "-q", "--color=never", "--progress", "json"}},
        {"before and after",
         {"kinovane", "--json", "-q", "shots", "--color", "never", "a", "--progress=json"}},
    };
    for (const Row& row : rows) {
        CommonOptions options;
        const Command command =
            parseCommandLine(static_cast<int>(row.arguments.size()), row.arguments.data(), options, 100);
        EXPECT_EQ(std::get<ShotsRequest>(command).film, "a") << row.sentence;
        EXPECT_TRUE(options.json && options.quiet && !options.verbose) << row.sentence;
        EXPECT_EQ(options.color, ColorMode::never) << row.sentence;
        EXPECT_EQ(options.progress, ProgressMode::json) << row.sentence;
    }
}

TEST(Arguments, HaveTheCurrentFolderAsDefaultWorkspace) {
    CommonOptions options;
    const auto parsed = [&](const char* name) {
        const std::vector<const char*> arguments{"kinovane", name};
        return parseCommandLine(2, arguments.data(), options, 100);
    };
    const std::vector<std::filesystem::path> here{"."};
    EXPECT_EQ(std::get<VerifyRequest>(parsed("verify")).films, here);
    EXPECT_EQ(std::get<InspectRequest>(parsed("inspect")).films, here);
    EXPECT_EQ(std::get<PublishRequest>(parsed("publish")).film, ".");
    EXPECT_EQ(std::get<PublishRequest>(parsed("publish")).vistrel, "vistrel");
    EXPECT_EQ(std::get<StatusRequest>(parsed("status")).film, ".");
    EXPECT_EQ(std::get<AdvanceRequest>(parsed("advance")).film, ".");
}

} // namespace

} // namespace kinovane::tool

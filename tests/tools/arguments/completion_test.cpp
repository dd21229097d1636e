// SPDX-License-Identifier: Apache-2.0

#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <kinovane/tooling.hpp>

#include "tools/command_line_tool.hpp"

namespace kinovane::test {

namespace {

/// What bash offers after these words, of which the last is incomplete.
std::string offered(const std::vector<std::string>& words) {
    std::ostringstream script;
    script << "eval \"$1\"; shift; COMP_WORDS=(\"$@\"); COMP_CWORD=$(($# - 1)); _kinovane; "
              "printf '%s ' \"${COMPREPLY[@]}\"";
    std::vector<std::string> arguments{"-c", script.str(), "bash",
                                       runCommandLineTool({"completion", "bash"}).out};
    arguments.insert(arguments.end(), words.begin(), words.end());
    return FilmToolClient("bash").run(arguments).get().stdout;
}

TEST(Completion, OffersCommandsAndOptionsInBash) {
    struct Row {
        std::string sentence;
        std::vector<std::string> words;
        std::string expected;
    };
    const std::vector<Row> rows{
        {"commands that begin so", {"kinovane", "re"}, "review reroll recover "},
        {"options of a command", {"kinovane", "verify", "--w"}, "--workers --write-checksums "},
        {"options of all commands after a command", {"kinovane", "shots", "--js"}, "--json "},
        {"options before a command", {"kinovane", "--ver"}, "--version --verbose "},
        {"a command after an option", {"kinovane", "--json", "pub"}, "publish "},
        {"the values of an option", {"kinovane", "verify", "--color", "a"}, "auto always "},
        {"the names of shells", {"kinovane", "completion", ""}, "bash zsh fish "},
        {"commands after help", {"kinovane", "help", "do"}, "doctor "},
        {"nothing for a folder", {"kinovane", "verify", "my-f"}, " "},
    };
    for (const Row& row : rows)
        EXPECT_EQ(offered(row.words), row.expected) << row.sentence;
}

TEST(Completion, IsMadeForThreeShells) {
    for (const std::string shell : {"bash", "zsh", "fish"}) {
        const Outcome outcome = runCommandLineTool({"completion", shell});
        EXPECT_EQ(outcome.status, 0);
        EXPECT_NE(outcome.out.find("made by \"kinovane completion " + shell + "\""), std::string::npos);
    }
    EXPECT_EQ(runCommandLineTool({"completion", "tcsh"}),
              (Outcome{2, "",
                       "kinovane: SHELL: \"tcsh\" is not one of bash, fish, zsh\n"
                       "For help: kinovane completion --help\n"}));
}

} // namespace

} // namespace kinovane::test

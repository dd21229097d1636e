// SPDX-License-Identifier: Apache-2.0

#include <string>

#include <gtest/gtest.h>

#include "tools/command_line_tool.hpp"

namespace kinovane::test {

namespace {

TEST(ManualPage, DescribesACommand) {
    const Outcome page = runCommandLineTool({"manual", "open"});
    EXPECT_EQ(page.status, 0);
    const std::string expected = R"( 1 "" "kinovane 1.0"
.SH NAME
kinovane\-open \- Open a shot's clip, the poster or the best cut
.SH SYNOPSIS
\fBkinovane open\fR [\fIOPTIONS\fR] [\fIWHAT\fR] [\fIFILM\fR]
.SH ARGUMENTS
.TP
\fBWHAT\fR
The id of a shot, or "poster" (default: the best cut)
.TP
\fBFILM\fR
The film's folder, or the run.json in it (default: the current folder)
.SH OPTIONS
.TP
\fB\-\-print\fR
Print the path, and open nothing
.SH OPTIONS OF ALL COMMANDS
)";
    ASSERT_TRUE(page.out.starts_with(".TH KINOVANE\\-OPEN")) << page.out;
    EXPECT_EQ(page.out.substr(std::string(".TH KINOVANE\\-OPEN").size(), expected.size()), expected);
}

TEST(ManualPage, OfTheToolNamesThePagesOfTheCommands) {
    const Outcome page = runCommandLineTool({"manual"});
    EXPECT_EQ(page.status, 0);
    EXPECT_NE(page.out.find(".BR kinovane\\-verify (1),\n.BR kinovane\\-publish (1)"), std::string::npos)
        << page.out;
    EXPECT_NE(page.out.find("130  interrupted by Ctrl\\-C\n"), std::string::npos);
}

TEST(ManualPage, IsRefusedForAnUnknownCommand) {
    EXPECT_EQ(runCommandLineTool({"manual", "import"}),
              (Outcome{2, "", "kinovane: \"import\" is not a command\nFor help: kinovane --help\n"}));
}

} // namespace

} // namespace kinovane::test

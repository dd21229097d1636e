// SPDX-License-Identifier: Apache-2.0

#include <algorithm>
#include <cerrno>
#include <string>
#include <system_error>
#include <vector>

#include <fcntl.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/files/descriptor.hpp"
#include "tools/command_line_tool.hpp"

namespace kinovane::test {

namespace {

/// What a terminal showed at the end, and every line that was drawn before.
struct Screen {
    int status = 0;
    std::vector<std::string> drawn; ///< Each text between two carriage returns, without trailing blanks.
    std::vector<std::string> lines; ///< The lines at the end, without trailing blanks.
};

std::string withoutTrailingBlanks(std::string text) {
    text.erase(text.find_last_not_of(' ') + 1);
    return text;
}

std::string readAll(int terminal) {
    std::string text;
    std::vector<char> buffer(4096);
    // Reading fails when no process has the terminal open.
    for (ssize_t count = 0; (count = ::read(terminal, buffer.data(), buffer.size())) > 0;)
        text.append(buffer.data(), static_cast<std::size_t>(count));
    return text;
}

void draw(Screen& screen, const std::string& text) {
    std::string stroke;
    std::size_t column = 0;
    screen.lines.emplace_back();
    for (const char character : text) {
        if (character == '\r' || character == '\n') {
            if (!withoutTrailingBlanks(stroke).empty())
                screen.drawn.push_back(withoutTrailingBlanks(stroke));
            stroke.clear();
            column = 0;
            if (character == '\n')
                screen.lines.emplace_back();
            continue;
        }
        std::string& line = screen.lines.back();
        line.resize(std::max(line.size(), column + 1), ' ');
        line[column++] = character;
        stroke += character;
    }
    for (std::string& line : screen.lines)
        line = withoutTrailingBlanks(line);
}

/// Runs the command-line tool with a terminal of this width as its standard error.
Screen runOnTerminal(const std::vector<std::string>& arguments, unsigned short columns) {
    int ends[2]{}; // NOLINT(*-avoid-c-arrays)
    winsize size{};
    size.ws_row = 24;
    size.ws_col = columns;
    if (::openpty(&ends[0], &ends[1], nullptr, nullptr, &size) != 0)
        throw std::system_error(errno, std::generic_category(), "openpty");
    const Descriptor terminal(ends[0]);
    const Descriptor null(::open("/dev/null", O_WRONLY | O_CLOEXEC));
    ::fcntl(ends[0], F_SETFD, FD_CLOEXEC);
    pid_t child = 0;
    {
        const Descriptor childEnd(ends[1]);
        ::fcntl(ends[1], F_SETFD, FD_CLOEXEC);
        child = startCommandLineTool(arguments, null.get(), childEnd.get());
    }
    Screen screen;
    const std::string text = readAll(terminal.get());
    screen.status = exitStatusOf(child);
    draw(screen, text);
    return screen;
}

using Arguments = std::vector<std::string>;

Arguments publishing(const WorkspaceMaker& workspace, const Arguments& more = {}) {
    Arguments arguments{"publish", workspace.snapshot.runManifest.string(), "--vistrel",
                        programPath("vistrel"), "--dry-run"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return arguments;
}

Arguments verifying(const WorkspaceMaker& workspace, const Arguments& more = {}) {
    Arguments arguments{"verify", workspace.snapshot.runManifest.string()};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return arguments;
}

void fill(WorkspaceMaker& workspace) {
    workspace.add("shot-clip", "clips/s1.mp4", std::string(1500, 'x'));
    workspace.add("poster", "poster.png", std::string(500, 'x'));
}

const std::vector<std::string> nothing{""};

/// The rate depends on the machine.
const std::string rateAndNothingLeft = ", [0-9.]+ [kMGTPE]?B/s, 0:00 left";

TEST(VerificationLine, IsErasedAfterTheLastFile) {
    WorkspaceMaker workspace;
    fill(workspace);
    writeDocuments(workspace);
    for (const Arguments& arguments : {publishing(workspace), verifying(workspace)}) {
        SCOPED_TRACE(arguments.front());
        const Screen screen = runOnTerminal(arguments, 80);
        EXPECT_EQ(screen.status, 0);
        ASSERT_GE(screen.drawn.size(), 2U);
        EXPECT_EQ(screen.drawn.front(), "[----------]   0%  0 of 2 files, 0 B of 2.0 kB");
        EXPECT_THAT(screen.drawn.back(),
                    testing::MatchesRegex("\\[##########\\] 100%  2 of 2 files, 2.0 kB of 2.0 kB" +
                                          rateAndNothingLeft));
        EXPECT_EQ(screen.lines, nothing);
    }
}

TEST(VerificationLine, NeverReachesTheLastColumn) {
    WorkspaceMaker workspace;
    fill(workspace);
    writeDocuments(workspace);
    for (const Arguments& arguments : {publishing(workspace), verifying(workspace)}) {
        SCOPED_TRACE(arguments.front());
        const Screen screen = runOnTerminal(arguments, 20);
        EXPECT_EQ(screen.status, 0);
        ASSERT_FALSE(screen.drawn.empty());
        EXPECT_EQ(screen.drawn.front(), "  0%  0 of 2 files");
        EXPECT_EQ(screen.drawn.back(), "100%  2 of 2 files");
        EXPECT_EQ(screen.lines, nothing);
    }
}

TEST(VerificationLine, IsErasedBeforeAMessage) {
    WorkspaceMaker workspace;
    fill(workspace);
    workspace.list("score", "lost.m4a");
    writeDocuments(workspace);
    const Screen screen = runOnTerminal(publishing(workspace, {"--workers", "1"}), 80);
    EXPECT_EQ(screen.status, 4);
    ASSERT_FALSE(screen.drawn.empty());
    EXPECT_EQ(screen.drawn.front(), "[----------]   0%  0 of 3 files, 0 B of 2.0 kB");
    EXPECT_EQ(screen.lines, (Arguments{"kinovane: The handoff artifact is missing: lost.m4a", ""}));
}

TEST(VerificationLine, ContinuesAfterADamagedFile) {
    WorkspaceMaker workspace;
    workspace.list("score", "lost.m4a");
    fill(workspace);
    writeDocuments(workspace);
    const Screen screen = runOnTerminal(verifying(workspace, {"--workers", "1"}), 80);
    EXPECT_EQ(screen.status, 4);
    ASSERT_FALSE(screen.drawn.empty());
    EXPECT_THAT(
        screen.drawn.back(),
        testing::MatchesRegex("\\[##########\\] 100%  3 of 3 files, 2.0 kB of 2.0 kB" + rateAndNothingLeft));
    EXPECT_EQ(screen.lines, nothing);
}

TEST(VerificationLine, IsNotDrawnForJSONOutput) {
    WorkspaceMaker workspace;
    fill(workspace);
    writeDocuments(workspace);
    for (const Arguments& arguments : {publishing(workspace, {"--json"}), verifying(workspace, {"--json"})}) {
        SCOPED_TRACE(arguments.front());
        const Screen screen = runOnTerminal(arguments, 80);
        EXPECT_EQ(screen.status, 0);
        EXPECT_EQ(screen.drawn, Arguments{});
        EXPECT_EQ(screen.lines, nothing);
    }
}

} // namespace

} // namespace kinovane::test

// SPDX-License-Identifier: Apache-2.0

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
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
#include "support/forked_process.hpp"
#include "support/variable.hpp"
#include "tools/command_line_tool.hpp"

namespace kinovane::test {

namespace {

using Arguments = std::vector<std::string>;

const std::string eraseToEnd = "\x1b[J";

std::string readAll(int terminal) {
    std::string text;
    std::vector<char> buffer(4096);
    // Reading fails when no process has the terminal open.
    for (ssize_t count = 0; (count = ::read(terminal, buffer.data(), buffer.size())) > 0;)
        text.append(buffer.data(), static_cast<std::size_t>(count));
    return text;
}

/// Everything that the tool writes to a terminal of this width, which is its controlling terminal and both
/// its standard output and its standard error.
std::string outputOnTerminal(const Arguments& arguments, unsigned short columns, bool isForeground = true) {
    return inForkedProcess([&] {
        std::signal(SIGHUP, SIG_IGN); // Closing the terminal at the end would end this process.
        ::setsid();
        int ends[2]{}; // NOLINT(*-avoid-c-arrays)
        winsize size{};
        size.ws_row = 24;
        size.ws_col = columns;
        if (::openpty(&ends[0], &ends[1], nullptr, nullptr, &size) != 0)
            throw std::system_error(errno, std::generic_category(), "openpty");
        const Descriptor terminal(ends[0]);
        ::fcntl(ends[0], F_SETFD, FD_CLOEXEC);
        if (isForeground)
            ::ioctl(ends[1], TIOCSCTTY, 0);
        pid_t child = 0;
        {
            const Descriptor childEnd(ends[1]);
            ::fcntl(ends[1], F_SETFD, FD_CLOEXEC);
            child = startCommandLineTool(arguments, childEnd.get(), childEnd.get());
        }
        std::string text = readAll(terminal.get());
        exitStatusOf(child);
        return text;
    });
}

/// The texts of the progress line, in their order.
std::vector<std::string> drawnLines(const std::string& output) {
    std::vector<std::string> lines;
    std::size_t position = 0;
    for (std::size_t end = 0; (end = output.find(eraseToEnd, position)) != std::string::npos;
         position = end + eraseToEnd.size()) {
        const std::size_t begin = output.rfind('\r', end) + 1;
        if (begin < end)
            lines.push_back(output.substr(begin, end - begin));
    }
    return lines;
}

/// What remains on the terminal after the last erasure.
std::string remainder(const std::string& output) {
    return output.substr(output.rfind("\r" + eraseToEnd) + 1 + eraseToEnd.size());
}

class ProgressFilm : public WorkspaceMaker {
  public:
    ProgressFilm() {
        add("shot-clip", "clips/s1.mp4", std::string(1500, 'x'));
        add("poster", "poster.png", std::string(500, 'x'));
        writeDocuments(*this);
    }

    Arguments verifying(const Arguments& more = {}) const {
        Arguments arguments{"verify", snapshot.runManifest.string(), "--workers", "1", "--color", "never"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return arguments;
    }
};

TEST(VerifyProgress, IsErasedBeforeTheSummary) {
    const Variable term("TERM", "xterm");
    const ProgressFilm film;
    const std::string output = outputOnTerminal(film.verifying(), 99);
    const std::vector<std::string> lines = drawnLines(output);
    ASSERT_GE(lines.size(), 2U);
    EXPECT_EQ(lines.front(), "  0%  0 of 2 files, 0 B of 2.0 kB");
    EXPECT_EQ(lines.back(), "100%  2 of 2 files, 2.0 kB of 2.0 kB  poster.png");
    EXPECT_THAT(
        remainder(output),
        testing::MatchesRegex("All 2 files are sound: 2.0 kB in [0-9.]+ m?s, [0-9.]+ [kM]B/s.\r\n2 of 2 "
                              "recorded files examined.\r\n"));
}

TEST(VerifyProgress, LeavesTheCursorAtTheBeginningOfTheLine) {
    const Variable term("TERM", "xterm");
    const ProgressFilm film;
    const std::string output = outputOnTerminal(film.verifying(), 80);
    const std::string drawn = "\r  0%  0 of 2 files, 0 B of 2.0 kB" + eraseToEnd + "\r";
    EXPECT_EQ(output.substr(0, drawn.size()), drawn);
}

TEST(VerifyProgress, NeverReachesTheLastColumn) {
    const Variable term("TERM", "xterm");
    const ProgressFilm film;
    for (const unsigned short columns : {std::uint16_t{40}, std::uint16_t{20}, std::uint16_t{5}})
        for (const std::string& line : drawnLines(outputOnTerminal(film.verifying(), columns)))
            EXPECT_LT(line.size(), columns);
}

TEST(VerifyProgress, MakesRoomForADamagedFile) {
    const Variable term("TERM", "xterm");
    ProgressFilm film;
    film.list("score", "lost.m4a");
    writeDocuments(film);
    const std::string output = outputOnTerminal(film.verifying(), 80);
    EXPECT_THAT(output, testing::HasSubstr("\r" + eraseToEnd + "missing     lost.m4a\r\n"));
}

TEST(VerifyProgress, IsNotShown) {
    const ProgressFilm film;
    struct Row {
        std::string sentence;
        const char* term;
        Arguments options;
        bool isForeground;
    };
    const std::vector<Row> rows{
        {"on a dumb terminal", "dumb", {}, true},
        {"in the background", "xterm", {}, false},
        {"with JSON output", "xterm", {"--json"}, true},
        {"with quiet output", "xterm", {"--quiet"}, true},
        {"when it is not wanted", "xterm", {"--progress", "none"}, true},
    };
    for (const Row& row : rows) {
        const Variable term("TERM", row.term);
        const std::string output = outputOnTerminal(film.verifying(row.options), 99, row.isForeground);
        const bool isJSON = row.options == std::vector<std::string>{"--json"};
        EXPECT_EQ(std::ranges::count(output, '\n'), isJSON ? 1 : 2) << row.sentence;
        EXPECT_THAT(output, testing::Not(testing::HasSubstr("\x1b"))) << row.sentence;
    }
}

} // namespace

} // namespace kinovane::test

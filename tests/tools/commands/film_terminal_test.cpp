// SPDX-License-Identifier: Apache-2.0

#include <array>
#include <csignal>
#include <string>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#ifdef __APPLE__
#include <util.h>
#else
#include <pty.h>
#endif

#include <gtest/gtest.h>

#include "common/files/descriptor.hpp"
#include "support/sample_film.hpp"
#include "support/temporary_directory.hpp"
#include "tools/command_line_tool.hpp"

namespace kinovane::test {

namespace {

/// Both streams of a command-line tool that runs in a terminal of 50 columns.
class TerminalRun {
  public:
    TerminalRun(std::string folder, const std::string& release) {
        const std::string program = programPath("kinovane");
        const std::string film = programPath("film");
        int terminal = -1;
        winsize size{24, 50, 0, 0};
        child_ = ::forkpty(&terminal, nullptr, nullptr, &size);
        if (child_ < 0)
            throw std::system_error(errno, std::generic_category(), "forkpty");
        if (child_ == 0) {
            ::setenv("FILM_MISBEHAVE", "slow", 1);
            ::setenv("FILM_RELEASE", release.c_str(), 1);
            ::setenv("TERM", "xterm", 1);
            ::setenv("NO_COLOR", "1", 1);
            ::execl(program.c_str(), program.c_str(), "recover", folder.c_str(), "--film-tool", film.c_str(),
                    nullptr);
            ::_exit(127);
        }
        terminal_ = Descriptor(terminal);
    }

    void readUntil(const std::string& text) {
        while (output_.find(text) == std::string::npos && readMore())
            continue;
    }

    void write(char key) const { EXPECT_EQ(::write(terminal_.get(), &key, 1), 1); }

    Outcome finish() {
        while (readMore())
            continue;
        return {exitStatusOf(child_), replaced(output_, "\r\n", "\n"), ""};
    }

  private:
    bool readMore() {
        std::array<char, 1024> chunk{};
        const ssize_t count = ::read(terminal_.get(), chunk.data(), chunk.size());
        if (count > 0)
            output_.append(chunk.data(), static_cast<std::size_t>(count));
        return count > 0; // The end of the child is an error or the end of the file.
    }

    Descriptor terminal_;
    pid_t child_ = -1;
    std::string output_;
};

/// A film, and a pipe for which the film tool waits.
struct WaitingFilm {
    WaitingFilm() {
        EXPECT_EQ(runCommandLineTool({"plan", "i", "--title", "t", "--duration", "3", "--folder", folder,
                                      "--film-tool", programPath("film")})
                      .status,
                  0);
        EXPECT_EQ(::mkfifo(release.c_str(), 0600), 0);
    }

    std::string step() const { return "Recovering the film with " + programPath("film") + "\n"; }

    TemporaryDirectory directory;
    std::string folder = (directory / "film").string();
    std::string release = (directory / "release").string();
};

constexpr const char* firstLine = "\rfilm has been working for 1 s\x1b[J\r";

TEST(FilmTerminal, ShowsForHowLongTheToolHasBeenWorking) {
    const WaitingFilm film;
    TerminalRun run(film.folder, film.release);
    run.readUntil(firstLine);
    // The tool continues once the pipe is closed again.
    Descriptor(::open(film.release.c_str(), O_WRONLY | O_CLOEXEC));
    const Outcome outcome = run.finish();
    EXPECT_EQ(outcome.status, 0);
    EXPECT_TRUE(outcome.out.starts_with(film.step() + firstLine)) << outcome;
    EXPECT_NE(outcome.out.find("\x1b[J\r\r\x1b[JThere is nothing to recover.\nNothing changed.\n"),
              std::string::npos)
        << outcome;
}

TEST(FilmTerminal, StopsTheToolWithTheInterruptKey) {
    const WaitingFilm film;
    TerminalRun run(film.folder, film.release);
    run.readUntil(firstLine);
    run.write('\x03');
    const Outcome outcome = run.finish();
    EXPECT_EQ(outcome.status, 130);
    EXPECT_NE(outcome.out.find("\r\x1b[Jkinovane: Stopped.\nNothing changed.\n"), std::string::npos)
        << outcome;
}

} // namespace

} // namespace kinovane::test

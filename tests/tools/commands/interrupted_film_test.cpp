// SPDX-License-Identifier: Apache-2.0

#include <array>
#include <csignal>
#include <string>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "common/files/descriptor.hpp"
#include "support/pipe.hpp"
#include "support/sample_film.hpp"
#include "support/temporary_directory.hpp"
#include "support/variable.hpp"
#include "tools/command_line_tool.hpp"

namespace kinovane::test {

namespace {

/// Runs the command-line tool, and sends the signal once `text` has arrived on standard error.
Outcome interrupted(const std::vector<std::string>& arguments, int signal, const std::string& text) {
    const TemporaryDirectory directory;
    const std::string results = (directory / "out").string();
    const Descriptor out(::open(results.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
    Pipe errors;
    const pid_t child = startCommandLineTool(arguments, out.get(), errors.writeEnd.get());
    errors.writeEnd = Descriptor();

    Outcome outcome;
    bool sent = false;
    std::array<char, 4096> chunk{};
    for (ssize_t count = 0; (count = ::read(errors.readEnd.get(), chunk.data(), chunk.size())) > 0;) {
        outcome.err.append(chunk.data(), static_cast<std::size_t>(count));
        if (!sent && outcome.err.find(text) != std::string::npos) {
            ::kill(child, signal);
            sent = true;
        }
    }
    outcome.status = exitStatusOf(child);
    outcome.out = contentOf(results);
    return outcome;
}

/// A film in production.
struct Film {
    Film() {
        directory.write("film-project.json", smallestProject());
        directory.write("run.json", "");
    }

    TemporaryDirectory directory;
    std::string folder = directory.path().string();
    std::string tool = programPath("stubborn_film_tool");
};

TEST(InterruptedFilm, IsLeftAsTheToolLeftItWhenItWasStopped) {
    const Film film;
    const Outcome expected{
        130,
        "Nothing changed.\n"
        "\n"
        "The production can continue. If the film tool left a step unfinished, recover the film first.\n"
        "Next: kinovane advance " +
            film.folder + "\nOr: kinovane recover " + film.folder + "\n",
        "Continuing the production with " + film.tool +
            "\n\\x1b[31mworking\\x1b[m    now\nkinovane: Stopped.\n"};
    EXPECT_EQ(interrupted({"advance", film.folder, "--film-tool", film.tool}, SIGINT, "now"), expected);
    EXPECT_EQ(interrupted({"advance", film.folder, "--film-tool", film.tool}, SIGTERM, "now").status, 143);
}

TEST(InterruptedFilm, IsShownInJSON) {
    const Film film;
    const std::string started = (film.directory / "started").string();
    ASSERT_EQ(::mkfifo(started.c_str(), 0600), 0);
    const Variable variable("STUBBORN_STARTED", started);
    const std::string results = (film.directory / "out").string();
    const std::string messages = (film.directory / "err").string();
    const Descriptor out(::open(results.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
    const Descriptor err(::open(messages.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
    const pid_t child = startCommandLineTool({"advance", film.folder, "--film-tool", film.tool, "--json"},
                                             out.get(), err.get());
    Descriptor(::open(started.c_str(), O_RDONLY | O_CLOEXEC)); // Returns once the tool runs.
    ::kill(child, SIGINT);
    EXPECT_EQ(exitStatusOf(child), 130);
    EXPECT_EQ(
        contentOf(messages),
        "{\"version\":1,\"error\":{\"kind\":\"interrupted\",\"status\":130,\"message\":\"Stopped.\"}}\n");
    EXPECT_TRUE(
        contentOf(results).starts_with(R"({"version":1,"outcome":"stopped","changes":{"phase":null,)"))
        << contentOf(results);
}

TEST(InterruptedFilm, IsNotPlanned) {
    const Film film;
    const Outcome outcome = interrupted({"plan", "i", "--title", "t", "--duration", "3", "--folder",
                                         film.folder + "/new", "--film-tool", film.tool},
                                        SIGINT, film.tool);
    EXPECT_EQ(outcome, (Outcome{130, "", "Planning the film with " + film.tool + "\nkinovane: Stopped.\n"}));
}

TEST(InterruptedFilm, ToolReadsNothing) {
    const Film film;
    EXPECT_EQ(runCommandLineTool({"review", film.folder, "--film-tool", film.tool}).err,
              "Reviewing the film with " + film.tool + "\nread 0 bytes\n");
}

} // namespace

} // namespace kinovane::test

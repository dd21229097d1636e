// SPDX-License-Identifier: Apache-2.0

#include <csignal>
#include <filesystem>
#include <string>
#include <vector>

#include <boost/json.hpp>
#include <gtest/gtest.h>

#include "tools/film_copy.hpp"
#include "tools/tool_streams.hpp"

namespace kinovane::test {

namespace {

namespace fs = std::filesystem;
using Arguments = std::vector<std::string>;

/// A film with a missing file, followed by one that takes long to read.
class LongFilm : public WorkspaceMaker {
  public:
    LongFilm() {
        list("poster", "lost.png");
        constexpr std::int64_t sixteenGibibytes = std::int64_t{16} << 30U;
        add("shot-clip", "clips/long.mp4", "").bytes = sixteenGibibytes;
        fs::resize_file(directory / "clips/long.mp4", sixteenGibibytes);
        writeDocuments(*this);
    }

    RunningTool verify(const Arguments& options = {}) const {
        Arguments arguments{"verify", snapshot.root.string(), "--workers", "1", "--progress", "json"};
        arguments.insert(arguments.end(), options.begin(), options.end());
        return RunningTool(arguments);
    }
};

TEST(InterruptedVerify, TellsWhatItHasFound) {
    const LongFilm film;
    for (const int signal : {SIGINT, SIGTERM}) {
        RunningTool tool = film.verify();
        ASSERT_TRUE(tool.waitFor(R"("path":"clips/long.mp4")"));
        tool.send(signal);
        const Outcome outcome = tool.end();
        EXPECT_EQ(outcome.status, 128 + signal);
        EXPECT_EQ(outcome.out, "missing     lost.png\n"
                               "Interrupted: 1 of 2 files were examined, 1 is damaged.\n");
    }
}

TEST(InterruptedVerify, TellsWhatItHasFoundAsJSON) {
    const LongFilm film;
    RunningTool tool = film.verify({"--json"});
    ASSERT_TRUE(tool.waitFor(R"("path":"clips/long.mp4")"));
    tool.send(SIGINT);
    const Outcome outcome = tool.end();
    EXPECT_EQ(outcome.status, 130);
    const boost::json::value document = boost::json::parse(outcome.out);
    EXPECT_EQ(document.at("films").at(0).at("state"), "interrupted");
    EXPECT_EQ(document.at("films").at(0).at("chosen"), 2);
    EXPECT_EQ(document.at("films").at(0).at("damaged").as_array().size(), 1U);
}

TEST(InterruptedVerify, WritesNoList) {
    const LongFilm film;
    const TemporaryDirectory directory;
    RunningTool tool = film.verify({"--write-checksums", (directory / "list").string()});
    ASSERT_TRUE(tool.waitFor(R"("path":"clips/long.mp4")"));
    tool.send(SIGINT);
    EXPECT_EQ(tool.end().status, 130);
    EXPECT_EQ(namesIn(directory.path()), Arguments{});
}

TEST(Verify, EndsWhenNobodyReadsItsResults) {
    const FilmCopy film;
    film.remove("poster.png");
    Pipe out;
    out.readEnd = Descriptor();
    const TemporaryDirectory directory;
    const Descriptor err(::open((directory / "err").c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
    const pid_t process =
        startCommandLineTool({"verify", film.root().string()}, out.writeEnd.get(), err.get());
    EXPECT_EQ(exitStatusOf(process), 6);
    EXPECT_EQ(contentOf(directory / "err"), "kinovane: standard output: Broken pipe\n");
}

} // namespace

} // namespace kinovane::test

// SPDX-License-Identifier: Apache-2.0

#include <csignal>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include <fcntl.h>

#include <boost/json.hpp>
#include <gtest/gtest.h>

#include <kinovane/handoff.hpp>

#include "support/forked_process.hpp"
#include "support/limits.hpp"
#include "tools/commands/copy_case.hpp"
#include "tools/film_copy.hpp"
#include "tools/tool_streams.hpp"

namespace kinovane::test {

namespace {

namespace fs = std::filesystem;
using Arguments = std::vector<std::string>;

TEST(Copy, IsReportedAsJSON) {
    const Case test;
    test.film.change("clips/shot-02.mp4");
    const Outcome outcome = test.copy({"--json"});
    EXPECT_EQ(outcome.status, 4);
    EXPECT_EQ(outcome.err, "");
    const boost::json::object document = boost::json::parse(outcome.out).as_object();
    EXPECT_EQ(document.at("version"), 1);
    boost::json::object film = document.at("films").as_array().at(0).as_object();
    EXPECT_GT(film.at("seconds").as_double(), 0);
    film.erase("seconds");
    EXPECT_EQ(film, (boost::json::object{
                        {"film", test.film.root().string()},
                        {"title", "A Lamp for the Late Ferry"},
                        {"target", test.target().string()},
                        {"state", "incomplete"},
                        {"files", 67},
                        {"copied", 65},
                        {"present", 0},
                        {"bytes", film.at("bytes")},
                        {"problems",
                         boost::json::array{boost::json::object{
                             {"path", "clips/shot-02.mp4"},
                             {"state", "changed"},
                             {"reason", "its content is not what was recorded, so it was not copied"}}}}}));
}

TEST(Copy, IsRefusedInsideTheFilm) {
    const Case test;
    fs::create_directory_symlink(test.film.root(), test.directory / "link");
    struct RefusedRow {
        std::string sentence;
        fs::path target;
        std::string reason;
    };
    const std::string inside =
        ": the copy would lie in the film's own folder. Next: name a folder beside the film\n";
    const std::string around = ": the film lies in this folder. Next: name a folder beside the film\n";
    const std::vector<RefusedRow> rows{
        {"the film's folder", test.film.root(), inside},
        {"a folder in it", test.film.root() / "new/folder", inside},
        {"a folder in it through a link", test.directory / "link/new", inside},
        {"the folder around it", test.film.root().parent_path(), around},
        {"the root", "/", around},
    };
    const auto before = contentsOf(test.film.root());
    for (const RefusedRow& row : rows)
        EXPECT_EQ(runCommandLineTool({"copy", test.film.root().string(), row.target.string()}),
                  (Outcome{2, "", "kinovane: " + row.target.string() + row.reason}))
            << row.sentence;
    EXPECT_EQ(contentsOf(test.film.root()), before);
}

TEST(Copy, LeavesNoRestsOnAFullDisk) {
    const Case test;
    const fs::path err = test.directory / "err";
    // Files cannot grow beyond the limit, as on a full disk.
    EXPECT_EQ(inForkedProcess([&] {
                  std::signal(SIGXFSZ, SIG_IGN);
                  limitTo(RLIMIT_FSIZE, 20'000);
                  const Descriptor file(::open(err.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
                  return std::to_string(exitStatusOf(startCommandLineTool(
                      {"copy", test.film.root().string(), test.target().string()}, file.get(), file.get())));
              }),
              "6");
    EXPECT_EQ(contentOf(err),
              "kinovane: " + (test.target() / "cast/aurelien.png").string() +
                  ": File too large\nThe copy is not complete. Next: remove the cause, then " +
                  test.command() + "\n");
    EXPECT_EQ(contentsOf(test.target()),
              (std::map<std::string, std::string>{
                  {"README.md", VistrelHandoffBuilder::sha256(test.film.root() / "README.md")}}));
    EXPECT_EQ(test.copy().status, 0);
    EXPECT_EQ(contentsOf(test.target()), contentsOf(test.film.root()));
}

TEST(Copy, CanBeInterrupted) {
    WorkspaceMaker film;
    film.add("poster", "a.png", "abc");
    writeDocuments(film);
    film.directory.write("long.mp4", "");
    fs::resize_file(film.directory / "long.mp4", std::uintmax_t{16} << 30U);
    const TemporaryDirectory directory;
    const fs::path target = directory / "copy";
    RunningTool tool({"copy", film.snapshot.root.string(), target.string(), "--progress", "json"});
    ASSERT_TRUE(tool.waitFor(R"("path":"long.mp4")"));
    tool.send(SIGINT);
    const Outcome outcome = tool.end();
    EXPECT_EQ(outcome.status, 130);
    EXPECT_EQ(outcome.out, "Interrupted: 2 of 5 files are in the copy.\n"
                           "Next: kinovane copy " +
                               film.snapshot.root.string() + " " + target.string() + "\n");
    EXPECT_EQ(namesIn(target), (Arguments{"a.png", "film-project.json"}));
}

} // namespace

} // namespace kinovane::test

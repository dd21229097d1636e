// SPDX-License-Identifier: Apache-2.0

#include <chrono>
#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include <sys/stat.h>

#include <gtest/gtest.h>

#include "tools/commands/copy_case.hpp"
#include "tools/film_copy.hpp"

namespace kinovane::test {

namespace {

namespace fs = std::filesystem;
using Arguments = std::vector<std::string>;

std::string incomplete(const std::string& entries) {
    return "The copy is not complete: " + entries +
           " and run.json were not copied.\n"
           "Next: correct what is listed above, then {COMMAND}\n";
}

const std::string copiedAll = "Copied 67 files: 2.3 MB in {TIME}.\n";

TEST(Copy, HasEveryFile) {
    const Case test;
    EXPECT_EQ(test.copy(), (Outcome{0, copiedAll + test.complete(), ""}));
    EXPECT_EQ(contentsOf(test.target()), contentsOf(test.film.root()));
    EXPECT_EQ(runCommandLineTool({"verify", "--all", test.target().string()}).status, 0);
    EXPECT_EQ(
        test.copy(),
        (Outcome{0, "Copied 0 files: 0 B in {TIME}. 67 files were there already.\n" + test.complete(), ""}));
}

TEST(Copy, HasThePermissionsAndTimesOfTheFilm) {
    const Case test;
    const auto time = fs::file_time_type::clock::now() - std::chrono::hours(1000);
    for (const char* name : {"clips/shot-01.mp4", "clips", "."}) {
        fs::permissions(test.film.root() / name,
                        name == std::string("clips") ? fs::perms(0555) : fs::perms(0740));
        fs::last_write_time(test.film.root() / name, time);
    }
    EXPECT_EQ(test.copy().status, 0);
    for (const char* name : {"clips/shot-01.mp4", "clips", "."}) {
        EXPECT_EQ(fs::last_write_time(test.target() / name), fs::last_write_time(test.film.root() / name))
            << name;
        EXPECT_EQ(fs::status(test.target() / name).permissions(),
                  fs::status(test.film.root() / name).permissions())
            << name;
    }
    fs::permissions(test.film.root() / "clips", fs::perms(0755));
    fs::permissions(test.target() / "clips", fs::perms(0755));
}

TEST(Copy, ContinuesAnInterruptedCopy) {
    const Case test;
    EXPECT_EQ(test.copy().status, 0);
    for (const char* name : {"run.json", "poster.png", "clips/shot-07.mp4"})
        fs::remove(test.target() / name);
    const TemporaryDirectory unfinished;
    fs::copy(unfinished.write("a", "half"), test.target() / "clips/.kinovane-copy-1-2");
    EXPECT_EQ(
        test.copy(),
        (Outcome{0, "Copied 3 files: 132.0 kB in {TIME}. 64 files were there already.\n" + test.complete(),
                 ""}));
    EXPECT_EQ(contentsOf(test.target()), contentsOf(test.film.root()));
}

struct Row {
    std::string sentence;
    std::function<void(const Case&)> prepare;
    int status;
    std::string out; ///< Before the last lines.
    std::string end;
    std::vector<std::string> lost; ///< What is not in the copy.
};

TEST(Copy, LeavesOutWhatIsNotSound) {
    const std::vector<Row> rows{
        {"a changed file",
         [](const Case& test) { test.film.change("clips/shot-02.mp4"); },
         4,
         "changed     clips/shot-02.mp4  its content is not what was recorded, so it was not copied\n"
         "Copied 65 files: 2.3 MB in {TIME}.\n",
         incomplete("1 entry"),
         {"clips/shot-02.mp4", "run.json"}},
        {"a missing file",
         [](const Case& test) { test.film.remove("poster.png"); },
         4,
         "missing     poster.png\nCopied 66 files: 2.2 MB in {TIME}.\n",
         "",
         {}},
        {"a link that leads out",
         [](const Case& test) { test.film.linkOutside("poster.png"); },
         4,
         "misplaced   poster.png  leads out of the film's folder, to {ELSEWHERE}\n"
         "Copied 65 files: 2.2 MB in {TIME}.\n",
         incomplete("1 entry"),
         {"poster.png", "run.json"}},
        {"a link that leads out and is not recorded",
         [](const Case& test) { fs::create_symlink("/etc/hostname", test.film.root() / "link"); },
         4,
         "misplaced   link  a link that leads out of the film's folder, to /etc/hostname\n"
         "Copied 66 files: 2.3 MB in {TIME}.\n",
         incomplete("1 entry"),
         {"link", "run.json"}},
        {"a named pipe",
         [](const Case& test) { ::mkfifo((test.film.root() / "pipe").c_str(), 0600); },
         0,
         "skipped     pipe  is a named pipe\n" + copiedAll,
         "",
         {}},
    };
    for (const Row& row : rows) {
        const Case test;
        row.prepare(test);
        const std::string end = row.end.empty() ? test.complete() : row.end;
        EXPECT_EQ(
            test.copy(),
            (Outcome{row.status, replaced(row.out, "{ELSEWHERE}", test.film.outside().string()) + end, ""}))
            << row.sentence;
        std::map<std::string, std::string> expected = contentsOf(test.film.root());
        for (const std::string& lost : row.lost)
            expected.erase(lost);
        EXPECT_EQ(contentsOf(test.target()), expected) << row.sentence;
    }
}

TEST(Copy, ReplacesNothing) {
    const std::vector<Row> rows{
        {"a recorded file",
         [](const Case& test) { test.directory.write("copy/poster.png", "mine"); },
         4,
         "differs     poster.png  the target has another file of that name, which is not replaced\n"
         "Copied 65 files: 2.2 MB in {TIME}.\n",
         incomplete("1 entry"),
         {"poster.png", "run.json"}},
        {"a file that is not recorded",
         [](const Case& test) { test.directory.write("copy/README.md", "mine"); },
         4,
         "differs     README.md  the target has another file of that name, which is not replaced\n"
         "Copied 65 files: 2.3 MB in {TIME}.\n",
         incomplete("1 entry"),
         {"README.md", "run.json"}},
        {"a link in place of a file",
         [](const Case& test) {
             fs::create_directories(test.target());
             fs::create_symlink(test.directory / "mine", test.target() / "README.md");
         },
         4,
         "differs     README.md  the target has another file of that name, which is not replaced\n"
         "Copied 65 files: 2.3 MB in {TIME}.\n",
         incomplete("1 entry"),
         {"README.md", "run.json"}},
        {"a link in place of a folder",
         [](const Case& test) {
             fs::create_directories(test.target());
             fs::create_directory(test.directory / "mine");
             fs::create_directory_symlink(test.directory / "mine", test.target() / "cast");
         },
         4,
         "differs     cast  is no folder in the target\nCopied 64 files: 2.2 MB in {TIME}.\n",
         incomplete("1 entry"),
         {"cast/aurelien.png", "cast/noor.png", "run.json"}},
        {"a run manifest",
         [](const Case& test) { test.directory.write("copy/run.json", "mine"); },
         4,
         "differs     run.json  the target has another file of that name, which is not replaced\n"
         "Copied 66 files: 2.3 MB in {TIME}.\n",
         incomplete("1 entry"),
         {"run.json"}},
    };
    for (const Row& row : rows) {
        const Case test;
        row.prepare(test);
        const auto before =
            fs::exists(test.target()) ? contentsOf(test.target()) : std::map<std::string, std::string>();
        EXPECT_EQ(test.copy(), (Outcome{row.status, row.out + row.end, ""})) << row.sentence;
        std::map<std::string, std::string> expected = contentsOf(test.film.root());
        for (const std::string& lost : row.lost)
            expected.erase(lost);
        expected.insert(before.begin(), before.end());
        EXPECT_EQ(contentsOf(test.target()), expected) << row.sentence;
        EXPECT_FALSE(fs::exists(test.directory / "mine/noor.png")) << row.sentence;
    }
}

TEST(Copy, KeepsLinksThatLeadInside) {
    const Case test;
    const fs::path root = test.film.root();
    fs::create_symlink("shot-01.mp4", root / "clips/relative.mp4");
    fs::create_symlink(root / "clips/shot-02.mp4", root / "absolute.mp4");
    fs::create_directory_symlink("clips", root / "media");
    EXPECT_EQ(test.copy().status, 0);
    EXPECT_EQ(fs::read_symlink(test.target() / "clips/relative.mp4"), "shot-01.mp4");
    EXPECT_EQ(fs::read_symlink(test.target() / "absolute.mp4"), "clips/shot-02.mp4");
    EXPECT_EQ(fs::read_symlink(test.target() / "media"), "clips");
    EXPECT_EQ(test.copy().status, 0);
}

} // namespace

} // namespace kinovane::test

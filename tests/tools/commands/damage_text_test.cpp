// SPDX-License-Identifier: Apache-2.0

#include "commands/damage_text.hpp"

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include <sys/socket.h>
#include <sys/stat.h>

#include <gtest/gtest.h>

#include <kinovane/handoff.hpp>

#include "json/json_output.hpp"
#include "support/sample_film.hpp"
#include "terminal/style.hpp"

namespace kinovane::test {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t wide = 200;

/// The first artifact's line, examined as `verify` does.
std::string lineOf(const WorkspaceMaker& film, std::size_t columns = wide, bool verbose = false) {
    HandoffBuildOptions options;
    options.compareSizes = true;
    const auto outcomes =
        VistrelHandoffBuilder::examine(film.snapshot.root, film.snapshot.project.artifacts, options);
    return tool::rendered(tool::fileText(outcomes.at(0), film.snapshot.root, columns, verbose), false);
}

struct Row {
    std::string sentence;
    std::function<void(WorkspaceMaker&)> prepare;
    std::string expected; ///< "{ELSEWHERE}" is the parent of the film's folder.
};

std::vector<Row> rows() {
    const std::string kilobytes(14'700, 'x');
    return {
        {"a sound file", [=](auto& film) { film.add("poster", "a.png", kilobytes); },
         "sound       a.png  14.7 kB\n"},
        {"a file that was cut short",
         [=](auto& film) {
             film.add("poster", "a.png", kilobytes);
             fs::resize_file(film.directory / "a.png", 1000);
         },
         "changed     a.png  1.0 kB, recorded 14.7 kB: cut short\n"},
        {"an empty file",
         [=](auto& film) {
             film.add("poster", "a.png", kilobytes);
             fs::resize_file(film.directory / "a.png", 0);
         },
         "changed     a.png  empty, recorded 14.7 kB: cut short\n"},
        {"a file that is too long by a byte",
         [=](auto& film) {
             film.add("poster", "a.png", kilobytes);
             fs::resize_file(film.directory / "a.png", 14'701);
         },
         "changed     a.png  14701 B, recorded 14700 B: too long\n"},
        {"a recorded size below zero", [](auto& film) { film.add("poster", "a.png", "abc").bytes = -5; },
         "changed     a.png  3 B, but the recorded size is below zero\n"},
        {"other content of the same size",
         [](auto& film) {
             film.add("poster", "a.png", "abc");
             film.directory.write("a.png", "abd");
         },
         "changed     a.png  its content is not what was recorded\n"},
        {"no file", [](auto& film) { film.list("poster", "a.png"); }, "missing     a.png\n"},
        {"a link to nothing",
         [](auto& film) {
             film.list("poster", "a.png");
             fs::create_symlink("b.png", film.directory / "a.png");
         },
         "missing     a.png  a link to b.png, where there is no file\n"},
        {"an empty path", [](auto& film) { film.list("poster", ""); },
         "misplaced   ''  the recorded path is empty\n"},
        {"the folder itself", [](auto& film) { film.list("poster", "./"); },
         "misplaced   ./  the recorded path is that of the film's folder\n"},
        {"an absolute path", [](auto& film) { film.list("poster", "/etc/hostname"); },
         "misplaced   /etc/hostname  the recorded path is absolute\n"},
        {"a path with a NUL byte", [](auto& film) { film.list("poster", std::string("a\0b", 3)); },
         "misplaced   $'a\\x00\\x62'  the recorded path holds a NUL byte\n"},
        {"a path that leads out", [](auto& film) { film.list("poster", "../kinovane-none.png"); },
         "misplaced   ../kinovane-none.png  leads out of the film's folder, to "
         "{ELSEWHERE}/kinovane-none.png\n"},
        {"a path that leads out and in",
         [](auto& film) {
             film.list("poster", "clips/../a.png");
             film.directory.write("clips/b", "");
         },
         "misplaced   clips/../a.png  the recorded path holds \"..\"\n"},
        {"a link that leads out",
         [](auto& film) {
             film.list("poster", "a.png");
             fs::create_symlink("/dev/null", film.directory / "a.png");
         },
         "misplaced   a.png  leads out of the film's folder, to /dev/null\n"},
        {"a malformed digest", [](auto& film) { film.add("poster", "a.png", "abc").sha256 = "sha256:ABC"; },
         "malformed   a.png  the recorded digest is not \"sha256:\" and 64 lowercase digits\n"},
        {"a folder",
         [](auto& film) {
             film.list("poster", "a.png");
             fs::create_directory(film.directory / "a.png");
         },
         "unreadable  a.png  is a folder, not a file\n"},
        {"a named pipe",
         [](auto& film) {
             film.list("poster", "a.png");
             ::mkfifo((film.directory / "a.png").c_str(), 0600);
         },
         "unreadable  a.png  is a named pipe, not a file\n"},
        {"a circle of links",
         [](auto& film) {
             film.list("poster", "a.png");
             fs::create_symlink("a.png", film.directory / "a.png");
         },
         "missing     a.png  a link to a.png, where there is no file\n"},
        {"a path with control characters", [](auto& film) { film.list("poster", "a\x1b[31m\n.png"); },
         "missing     $'a\\x1b[31m\\n.png'\n"},
    };
}

std::string expectedOf(std::string text, const fs::path& root) {
    const std::string place = "{ELSEWHERE}";
    if (const std::size_t found = text.find(place); found != std::string::npos)
        text.replace(found, place.size(), fs::canonical(root).parent_path().string());
    return text;
}

TEST(DamageText, NamesTheStateThePathAndTheReason) {
    for (const Row& row : rows()) {
        WorkspaceMaker film;
        row.prepare(film);
        EXPECT_EQ(lineOf(film), expectedOf(row.expected, film.snapshot.root)) << row.sentence;
    }
}

TEST(DamageText, GivesTheReasonALineWhenItIsTooWide) {
    WorkspaceMaker film;
    film.list("poster", "/etc/hostname");
    constexpr std::size_t exact = 12 + 13 + 2 + 29;
    EXPECT_EQ(lineOf(film, exact), "misplaced   /etc/hostname  the recorded path is absolute\n");
    EXPECT_EQ(lineOf(film, exact - 1),
              "misplaced   /etc/hostname\n            the recorded path is absolute\n");
}

TEST(DamageText, ShowsTheDigestsWhenTheyAreWanted) {
    WorkspaceMaker film;
    film.add("poster", "a.png", "abc");
    const std::string recorded =
        "            recorded sha256:ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad\n";
    EXPECT_EQ(lineOf(film, wide, true), "sound       a.png  3 B\n" + recorded);
    film.directory.write("a.png", "abd");
    EXPECT_EQ(lineOf(film, wide, true),
              "changed     a.png  its content is not what was recorded\n" + recorded +
                  "            found    "
                  "sha256:a52d159f262b2c6ddb724a61840befc36eb30c88877a4030b65cbe86298449c9\n");
}

TEST(DamageText, IsWrittenAsJSON) {
    WorkspaceMaker film;
    film.add("poster", "a.png", "abc");
    film.list("score", "b.wav");
    const auto outcomes =
        VistrelHandoffBuilder::examine(film.snapshot.root, film.snapshot.project.artifacts, {});
    EXPECT_EQ(
        tool::jsonLine(tool::fileJSON(outcomes.at(0), film.snapshot.root)),
        R"({"path":"a.png","kind":"poster","state":"sound","reason":null,"recordedBytes":3,"actualBytes":3,)"
        R"("recordedDigest":"sha256:ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad",)"
        R"("actualDigest":"sha256:ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad"})"
        "\n");
    EXPECT_EQ(tool::jsonLine(tool::fileJSON(outcomes.at(1), film.snapshot.root)),
              R"({"path":"b.wav","kind":"score","state":"missing","reason":null,"recordedBytes":0,)"
              R"("actualBytes":null,"recordedDigest":")" +
                  std::string(emptyDigest) + "\",\"actualDigest\":null}\n");
}

} // namespace

} // namespace kinovane::test

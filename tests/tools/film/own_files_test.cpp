// SPDX-License-Identifier: Apache-2.0

#include "film/own_files.hpp"

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/sample_film.hpp"

namespace kinovane::test {

namespace {

namespace fs = std::filesystem;

struct Row {
    std::string sentence;
    std::string path; ///< Below the film's folder.
    bool expected;
    std::function<void(const fs::path&)> prepare = {};
};

const std::vector<Row> rows{
    {"the run manifest", "run.json", true},
    {"the project", "film-project.json", true},
    {"a plan that does not exist yet", "production-plan.json", true},
    {"a treatment that does not exist yet", "treatment.json", true},
    {"a recorded file", "clips/a.mp4", true},
    {"a recorded file by another path", "clips/../clips/./a.mp4", true},
    {"a recorded file that does not exist", "frames/lost.png", true},
    {"a recorded file that does not exist by another path", "clips/../frames/lost.png", true},
    {"a link to a recorded file", "link.mp4", true,
     [](const fs::path& root) { fs::create_symlink("clips/a.mp4", root / "link.mp4"); }},
    {"another name of a recorded file", "other.mp4", true,
     [](const fs::path& root) { fs::create_hard_link(root / "clips/a.mp4", root / "other.mp4"); }},
    {"a link to a recorded file that does not exist", "link.png", true,
     [](const fs::path& root) { fs::create_symlink("frames/lost.png", root / "link.png"); }},
    {"a recorded file through a link to its folder", "media/a.mp4", true,
     [](const fs::path& root) { fs::create_directory_symlink("clips", root / "media"); }},
    {"a recorded file that does not exist through a link to its folder", "stills/lost.png", true,
     [](const fs::path& root) {
         fs::create_directory(root / "frames");
         fs::create_directory_symlink("frames", root / "stills");
     }},
    {"a circle of links", "circle", false,
     [](const fs::path& root) { fs::create_symlink("circle", root / "circle"); }},
    {"the handoff manifest", "vistrel-handoff.json", false},
    {"another file", "notes.txt", false,
     [](const fs::path& root) { fs::copy(root / "run.json", root / "notes.txt"); }},
    {"another file that does not exist", "clips/b.mp4", false},
    {"the folder", ".", false},
};

TEST(OwnFiles, AreTheDocumentsAndTheRecordedFiles) {
    for (const Row& row : rows) {
        WorkspaceMaker film;
        film.add("shot-clip", "clips/a.mp4", "abc");
        film.list("shot-keyframe", "frames/lost.png");
        film.directory.write("film-project.json", "{}");
        if (row.prepare)
            row.prepare(film.directory.path());
        EXPECT_EQ(tool::isOwnFile(film.snapshot, film.directory / row.path), row.expected) << row.sentence;
    }
}

TEST(OwnFiles, AreTheSameByAnyPath) {
    const TemporaryDirectory directory;
    const fs::path file = directory.write("folder/a", "");
    fs::create_symlink("folder/a", directory / "link");
    EXPECT_TRUE(tool::isSameFile(file, directory / "link"));
    EXPECT_TRUE(tool::isSameFile(directory / "folder/new", directory / "folder/../folder/new"));
    EXPECT_FALSE(tool::isSameFile(directory / "folder/new", directory / "new"));
    EXPECT_FALSE(tool::isSameFile(file, directory / "folder/new"));
}

} // namespace

} // namespace kinovane::test

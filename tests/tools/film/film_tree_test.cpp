// SPDX-License-Identifier: Apache-2.0

#include "film/film_tree.hpp"

#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/temporary_directory.hpp"

namespace kinovane::test {

namespace {

namespace fs = std::filesystem;

TEST(FilmTree, ListsFoldersBeforeTheirContents) {
    const TemporaryDirectory directory;
    directory.write("b/c/d", "");
    directory.write("b/a", "");
    directory.write("b.txt", "");
    fs::create_directory_symlink("b", directory / "link");
    std::vector<std::string> paths;
    for (const tool::TreeEntry& entry : tool::treeBelow(directory.path()))
        paths.push_back(entry.path.string());
    EXPECT_EQ(paths, (std::vector<std::string>{"b", "b/a", "b/c", "b/c/d", "b.txt", "link"}));
}

TEST(FilmTree, ReportsAFolderThatCannotBeListed) {
    const auto tree = tool::treeBelow("/kinovane-none");
    ASSERT_EQ(tree.size(), 1U);
    EXPECT_EQ(tree[0].path, "");
    EXPECT_EQ(tree[0].failure, std::errc::no_such_file_or_directory);
}

TEST(LinkText, LeadsIntoTheCopy) {
    const TemporaryDirectory directory;
    const std::string folder = (directory / "film").string();
    struct Row {
        std::string sentence, link, text, expected;
    };
    const std::vector<Row> rows{
        {"a relative link", "clips/link", "a.mp4", "a.mp4"},
        {"a relative link to another folder", "clips/link", "../takes/a.mp4", "../takes/a.mp4"},
        {"a link to nothing", "clips/link", "../takes/none", "../takes/none"},
        {"an absolute link", "clips/link", folder + "/takes/a.mp4", "../takes/a.mp4"},
        {"a link through the name of the folder", "link", "../film/takes/a.mp4", "takes/a.mp4"},
        {"a link that leads out", "link", "../a", ""},
        {"an absolute link that leads out", "link", "/etc/hostname", ""},
        {"a link through a link that leads out", "link", "outside/a", ""},
        {"a circle", "link", "link", ""},
    };
    for (const Row& row : rows) {
        directory.write("film/clips/a.mp4", "");
        directory.write("film/takes/a.mp4", "");
        fs::create_directory_symlink("/", directory / "film/outside");
        fs::create_symlink(row.text, fs::path(folder) / row.link);
        EXPECT_EQ(tool::linkTextInside(folder, row.link), row.expected) << row.sentence;
        fs::remove_all(folder);
    }
}

TEST(Folder, LiesInAnotherByAnyPath) {
    const TemporaryDirectory directory;
    fs::create_directories(directory / "a/b");
    fs::create_directories(directory / "ab");
    fs::create_directory_symlink("a/b", directory / "link");
    struct Row {
        std::string path, folder;
        bool expected;
    };
    const std::vector<Row> rows{
        {"a", "a", true},        {"a/b", "a", true},     {"a/new/c", "a", true},
        {"link/new", "a", true}, {"ab", "a", false},     {"a", "a/b", false},
        {"a/../ab", "a", false}, {"a/..new", "a", true}, {"a/", "a", true},
    };
    for (const Row& row : rows)
        EXPECT_EQ(tool::isInside(directory / row.path, directory / row.folder), row.expected)
            << row.path << " in " << row.folder;
}

} // namespace

} // namespace kinovane::test

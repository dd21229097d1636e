// SPDX-License-Identifier: Apache-2.0

#include "storyboard/contained_file.hpp"

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include <sys/stat.h>

#include <gtest/gtest.h>

#include "support/temporary_directory.hpp"

namespace kinovane::tool {

namespace {

namespace fs = std::filesystem;
using test::TemporaryDirectory;

TEST(ContainedFile, IsFoundBelowTheFolderOnly) {
    const TemporaryDirectory directory;
    const fs::path base = fs::canonical(directory.path());
    const fs::path root = base / "film";
    directory.write("film/frames/a.png", "a");
    directory.write("secret", "s");
    fs::create_symlink("frames/a.png", root / "inner.png");
    fs::create_symlink("../secret", root / "outer.png");
    fs::create_symlink("..", root / "up");
    fs::create_symlink("nowhere", root / "broken.png");
    ::mkfifo((root / "pipe.png").c_str(), 0600);
    const struct {
        const char* sentence;
        std::string path;
        std::string expected; ///< Empty for none.
    } rows[]{
        {"a file", "frames/a.png", "frames/a.png"},
        {"a path with a detour", "frames/../frames/./a.png", "frames/a.png"},
        {"a link inside", "inner.png", "frames/a.png"},
        {"a link that leads out", "outer.png", ""},
        {"a folder that leads out", "up/secret", ""},
        {"a path that climbs", "../secret", ""},
        {"an absolute path", "/etc/passwd", ""},
        {"a path inside that is absolute", (root / "frames/a.png").string(), ""},
        {"a missing file", "b.png", ""},
        {"a broken link", "broken.png", ""},
        {"a folder", "frames", ""},
        {"the film's folder", ".", ""},
        {"a named pipe", "pipe.png", ""},
        {"nothing", "", ""},
        {"a NUL byte", std::string("frames/a.png\0x", 14), ""},
    };
    for (const auto& [sentence, path, expected] : rows)
        EXPECT_EQ(pathInside(root, path), expected.empty() ? std::nullopt : std::optional(root / expected))
            << sentence;
}

TEST(ContainedFile, IsReadWithoutFollowingALink) {
    const struct {
        const char* sentence;
        std::function<void(const fs::path&)> prepare;
        std::uint64_t most;
        std::optional<std::string> expected;
    } rows[]{
        {"a file", [](const fs::path&) {}, 7, "content"},
        {"a file that is too large", [](const fs::path&) {}, 6, std::nullopt},
        {"a file that became a link",
         [](const fs::path& root) {
             fs::rename(root / "frames/a.png", root / "b.png");
             fs::create_symlink("../b.png", root / "frames/a.png");
         },
         7, std::nullopt},
        {"a folder that became a link",
         [](const fs::path& root) {
             fs::rename(root / "frames", root / "other");
             fs::create_symlink("other", root / "frames");
         },
         7, std::nullopt},
        {"a file that became a pipe",
         [](const fs::path& root) {
             fs::remove(root / "frames/a.png");
             ::mkfifo((root / "frames/a.png").c_str(), 0600);
         },
         7, std::nullopt},
        {"a file that was removed", [](const fs::path& root) { fs::remove_all(root / "frames"); }, 7,
         std::nullopt},
    };
    for (const auto& [sentence, prepare, most, expected] : rows) {
        const TemporaryDirectory directory;
        const fs::path root = fs::canonical(directory.path());
        directory.write("frames/a.png", "content");
        prepare(root);
        EXPECT_EQ(contentInside(root, root / "frames/a.png", most), expected) << sentence;
    }
}

} // namespace

} // namespace kinovane::tool

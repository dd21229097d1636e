// SPDX-License-Identifier: Apache-2.0

#include "common/files/atomic_file.hpp"

#include <span>
#include <string>
#include <string_view>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/files/write_atomically.hpp"
#include "support/temporary_directory.hpp"

namespace kinovane::test {
namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;
using testing::ElementsAre;

struct ContentRow {
    const char* sentence;
    std::string name;
    std::string content;
};

TEST(AtomicFile, CreatesAndReplacesItsTarget) {
    const ContentRow rows[] = {
        {"a small file", "a.json", "{}"},
        {"an empty file", "b.json", ""},
        {"several megabytes", "c.json", std::string(3'000'000, 'k')},
        {"NUL bytes", "d.json", "a\0b"s},
        {"a name as long as names can be", std::string(255, 'n'), "long"},
        {"a name with odd characters", " \n\"é—.json", "odd"},
        {"a name like a temporary file's", ".kinovane-00.tmp", "hidden"},
    };
    for (const ContentRow& row : rows) {
        SCOPED_TRACE(row.sentence);
        const TemporaryDirectory directory;
        const fs::path location = directory / row.name;
        writeAtomically(location, row.content);
        EXPECT_EQ(contentOf(location), row.content);
        writeAtomically(location, "second");
        EXPECT_EQ(contentOf(location), "second");
        EXPECT_THAT(namesIn(directory.path()), ElementsAre(row.name));
    }
}

TEST(AtomicFile, ReplacesTheOldFileRatherThanItsContent) {
    const TemporaryDirectory directory;
    const fs::path location = directory.write("a.json", "old");
    fs::create_hard_link(location, directory / "reader");
    writeAtomically(location, "new");
    EXPECT_EQ(contentOf(location), "new");
    EXPECT_EQ(contentOf(directory / "reader"), "old");
}

std::string readBack(AtomicFile& file, std::size_t size) {
    std::string text;
    std::string buffer(size, '\0');
    while (const std::size_t count = file.read(std::as_writable_bytes(std::span(buffer))))
        text += buffer.substr(0, count);
    return text;
}

TEST(AtomicFile, CanBeReadBeforeItReplacesTheTarget) {
    const TemporaryDirectory directory;
    const fs::path location = directory.write("a.json", "old");
    AtomicFile file(location);
    for (const std::string_view chunk : {"one ", "", "two ", "three"})
        file.write(chunk);
    file.flush();
    EXPECT_EQ(readBack(file, 4), "one two three");
    EXPECT_EQ(contentOf(location), "old");
    file.replaceTarget();
    EXPECT_EQ(contentOf(location), "one two three");
}

TEST(AtomicFile, IsRemovedUnlessItReplacesTheTarget) {
    const TemporaryDirectory directory;
    const fs::path location = directory.write("a.json", "old");
    {
        AtomicFile file(location);
        file.write("new");
        file.flush();
        EXPECT_EQ(namesIn(directory.path()).size(), 2U);
    }
    EXPECT_EQ(contentOf(location), "old");
    EXPECT_THAT(namesIn(directory.path()), ElementsAre("a.json"));
}

TEST(AtomicFile, FollowsSymbolicLinks) {
    const TemporaryDirectory directory;
    directory.write("there/target.json", "old");
    fs::create_symlink("there/target.json", directory / "link");
    fs::create_symlink(directory / "link", directory / "absolute");
    fs::create_directory_symlink("there", directory / "directory");
    fs::create_symlink("there/fresh.json", directory / "dangling");
    writeAtomically(directory / "link", "one");
    EXPECT_EQ(contentOf(directory / "there/target.json"), "one");
    writeAtomically(directory / "absolute", "two");
    EXPECT_EQ(contentOf(directory / "there/target.json"), "two");
    writeAtomically(directory / "directory/target.json", "three");
    EXPECT_EQ(contentOf(directory / "there/target.json"), "three");
    writeAtomically(directory / "dangling", "four");
    EXPECT_EQ(contentOf(directory / "there/fresh.json"), "four");
    for (const char* link : {"link", "absolute", "directory", "dangling"})
        EXPECT_TRUE(fs::is_symlink(directory / link)) << link;
    EXPECT_THAT(namesIn(directory / "there"), ElementsAre("fresh.json", "target.json"));
}

TEST(AtomicFile, ResolvesARelativeLocationAgainstTheWorkingDirectory) {
    const TemporaryDirectory directory;
    const fs::path before = fs::current_path();
    fs::current_path(directory.path());
    writeAtomically("a.json", "{}");
    writeAtomically("./../" + directory.path().filename().string() + "/b.json", "[]");
    fs::current_path(before);
    EXPECT_EQ(contentOf(directory / "a.json"), "{}");
    EXPECT_EQ(contentOf(directory / "b.json"), "[]");
}

} // namespace
} // namespace kinovane::test

// SPDX-License-Identifier: Apache-2.0

#include "film/staged_file.hpp"

#include <cerrno>
#include <filesystem>
#include <string>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>

#include <gtest/gtest.h>

#include "common/files/descriptor.hpp"
#include "support/temporary_directory.hpp"

namespace kinovane::test {

namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::string>;

mode_t modeOf(const fs::path& file) {
    struct stat status{};
    return ::stat(file.c_str(), &status) == 0 ? status.st_mode & 07777U : 0;
}

TEST(StagedFile, HasNoNameUntilItIsPlaced) {
    const TemporaryDirectory directory;
    {
        tool::StagedFile file(directory / "a");
        file.write("abc");
        EXPECT_TRUE(file.path().filename().string().starts_with(tool::StagedFile::prefix));
        EXPECT_FALSE(fs::exists(directory / "a"));
        EXPECT_TRUE(file.place());
    }
    EXPECT_EQ(contentOf(directory / "a"), "abc");
    EXPECT_EQ(namesIn(directory.path()), Names{"a"});
}

TEST(StagedFile, IsRemovedUnlessItIsPlaced) {
    const TemporaryDirectory directory;
    {
        tool::StagedFile(directory / "a").write("abc");
    }
    EXPECT_EQ(namesIn(directory.path()), Names{});
}

TEST(StagedFile, ReplacesAFileOnlyOnRequest) {
    const TemporaryDirectory directory;
    directory.write("a", "old");
    {
        tool::StagedFile file(directory / "a");
        file.write("new");
        EXPECT_FALSE(file.place());
        EXPECT_EQ(contentOf(directory / "a"), "old");
        file.replace();
    }
    EXPECT_EQ(contentOf(directory / "a"), "new");
    EXPECT_EQ(namesIn(directory.path()), Names{"a"});
}

TEST(StagedFile, CannotBeMadeInAFolderThatDoesNotExist) {
    const TemporaryDirectory directory;
    EXPECT_THROW(tool::StagedFile(directory / "none/a"), fs::filesystem_error);
}

TEST(UnfinishedFiles, AreRemovedUnlessTheyAreInUse) {
    const TemporaryDirectory directory;
    const std::string prefix(tool::StagedFile::prefix);
    directory.write(prefix + "1", "killed");
    directory.write("a", "kept");
    const tool::StagedFile used(directory / "b");
    tool::removeUnfinishedFiles(directory.path());
    EXPECT_EQ(namesIn(directory.path()), (Names{used.path().filename().string(), "a"}));
}

TEST(WriteFile, ReplacesAFileAsAWholeAndKeepsItsPermissions) {
    const TemporaryDirectory directory;
    const fs::path file = directory.write("a", "old");
    ::chmod(file.c_str(), 0604);
    fs::create_symlink("a", directory / "link");
    tool::writeFile(directory / "link", "new");
    EXPECT_EQ(contentOf(file), "new");
    EXPECT_EQ(modeOf(file), 0604U);
    EXPECT_TRUE(fs::is_symlink(directory / "link"));
    EXPECT_EQ(namesIn(directory.path()), (Names{"a", "link"}));
}

TEST(WriteFile, WritesToANamedPipe) {
    const TemporaryDirectory directory;
    const fs::path pipe = directory / "pipe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    const Descriptor reader(::open(pipe.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    tool::writeFile(pipe, "abc");
    std::string read(4, ' ');
    EXPECT_EQ(::read(reader.get(), read.data(), read.size()), 3);
    EXPECT_EQ(read, "abc ");
    EXPECT_TRUE(fs::is_fifo(pipe));
}

TEST(WriteFile, ReportsWhatCannotBeWritten) {
    const TemporaryDirectory directory;
    struct Row {
        std::string sentence;
        fs::path file;
        int error;
    };
    const std::vector<Row> rows{
        {"a folder", directory.path(), EISDIR},
        {"a folder that does not exist", directory / "none/a", ENOENT},
        {"a full device", "/dev/full", ENOSPC},
    };
    for (const Row& row : rows)
        try {
            tool::writeFile(row.file, "abc");
            ADD_FAILURE() << row.sentence;
        } catch (const fs::filesystem_error& error) {
            EXPECT_EQ(error.code().value(), row.error) << row.sentence;
        }
    EXPECT_EQ(namesIn(directory.path()), Names{});
}

} // namespace

} // namespace kinovane::test

// SPDX-License-Identifier: Apache-2.0

#include <csignal>
#include <string>
#include <system_error>
#include <vector>

#include <sys/resource.h>
#include <sys/stat.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/files/write_atomically.hpp"
#include "support/child_counts.hpp"
#include "support/ordinary_user.hpp"
#include "support/temporary_directory.hpp"

namespace kinovane::test {
namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;
using testing::ElementsAre;

/// Limits the size of files, to simulate a full disk.
class FileSizeLimit {
  public:
    explicit FileSizeLimit(rlim_t size) {
        ::getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit limit{size, before_.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;
    ~FileSizeLimit() {
        ::setrlimit(RLIMIT_FSIZE, &before_);
        static_cast<void>(std::signal(SIGXFSZ, handler_));
    }

  private:
    rlimit before_{};
    void (*handler_)(int) = std::signal(SIGXFSZ, SIG_IGN);
};

struct RefusalRow {
    const char* sentence;
    fs::path location;
    std::errc code;
};

TEST(AtomicFile, RefusesTargetsThatCannotBeReplaced) {
    const TemporaryDirectory directory;
    fs::create_directory(directory / "directory");
    fs::create_symlink("directory", directory / "link");
    fs::create_symlink("circle", directory / "circle");
    fs::create_symlink("no/where", directory / "dangling");
    directory.write("file", "old");
    ASSERT_EQ(::mkfifo((directory / "fifo").c_str(), 0644), 0);
    const RefusalRow rows[] = {
        {"a directory", directory / "directory", std::errc::is_a_directory},
        {"a directory with a slash at the end", directory / "directory/", std::errc::is_a_directory},
        {"a directory with a dot at the end", directory / "directory/.", std::errc::is_a_directory},
        {"a directory with two dots at the end", directory / "directory/..", std::errc::is_a_directory},
        {"a link to a directory", directory / "link", std::errc::is_a_directory},
        {"the root", "/", std::errc::is_a_directory},
        {"a link to itself", directory / "circle", std::errc::too_many_symbolic_link_levels},
        {"a link into a missing directory", directory / "dangling", std::errc::no_such_file_or_directory},
        {"a missing directory", directory / "no/a.json", std::errc::no_such_file_or_directory},
        {"a file as a directory", directory / "file/a.json", std::errc::not_a_directory},
        {"a NUL byte", directory / "a\0b"s, std::errc::invalid_argument},
        {"a name that is too long", directory / std::string(256, 'n'), std::errc::filename_too_long},
        {"a FIFO", directory / "fifo", std::errc::operation_not_supported},
        {"a device", "/dev/full", std::errc::operation_not_supported},
    };
    const std::vector<std::string> names = namesIn(directory.path());
    const ProcessCounts before = countProcess();
    for (const RefusalRow& row : rows) {
        SCOPED_TRACE(row.sentence);
        try {
            writeAtomically(row.location, "new");
            ADD_FAILURE() << "the file was written";
        } catch (const fs::filesystem_error& error) {
            EXPECT_EQ(error.code(), row.code) << error.code().message();
        }
    }
    EXPECT_EQ(namesIn(directory.path()), names);
    EXPECT_EQ(contentOf(directory / "file"), "old");
    EXPECT_EQ(countProcess().descriptors, before.descriptors);
}

TEST(AtomicFile, RefusesAnEmptyLocation) {
    const TemporaryDirectory directory;
    const fs::path before = fs::current_path();
    fs::current_path(directory.path());
    std::string message;
    try {
        writeAtomically("", "new");
    } catch (const fs::filesystem_error& error) {
        EXPECT_EQ(error.code(), std::errc::invalid_argument);
        message = error.what();
    }
    fs::current_path(before);
    EXPECT_THAT(message, testing::HasSubstr("cannot write, because the location is empty"));
    EXPECT_THAT(namesIn(directory.path()), ElementsAre());
}

TEST(AtomicFile, LeavesOnlyTheOldFileWhenTheDiskIsFull) {
    const TemporaryDirectory directory;
    const fs::path location = directory.write("a.json", "old");
    const std::string content(100'000, 'k');
    for (const rlim_t size : {rlim_t{0}, rlim_t{1}, rlim_t{4096}, rlim_t{99'999}}) {
        SCOPED_TRACE(size);
        for (const fs::path& target : {location, directory / "new.json"}) {
            std::error_code code;
            try {
                const FileSizeLimit limit(size);
                writeAtomically(target, content);
            } catch (const fs::filesystem_error& error) {
                code = error.code();
            }
            EXPECT_EQ(code, std::errc::file_too_large);
        }
        EXPECT_EQ(contentOf(location), "old");
        EXPECT_THAT(namesIn(directory.path()), ElementsAre("a.json"));
    }
}

/// Writes the file, and returns "written" or the text of the error.
std::string outcomeOfWriting(const fs::path& location) {
    try {
        writeAtomically(location, "new");
        return "written";
    } catch (const fs::filesystem_error& error) {
        return error.code().message();
    }
}

TEST(AtomicFile, RespectsThePermissionsOfTheDirectory) {
    const TemporaryDirectory directory;
    const fs::path location = directory.write("target/a.json", "old");
    fs::permissions(directory.path(), fs::perms::all);
    fs::permissions(location, fs::perms::all);
    const auto outcomeWith = [&](unsigned mode) {
        EXPECT_EQ(::chmod((directory / "target").c_str(), mode), 0);
        return asOrdinaryUser([&] { return outcomeOfWriting(location); });
    };
    EXPECT_EQ(outcomeWith(0555), "Permission denied");
    EXPECT_EQ(contentOf(location), "old");
    EXPECT_EQ(outcomeWith(0666), "Permission denied");
    EXPECT_EQ(contentOf(location), "old");
    // Write and search permission are enough.
    EXPECT_EQ(outcomeWith(0333), "written");
    EXPECT_EQ(contentOf(location), "new");
    EXPECT_THAT(namesIn(directory / "target"), ElementsAre("a.json"));
}

} // namespace
} // namespace kinovane::test

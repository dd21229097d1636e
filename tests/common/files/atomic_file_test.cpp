// SPDX-License-Identifier: Apache-2.0

#include "common/files/atomic_file.hpp"

#include <csignal>
#include <span>
#include <string>
#include <string_view>

#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/child_counts.hpp"
#include "support/ordinary_user.hpp"
#include "support/temporary_directory.hpp"

namespace kinovane::test {
namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;
using testing::ElementsAre;

void writeAtomically(const fs::path& location, std::string_view content) {
    AtomicFile file(location);
    file.write(content);
    file.flush();
    file.replaceTarget();
}

mode_t modeOf(const fs::path& location) {
    struct stat status{};
    EXPECT_EQ(::stat(location.c_str(), &status), 0);
    return status.st_mode & 07777;
}

/// The umask of this process, for as long as this lives.
class Umask {
  public:
    explicit Umask(mode_t mask) : before_(::umask(mask)) {}
    Umask(const Umask&) = delete;
    Umask& operator=(const Umask&) = delete;
    ~Umask() { ::umask(before_); }

  private:
    mode_t before_;
};

/// No file may grow beyond this size, as if the disk were full.
class FullDisk {
  public:
    explicit FullDisk(rlim_t size) {
        ::getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit limit{size, before_.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;
    ~FullDisk() {
        ::setrlimit(RLIMIT_FSIZE, &before_);
        static_cast<void>(std::signal(SIGXFSZ, handler_));
    }

  private:
    rlimit before_{};
    void (*handler_)(int) = std::signal(SIGXFSZ, SIG_IGN);
};

class AtomicFileTest : public testing::Test {
  protected:
    TemporaryDirectory directory_;
};

struct ContentRow {
    const char* sentence;
    std::string name;
    std::string content;
};

TEST_F(AtomicFileTest, WritesAndReplaces) {
    const ContentRow rows[] = {
        {"plain text", "a.json", "{}"},
        {"nothing", "b.json", ""},
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

TEST_F(AtomicFileTest, ReplacesTheFileAndDoesNotWriteIntoIt) {
    const fs::path location = directory_.write("a.json", "old");
    fs::create_hard_link(location, directory_ / "reader");
    writeAtomically(location, "new");
    EXPECT_EQ(contentOf(location), "new");
    EXPECT_EQ(contentOf(directory_ / "reader"), "old");
}

std::string readBack(AtomicFile& file, std::size_t size) {
    std::string text;
    std::string buffer(size, '\0');
    while (const std::size_t count = file.read(std::as_writable_bytes(std::span(buffer))))
        text += buffer.substr(0, count);
    return text;
}

TEST_F(AtomicFileTest, IsReadBackBeforeItReplacesTheTarget) {
    const fs::path location = directory_.write("a.json", "old");
    AtomicFile file(location);
    for (const std::string_view piece : {"one ", "", "two ", "three"})
        file.write(piece);
    file.flush();
    EXPECT_EQ(readBack(file, 4), "one two three");
    EXPECT_EQ(contentOf(location), "old");
    file.replaceTarget();
    EXPECT_EQ(contentOf(location), "one two three");
}

TEST_F(AtomicFileTest, IsRemovedWhenItDoesNotReplaceTheTarget) {
    const fs::path location = directory_.write("a.json", "old");
    {
        AtomicFile file(location);
        file.write("new");
        file.flush();
        EXPECT_EQ(namesIn(directory_.path()).size(), 2U);
    }
    EXPECT_EQ(contentOf(location), "old");
    EXPECT_THAT(namesIn(directory_.path()), ElementsAre("a.json"));
}

TEST_F(AtomicFileTest, ANewFileGetsTheUsualMode) {
    for (const mode_t mask : {0022U, 0077U, 0000U, 0002U}) {
        SCOPED_TRACE(mask);
        const Umask umask(mask);
        const fs::path location = directory_ / "new.json";
        writeAtomically(location, "{}");
        EXPECT_EQ(modeOf(location), 0666 & ~mask);
        fs::remove(location);
    }
}

TEST_F(AtomicFileTest, TheOldFilesModeIsKept) {
    const Umask umask(0077);
    const fs::path location = directory_.write("old.json", "old");
    for (const mode_t mode : {0644U, 0600U, 0666U, 0400U, 0755U, 0000U}) {
        SCOPED_TRACE(mode);
        ASSERT_EQ(::chmod(location.c_str(), mode), 0);
        writeAtomically(location, "new");
        EXPECT_EQ(modeOf(location), mode);
    }
}

TEST_F(AtomicFileTest, OnlyThePermissionBitsAreKept) {
    struct Row {
        const char* sentence;
        mode_t old;
        mode_t expected;
    };
    const Row rows[] = {
        {"the set-user-ID bit", 04755, 0755},
        {"the set-group-ID bit", 02755, 0755},
        {"the set-group-ID bit of a file that is not executed", 02644, 0644},
        {"the restricted deletion bit", 01644, 0644},
        {"all of them", 07777, 0777},
    };
    const Umask umask(0022);
    const fs::path location = directory_.write("old.json", "old");
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        ASSERT_EQ(::chmod(location.c_str(), row.old), 0);
        ASSERT_EQ(modeOf(location), row.old);
        writeAtomically(location, "new");
        EXPECT_EQ(modeOf(location), row.expected);
    }
}

// The old file's owner must not be able to write into the file of another user who publishes there.
TEST_F(AtomicFileTest, OnlyTheNewOwnerMayWriteWhenTheOwnerChanges) {
    struct Row {
        const char* sentence;
        uid_t owner;
        gid_t group;
        mode_t old;
        mode_t expected; ///< When the old file is another user's or group's.
    };
    constexpr unsigned other = 65534;
    const uid_t own = ::geteuid();
    const gid_t ownGroup = ::getegid();
    const Row rows[] = {
        {"another owner", other, ownGroup, 0666, 0644},
        {"another group", own, other, 0666, 0644},
        {"both", other, other, 0777, 0755},
        {"both, and the bits for other identities", other, other, 06775, 0755},
        {"only the owner may write", other, other, 0640, 0640},
        {"not even the owner may write", other, other, 0466, 0444},
    };
    const Umask umask(0);
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        const fs::path location = directory_.write("old.json", "old");
        // An ordinary user cannot give a file away; then its owner stays, and so do its permissions.
        const bool changed = ::chown(location.c_str(), row.owner, row.group) == 0;
        ASSERT_EQ(::chmod(location.c_str(), row.old), 0);
        writeAtomically(location, "new");
        EXPECT_EQ(modeOf(location), changed ? row.expected : row.old & 0777);
        fs::remove(location);
    }
}

TEST_F(AtomicFileTest, LinksAreFollowed) {
    directory_.write("there/target.json", "old");
    fs::create_symlink("there/target.json", directory_ / "link");
    fs::create_symlink(directory_ / "link", directory_ / "absolute");
    fs::create_directory_symlink("there", directory_ / "directory");
    fs::create_symlink("there/fresh.json", directory_ / "dangling");
    writeAtomically(directory_ / "link", "one");
    EXPECT_EQ(contentOf(directory_ / "there/target.json"), "one");
    writeAtomically(directory_ / "absolute", "two");
    EXPECT_EQ(contentOf(directory_ / "there/target.json"), "two");
    writeAtomically(directory_ / "directory/target.json", "three");
    EXPECT_EQ(contentOf(directory_ / "there/target.json"), "three");
    writeAtomically(directory_ / "dangling", "four");
    EXPECT_EQ(contentOf(directory_ / "there/fresh.json"), "four");
    for (const char* link : {"link", "absolute", "directory", "dangling"})
        EXPECT_TRUE(fs::is_symlink(directory_ / link)) << link;
    EXPECT_THAT(namesIn(directory_ / "there"), ElementsAre("fresh.json", "target.json"));
}

TEST_F(AtomicFileTest, ARelativeLocationIsBelowTheWorkingDirectory) {
    const fs::path before = fs::current_path();
    fs::current_path(directory_.path());
    writeAtomically("a.json", "{}");
    writeAtomically("./../" + directory_.path().filename().string() + "/b.json", "[]");
    fs::current_path(before);
    EXPECT_EQ(contentOf(directory_ / "a.json"), "{}");
    EXPECT_EQ(contentOf(directory_ / "b.json"), "[]");
}

struct RefusalRow {
    const char* sentence;
    fs::path location;
    std::errc code;
};

TEST_F(AtomicFileTest, RefusesWhatCannotBeReplaced) {
    fs::create_directory(directory_ / "directory");
    fs::create_symlink("directory", directory_ / "link");
    fs::create_symlink("circle", directory_ / "circle");
    fs::create_symlink("no/where", directory_ / "dangling");
    directory_.write("file", "old");
    ASSERT_EQ(::mkfifo((directory_ / "fifo").c_str(), 0644), 0);
    const RefusalRow rows[] = {
        {"a directory", directory_ / "directory", std::errc::is_a_directory},
        {"a directory with a slash behind it", directory_ / "directory/", std::errc::is_a_directory},
        {"a directory, by a dot", directory_ / "directory/.", std::errc::is_a_directory},
        {"a directory, by two dots", directory_ / "directory/..", std::errc::is_a_directory},
        {"a link to a directory", directory_ / "link", std::errc::is_a_directory},
        {"the root", "/", std::errc::is_a_directory},
        {"a link to itself", directory_ / "circle", std::errc::too_many_symbolic_link_levels},
        {"a link into no directory", directory_ / "dangling", std::errc::no_such_file_or_directory},
        {"no directory", directory_ / "no/a.json", std::errc::no_such_file_or_directory},
        {"a file as a directory", directory_ / "file/a.json", std::errc::not_a_directory},
        {"a NUL byte", directory_ / "a\0b"s, std::errc::invalid_argument},
        {"a name that is too long", directory_ / std::string(256, 'n'), std::errc::filename_too_long},
        {"a FIFO", directory_ / "fifo", std::errc::operation_not_supported},
        {"a device", "/dev/full", std::errc::operation_not_supported},
    };
    const std::vector<std::string> names = namesIn(directory_.path());
    const ProcessCounts before = countProcess();
    for (const RefusalRow& row : rows) {
        SCOPED_TRACE(row.sentence);
        try {
            writeAtomically(row.location, "new");
            ADD_FAILURE() << "was written";
        } catch (const fs::filesystem_error& error) {
            EXPECT_EQ(error.code(), row.code) << error.code().message();
        }
    }
    EXPECT_EQ(namesIn(directory_.path()), names);
    EXPECT_EQ(contentOf(directory_ / "file"), "old");
    EXPECT_EQ(countProcess().descriptors, before.descriptors);
}

TEST_F(AtomicFileTest, AnEmptyLocationIsNotTheWorkingDirectory) {
    const fs::path before = fs::current_path();
    fs::current_path(directory_.path());
    std::string message;
    try {
        writeAtomically("", "new");
    } catch (const fs::filesystem_error& error) {
        EXPECT_EQ(error.code(), std::errc::invalid_argument);
        message = error.what();
    }
    fs::current_path(before);
    EXPECT_THAT(message, testing::HasSubstr("cannot write, because the location is empty"));
    EXPECT_THAT(namesIn(directory_.path()), ElementsAre());
}

TEST_F(AtomicFileTest, AFullDiskLeavesTheOldFileAndNothingElse) {
    const fs::path location = directory_.write("a.json", "old");
    const std::string content(100'000, 'k');
    for (const rlim_t size : {rlim_t{0}, rlim_t{1}, rlim_t{4096}, rlim_t{99'999}}) {
        SCOPED_TRACE(size);
        for (const fs::path& target : {location, directory_ / "new.json"}) {
            std::error_code code;
            try {
                const FullDisk full(size);
                writeAtomically(target, content);
            } catch (const fs::filesystem_error& error) {
                code = error.code();
            }
            EXPECT_EQ(code, std::errc::file_too_large);
        }
        EXPECT_EQ(contentOf(location), "old");
        EXPECT_THAT(namesIn(directory_.path()), ElementsAre("a.json"));
    }
}

/// What an ordinary user is told who writes here.
std::string attempt(const fs::path& location) {
    try {
        writeAtomically(location, "new");
        return "written";
    } catch (const fs::filesystem_error& error) {
        return error.code().message();
    }
}

TEST_F(AtomicFileTest, AnOrdinaryUserIsHeldToTheDirectorysRights) {
    const fs::path location = directory_.write("place/a.json", "old");
    fs::permissions(directory_.path(), fs::perms::all);
    fs::permissions(location, fs::perms::all);
    const auto outcomeWith = [&](unsigned mode) {
        EXPECT_EQ(::chmod((directory_ / "place").c_str(), mode), 0);
        return asOrdinaryUser([&] { return attempt(location); });
    };
    EXPECT_EQ(outcomeWith(0555), "Permission denied");
    EXPECT_EQ(contentOf(location), "old");
    EXPECT_EQ(outcomeWith(0666), "Permission denied");
    EXPECT_EQ(contentOf(location), "old");
    // Not listed, but searched and written: enough.
    EXPECT_EQ(outcomeWith(0333), "written");
    EXPECT_EQ(contentOf(location), "new");
    EXPECT_THAT(namesIn(directory_ / "place"), ElementsAre("a.json"));
}

} // namespace
} // namespace kinovane::test

// SPDX-License-Identifier: Apache-2.0

#include "common/files/regular_file.hpp"

#include <array>
#include <string>

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

#include <gtest/gtest.h>

#include "support/child_counts.hpp"
#include "support/ordinary_user.hpp"
#include "support/temporary_directory.hpp"

namespace kinovane::test {
namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;

class RegularFileTest : public testing::Test {
  protected:
    fs::path makeFIFO() const {
        const fs::path location = directory_ / "fifo";
        EXPECT_EQ(::mkfifo(location.c_str(), 0644), 0);
        return location;
    }

    fs::path makeSocket() const {
        const fs::path location = directory_ / "socket";
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        location.native().copy(address.sun_path, sizeof address.sun_path - 1);
        const Descriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
        EXPECT_EQ(::bind(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
        return location;
    }

    TemporaryDirectory directory_;
};

struct ContentRow {
    const char* sentence;
    std::string content;
};

TEST_F(RegularFileTest, ReadsTheWholeContent) {
    const ContentRow rows[] = {
        {"an empty file", ""},
        {"one byte", "a"},
        {"NUL bytes and line ends", "a\0\r\n\0"s},
        {"a file of several megabytes", std::string(5'000'001, 'k')},
    };
    for (const ContentRow& row : rows) {
        SCOPED_TRACE(row.sentence);
        const fs::path location = directory_.write("document", row.content);
        EXPECT_EQ(readDocument(location), row.content);
        EXPECT_EQ(RegularFile(location).size(), row.content.size());
        fs::remove(directory_ / "link");
        fs::create_symlink("document", directory_ / "link");
        EXPECT_EQ(readDocument(directory_ / "link"), row.content);
    }
}

TEST_F(RegularFileTest, ReadsAFileThatTellsNoSize) {
    // The kernel's own files say that they are empty.
    const fs::path location = "/proc/self/status";
    EXPECT_EQ(RegularFile(location).size(), 0U);
    EXPECT_TRUE(readDocument(location).starts_with("Name:"));
}

TEST_F(RegularFileTest, ReadsInPieces) {
    RegularFile file(directory_.write("document", "abcde"));
    std::array<std::byte, 3> buffer{};
    EXPECT_EQ(file.read(buffer), 3U);
    EXPECT_EQ(buffer[0], std::byte{'a'});
    EXPECT_EQ(file.read(buffer), 2U);
    EXPECT_EQ(buffer[0], std::byte{'d'});
    EXPECT_EQ(file.read(buffer), 0U);
}

struct RefusalRow {
    const char* sentence;
    fs::path location;
    std::errc code;
};

TEST_F(RegularFileTest, RefusesWhatIsNoFileWithoutWaiting) {
    fs::create_directory(directory_ / "directory");
    fs::create_symlink("nowhere", directory_ / "dangling");
    fs::create_symlink("circle", directory_ / "circle");
    directory_.write("file", "");
    const RefusalRow rows[] = {
        {"nothing", directory_ / "nothing", std::errc::no_such_file_or_directory},
        {"nothing, in no directory", directory_ / "no/thing", std::errc::no_such_file_or_directory},
        {"no name", "", std::errc::no_such_file_or_directory},
        {"a NUL byte in the name", directory_ / "file\0"s, std::errc::no_such_file_or_directory},
        {"a directory", directory_ / "directory", std::errc::is_a_directory},
        {"a link that leads nowhere", directory_ / "dangling", std::errc::no_such_file_or_directory},
        {"a link to itself", directory_ / "circle", std::errc::too_many_symbolic_link_levels},
        {"a file as a directory", directory_ / "file/document", std::errc::not_a_directory},
        {"a name that is too long", directory_ / std::string(300, 'n'), std::errc::filename_too_long},
        {"a FIFO that nobody writes to", makeFIFO(), std::errc::operation_not_supported},
        {"a socket", makeSocket(), std::errc::operation_not_supported},
        {"a device without end", "/dev/zero", std::errc::operation_not_supported},
        {"a device without content", "/dev/null", std::errc::operation_not_supported},
    };
    const ProcessCounts before = countProcess();
    for (const RefusalRow& row : rows) {
        SCOPED_TRACE(row.sentence);
        try {
            FAIL() << readDocument(row.location).size() << " bytes were read";
        } catch (const fs::filesystem_error& error) {
            EXPECT_EQ(error.code(), row.code) << error.code().message();
            EXPECT_EQ(error.path1(), row.location);
        }
    }
    EXPECT_EQ(countProcess().descriptors, before.descriptors);
}

TEST_F(RegularFileTest, AnEmptyLocationIsNotTheWorkingDirectory) {
    try {
        FAIL() << readDocument("").size() << " bytes were read";
    } catch (const fs::filesystem_error& error) {
        EXPECT_EQ(error.code(), std::errc::no_such_file_or_directory);
        EXPECT_NE(std::string(error.what()).find("cannot open, because the location is empty"),
                  std::string::npos)
            << error.what();
    }
}

TEST_F(RegularFileTest, RefusesAFileThatMayNotBeRead) {
    const fs::path location = directory_.write("document", "{}");
    fs::permissions(directory_.path(), fs::perms::all);
    fs::permissions(location, fs::perms::owner_write);
    const std::string outcome = asOrdinaryUser([&] {
        try {
            return readDocument(location);
        } catch (const fs::filesystem_error& error) {
            return error.code().message();
        }
    });
    EXPECT_EQ(outcome, "Permission denied");
}

TEST_F(RegularFileTest, RefusesAFileLargerThanAnyDocument) {
    const fs::path location = directory_.write("huge", "");
    fs::resize_file(location, maximumDocumentSize + 1); // Takes no room on the disk.
    try {
        FAIL() << readDocument(location).size() << " bytes were read";
    } catch (const fs::filesystem_error& error) {
        EXPECT_EQ(error.code(), std::errc::file_too_large);
    }
}

TEST_F(RegularFileTest, ADescriptorOfAnotherKindIsNotTakenForAFile) {
    const auto opened = [](const fs::path& location) {
        return Descriptor(::open(location.c_str(), RegularFile::openFlags));
    };
    const fs::path file = directory_.write("file", "abc");
    std::optional<RegularFile> regular = RegularFile::from(opened(file), file);
    ASSERT_TRUE(regular);
    EXPECT_EQ(regular->size(), 3U);
    EXPECT_FALSE(RegularFile::from(opened(directory_.path()), directory_.path()));
    const fs::path fifo = makeFIFO();
    EXPECT_FALSE(RegularFile::from(opened(fifo), fifo));
    EXPECT_THROW(RegularFile(opened(fifo), fifo), fs::filesystem_error);
}

} // namespace
} // namespace kinovane::test

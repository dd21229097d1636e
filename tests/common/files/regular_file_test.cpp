// SPDX-License-Identifier: Apache-2.0

#include "common/files/regular_file.hpp"

#include <array>
#include <chrono>
#include <fstream>
#include <functional>
#include <optional>
#include <span>
#include <stdexcept>
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

fs::path makeFIFO(const TemporaryDirectory& directory) {
    const fs::path location = directory / "fifo";
    EXPECT_EQ(::mkfifo(location.c_str(), 0644), 0);
    return location;
}

fs::path makeSocket(const TemporaryDirectory& directory) {
    const fs::path location = directory / "socket";
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    location.native().copy(address.sun_path, sizeof address.sun_path - 1);
    const Descriptor socket(::socket(AF_UNIX, SOCK_STREAM, 0));
    EXPECT_EQ(::bind(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    return location;
}

struct ContentRow {
    const char* sentence;
    std::string content;
};

TEST(RegularFile, ReadsTheWholeContent) {
    const TemporaryDirectory directory;
    const ContentRow rows[] = {
        {"an empty file", ""},
        {"one byte", "a"},
        {"NUL bytes and line ends", "a\0\r\n\0"s},
        {"a file of several megabytes", std::string(5'000'001, 'k')},
    };
    for (const ContentRow& row : rows) {
        SCOPED_TRACE(row.sentence);
        const fs::path location = directory.write("document", row.content);
        EXPECT_EQ(readDocument(location), row.content);
        EXPECT_EQ(RegularFile(location).size(), row.content.size());
        fs::remove(directory / "link");
        fs::create_symlink("document", directory / "link");
        EXPECT_EQ(readDocument(directory / "link"), row.content);
    }
}

#ifdef __linux__
TEST(RegularFile, ReadsAFileWithoutASize) {
    // The size of a file in /proc is 0.
    const fs::path location = "/proc/self/status";
    EXPECT_EQ(RegularFile(location).size(), 0U);
    EXPECT_TRUE(readDocument(location).starts_with("Name:"));
}
#endif

TEST(RegularFile, ReadsInChunks) {
    const TemporaryDirectory directory;
    RegularFile file(directory.write("document", "abcde"));
    std::array<std::byte, 3> buffer{};
    EXPECT_EQ(file.read(buffer), 3U);
    EXPECT_EQ(buffer[0], std::byte{'a'});
    EXPECT_EQ(file.read(buffer), 2U);
    EXPECT_EQ(buffer[0], std::byte{'d'});
    EXPECT_EQ(file.read(buffer), 0U);
}

TEST(RegularFile, NoticesThatItsContentWasChanged) {
    struct Row {
        const char* sentence;
        std::function<void(const fs::path& file)> change;
        bool isNoticed;
    };
    const auto write = [](const fs::path& file, std::ios::openmode mode, const char* text) {
        std::ofstream(file, std::ios::binary | mode) << text;
    };
    const Row rows[] = {
        {"nothing", [](const fs::path& /*file*/) {}, false},
        {"read by another descriptor", [](const fs::path& file) { contentOf(file); }, false},
        {"more bytes", [&](const fs::path& file) { write(file, std::ios::app, "x"); }, true},
        {"fewer bytes", [](const fs::path& file) { fs::resize_file(file, 2); }, true},
        {"the same number of other bytes", [&](const fs::path& file) { write(file, std::ios::in, "abx"); },
         true},
        {"written anew", [&](const fs::path& file) { write(file, std::ios::trunc, "xyz"); }, true},
        {"another name", [](const fs::path& file) { fs::rename(file, file.native() + "2"); }, false},
        {"removed", [](const fs::path& file) { fs::remove(file); }, false},
        {"replaced",
         [&](const fs::path& file) {
             write(file.native() + "2", std::ios::trunc, "xyz");
             fs::rename(file.native() + "2", file);
         },
         false},
        {"other permissions", [](const fs::path& file) { fs::permissions(file, fs::perms::owner_read); },
         false},
    };
    const TemporaryDirectory directory;
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        const fs::path location = directory.write("document", "abc");
        // Otherwise the change could have the same time, where the system counts in milliseconds.
        fs::last_write_time(location, fs::last_write_time(location) - std::chrono::hours(1));
        const RegularFile file(location);
        std::optional<RegularFile> other =
            RegularFile::from(Descriptor(::open(location.c_str(), RegularFile::openFlags)), location);
        row.change(location);
        EXPECT_EQ(file.hasChanged(), row.isNoticed);
        EXPECT_EQ(other->hasChanged(), row.isNoticed);
        fs::remove(location);
    }
}

TEST(ReadUnchanged, ReadsAFileAgainThatIsChangedMeanwhile) {
    struct Row {
        const char* sentence;
        int changedReads;
        std::string outcome;
        int reads;
    };
    const Row rows[] = {
        {"never changed", 0, "", 1},
        {"changed once", 1, "", 2},
        {"changed each time but the last", maximumReads - 1, "", maximumReads},
        {"changed each time", maximumReads, "changed while it was read: Device or resource busy",
         maximumReads},
    };
    for (const Row& row : rows)
        for (const bool isRefused : {false, true}) {
            SCOPED_TRACE(std::string(row.sentence) + (isRefused ? ", refused when it was changed" : ""));
            const TemporaryDirectory directory;
            const fs::path location = directory.write("document", "a");
            int reads = 0;
            std::string outcome;
            std::string content;
            try {
                readUnchanged(location, [&](RegularFile& file) {
                    content.assign(file.size(), ' ');
                    file.read(std::as_writable_bytes(std::span(content)));
                    if (reads++ < row.changedReads) {
                        std::ofstream(location, std::ios::app) << 'b';
                        if (isRefused)
                            throw std::runtime_error("refused");
                    }
                });
            } catch (const fs::filesystem_error& error) {
                EXPECT_EQ(error.path1(), location);
                outcome = "changed while it was read: " + error.code().message();
            } catch (const std::runtime_error& error) {
                outcome = error.what();
            }
            EXPECT_EQ(outcome, isRefused && !row.outcome.empty() ? "refused" : row.outcome);
            EXPECT_EQ(reads, row.reads);
            if (outcome.empty())
                EXPECT_EQ(content, contentOf(location));
        }
}

TEST(ReadUnchanged, ReportsTheErrorOfAFileThatIsNotChanged) {
    const TemporaryDirectory directory;
    int reads = 0;
    EXPECT_THROW(readUnchanged(directory.write("document", "a"),
                               [&](RegularFile& /*file*/) {
                                   ++reads;
                                   throw std::runtime_error("refused");
                               }),
                 std::runtime_error);
    EXPECT_EQ(reads, 1);
}

struct RefusalRow {
    const char* sentence;
    fs::path location;
    std::errc code;
};

TEST(RegularFile, RefusesOtherKindsOfFilesWithoutBlocking) {
    const TemporaryDirectory directory;
    fs::create_directory(directory / "directory");
    fs::create_symlink("nowhere", directory / "dangling");
    fs::create_symlink("circle", directory / "circle");
    directory.write("file", "");
    const RefusalRow rows[] = {
        {"a missing file", directory / "nothing", std::errc::no_such_file_or_directory},
        {"a missing directory", directory / "no/thing", std::errc::no_such_file_or_directory},
        {"an empty location", "", std::errc::no_such_file_or_directory},
        {"a NUL byte in the name", directory / "file\0"s, std::errc::no_such_file_or_directory},
        {"a directory", directory / "directory", std::errc::is_a_directory},
        {"a broken link", directory / "dangling", std::errc::no_such_file_or_directory},
        {"a link to itself", directory / "circle", std::errc::too_many_symbolic_link_levels},
        {"a file as a directory", directory / "file/document", std::errc::not_a_directory},
        {"a name that is too long", directory / std::string(300, 'n'), std::errc::filename_too_long},
        {"a FIFO without a writer", makeFIFO(directory), std::errc::operation_not_supported},
        {"a socket", makeSocket(directory), std::errc::operation_not_supported},
        {"an endless device", "/dev/zero", std::errc::operation_not_supported},
        {"an empty device", "/dev/null", std::errc::operation_not_supported},
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

TEST(RegularFile, RefusesAnEmptyLocation) {
    try {
        FAIL() << readDocument("").size() << " bytes were read";
    } catch (const fs::filesystem_error& error) {
        EXPECT_EQ(error.code(), std::errc::no_such_file_or_directory);
        EXPECT_NE(std::string(error.what()).find("cannot open, because the location is empty"),
                  std::string::npos)
            << error.what();
    }
}

TEST(RegularFile, RefusesAFileThatMayNotBeRead) {
    const TemporaryDirectory directory;
    const fs::path location = directory.write("document", "{}");
    fs::permissions(directory.path(), fs::perms::all);
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

TEST(RegularFile, RefusesADocumentAboveTheMaximumSize) {
    const TemporaryDirectory directory;
    const fs::path location = directory.write("huge", "");
    fs::resize_file(location, maximumDocumentSize + 1); // A sparse file.
    try {
        FAIL() << readDocument(location).size() << " bytes were read";
    } catch (const fs::filesystem_error& error) {
        EXPECT_EQ(error.code(), std::errc::file_too_large);
    }
}

TEST(RegularFile, RefusesADescriptorOfAnotherKindOfFile) {
    const TemporaryDirectory directory;
    const auto opened = [](const fs::path& location) {
        return Descriptor(::open(location.c_str(), RegularFile::openFlags));
    };
    const fs::path file = directory.write("file", "abc");
    std::optional<RegularFile> regular = RegularFile::from(opened(file), file);
    ASSERT_TRUE(regular);
    EXPECT_EQ(regular->size(), 3U);
    EXPECT_FALSE(RegularFile::from(opened(directory.path()), directory.path()));
    const fs::path fifo = makeFIFO(directory);
    EXPECT_FALSE(RegularFile::from(opened(fifo), fifo));
    EXPECT_THROW(RegularFile(opened(fifo), fifo), fs::filesystem_error);
}

} // namespace
} // namespace kinovane::test

// SPDX-License-Identifier: Apache-2.0

#include <cstdio>
#include <span>

#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <kinovane/handoff.hpp>

#include "support/sample_film.hpp"
#include "support/sanitizers.hpp"

namespace kinovane::test {
namespace {

std::string digestOf(std::string_view text) {
    return VistrelHandoffBuilder::sha256(std::as_bytes(std::span(text)));
}

// Published test values, and values computed with other programs.
TEST(Digest, IsRightForKnownTexts) {
    struct Row {
        std::string_view sentence;
        std::string text;
        std::string expected;
    };
    const std::vector<Row> rows{
        {"nothing", "", "sha256:e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855"},
        {"three letters", "abc", "sha256:ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad"},
        {"a text of two blocks", "abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq",
         "sha256:248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1"},
        {"a byte of zero", std::string(1, '\0'),
         "sha256:6e340b9cffb37a989ca544e6bb780a2c78901d3fb33738768511a30617afa01d"},
        {"a million letters", std::string(1000000, 'a'),
         "sha256:cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0"},
    };
    const TemporaryDirectory directory;
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        EXPECT_EQ(digestOf(row.text), row.expected);
        EXPECT_EQ(VistrelHandoffBuilder::sha256(directory.write("text", row.text)), row.expected);
    }
}

TEST(Digest, IsTheSameForAFileAndItsBytes) {
    const TemporaryDirectory directory;
    constexpr std::size_t mebibyte = std::size_t{1} << 20U;
    for (const std::size_t size : {mebibyte - 1, mebibyte, mebibyte + 1, 2 * mebibyte, 3 * mebibyte + 17}) {
        std::string text(size, '\0');
        for (std::size_t index = 0; index < size; ++index)
            text[index] = static_cast<char>(index * 31 + index / 251);
        EXPECT_EQ(VistrelHandoffBuilder::sha256(directory.write("file", text)), digestOf(text)) << size;
    }
}

TEST(Digest, RefusesWhatIsNotARegularFile) {
    const TemporaryDirectory directory;
    ASSERT_EQ(::mkfifo((directory / "pipe").c_str(), 0666), 0);
    struct Row {
        std::filesystem::path file;
        std::errc expected;
    };
    const std::vector<Row> rows{
        {directory / "nothing", std::errc::no_such_file_or_directory},
        {directory.path(), std::errc::is_a_directory},
        {directory / "pipe", std::errc::operation_not_supported},
        {"/dev/zero", std::errc::operation_not_supported},
        {std::string("/dev/null\0", 10), std::errc::no_such_file_or_directory},
        {"", std::errc::no_such_file_or_directory},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.file);
        try {
            VistrelHandoffBuilder::sha256(row.file);
            ADD_FAILURE() << "no error";
        } catch (const std::filesystem::filesystem_error& error) {
            EXPECT_EQ(error.code(), row.expected);
            EXPECT_EQ(error.path1(), row.file);
        }
    }
}

/// The peak resident memory of this process, in bytes.
long peakMemory() {
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
#ifdef __APPLE__
    return usage.ru_maxrss;
#else
    return usage.ru_maxrss * 1024;
#endif
}

// In a child process, because the peak of this process may already be higher.
TEST(Digest, NeedsNoMoreMemoryForALargeFile) {
    // Under a sanitizer only the digest is checked, and the file is smaller.
    constexpr off_t size = memoryIsSanitized ? off_t{64} << 20U : off_t{3} << 30U;
    constexpr long limit = memoryIsSanitized ? 1L << 40U : 64L << 20U;
    const std::string expected =
        memoryIsSanitized ? "sha256:3b6a07d0d404fab4e23b6d34bc6696a6a312dd92821332385e5af7c01c421351"
                          : "sha256:305b66a59d15b252092fbda9d09711230c429f351897cbd430e7b55a35fd3b97";
    const TemporaryDirectory directory;
    const std::filesystem::path file = directory.write("large.mov", "");
    ASSERT_EQ(::truncate(file.c_str(), size), 0); // A sparse file, which needs no disk space.
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        const long before = peakMemory();
        const bool right = VistrelHandoffBuilder::sha256(file) == expected;
        const long growth = peakMemory() - before;
        ::_exit(!right ? 1 : growth > limit ? 2 : 0);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0) << "1: wrong digest, 2: too much memory";
}

} // namespace
} // namespace kinovane::test

// SPDX-License-Identifier: Apache-2.0

#include "film/file_content.hpp"

#include <filesystem>
#include <string>
#include <system_error>

#include <gtest/gtest.h>

#include "support/temporary_directory.hpp"

namespace kinovane::test {

namespace {

namespace fs = std::filesystem;

TEST(FileContent, IsRead) {
    const TemporaryDirectory directory;
    const struct {
        const char* sentence;
        std::string content;
    } rows[]{
        {"an empty file", ""},
        {"bytes", std::string("\0\xff\r\n", 4)},
        {"more than is read at once", std::string(200'000, 'a') + "b"},
    };
    for (const auto& [sentence, content] : rows) {
        const fs::path file = directory.write("file", content);
        std::error_code error = std::make_error_code(std::errc::io_error);
        EXPECT_EQ(tool::contentOf(file, error, content.size()), content) << sentence;
        EXPECT_EQ(error, std::error_code()) << sentence;
        EXPECT_EQ(tool::beginningOf(file), content.substr(0, 4096)) << sentence;
    }
}

TEST(FileContent, IsEmptyWhenItCannotBeRead) {
    const TemporaryDirectory directory;
    directory.write("file", "content");
    const struct {
        const char* sentence;
        fs::path file;
        std::errc expected;
    } rows[]{
        {"a folder", directory.path(), std::errc::is_a_directory},
        {"no file", directory / "none", std::errc::no_such_file_or_directory},
        {"a file in place of a folder", directory / "file/none", std::errc::not_a_directory},
        {"a larger file", directory / "file", std::errc::file_too_large},
        {"a file without a size and without an end", "/dev/zero", std::errc::file_too_large},
    };
    for (const auto& [sentence, file, expected] : rows) {
        std::error_code error;
        EXPECT_EQ(tool::contentOf(file, error, 6), "") << sentence;
        EXPECT_EQ(error, expected) << sentence;
    }
    EXPECT_EQ(tool::beginningOf(directory.path()), "");
    EXPECT_EQ(tool::beginningOf(directory / "none"), "");
}

} // namespace

} // namespace kinovane::test

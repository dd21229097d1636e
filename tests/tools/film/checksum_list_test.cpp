// SPDX-License-Identifier: Apache-2.0

#include "film/checksum_list.hpp"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "session/failure.hpp"
#include "support/temporary_directory.hpp"

namespace kinovane::test {

namespace {

using tool::Checksum;

const std::string digits = "0123456789abcdef0123456789abcdef0123456789abcdef0123456789abcdef";
const std::string digest = "sha256:" + digits;

struct Row {
    std::string sentence;
    std::string path;
    std::string line;
};

const std::vector<Row> rows{
    {"a path", "clips/a.mp4", digits + "  clips/a.mp4\n"},
    {"a path with spaces", "a b ", digits + "  a b \n"},
    {"a path with a backslash", "a\\b", "\\" + digits + "  a\\\\b\n"},
    {"a path with a line feed", "a\nb", "\\" + digits + "  a\\nb\n"},
    {"a path with a carriage return", "a\r", "\\" + digits + "  a\\r\n"},
    {"a path that is not UTF-8", "caf\xe9", digits + "  caf\xe9\n"},
    {"a path that begins with an asterisk", "*a", digits + "  *a\n"},
};

TEST(ChecksumList, IsWrittenInTheFormatOfSha256sum) {
    for (const Row& row : rows)
        EXPECT_EQ(tool::checksumLine({row.path, digest}), row.line) << row.sentence;
}

TEST(ChecksumList, IsRead) {
    const TemporaryDirectory directory;
    for (const Row& row : rows)
        EXPECT_EQ(tool::readChecksumList(directory.write("list", row.line)),
                  (std::vector<Checksum>{{row.path, digest}}))
            << row.sentence;
    const std::vector<Row> otherForms{
        {"the binary mode", "a", digits + " *a\n"},
        {"capitals", "a", "0123456789ABCDEF" + digits.substr(16) + "  a\n"},
        {"lines that end with CR and LF", "a", digits + "  a\r\n"},
        {"an escaped path and CR and LF", "a\r", "\\" + digits + "  a\\r\r\n"},
        {"no line feed at the end", "a", digits + "  a"},
    };
    for (const Row& row : otherForms)
        EXPECT_EQ(tool::readChecksumList(directory.write("list", row.line)),
                  (std::vector<Checksum>{{row.path, digest}}))
            << row.sentence;
    EXPECT_EQ(tool::readChecksumList(directory.write("list", "")), std::vector<Checksum>{});
    EXPECT_EQ(tool::readChecksumList(directory.write("list", digits + "  a\n" + digits + " *b\n")),
              (std::vector<Checksum>{{"a", digest}, {"b", digest}}));
}

TEST(ChecksumList, RefusesOtherLines) {
    struct BadRow {
        std::string sentence;
        std::string text;
        std::string line; ///< The number of the refused line.
    };
    const std::string good = digits + "  a\n";
    const std::vector<BadRow> badRows{
        {"a comment", good + "# b\n", "2"},
        {"an empty line", good + "\n" + good, "2"},
        {"another format", "SHA256 (a) = " + digits + "\n", "1"},
        {"too few digits", digits.substr(1) + "  a\n", "1"},
        {"too many digits", digits + "0  a\n", "1"},
        {"other digits", "g" + digits.substr(1) + "  a\n", "1"},
        {"one space", digits + " a\n", "1"},
        {"no path", good + good + digits + "  \n", "3"},
        {"an unknown escape", "\\" + digits + "  a\\t\n", "1"},
        {"half an escape", "\\" + digits + "  a\\\n", "1"},
    };
    const TemporaryDirectory directory;
    for (const BadRow& row : badRows) {
        const std::filesystem::path file = directory.write("list", row.text);
        try {
            tool::readChecksumList(file);
            ADD_FAILURE() << row.sentence;
        } catch (const tool::CommandError& error) {
            EXPECT_EQ(error.status(), tool::ExitStatus::fileSystem) << row.sentence;
            EXPECT_EQ(error.what(),
                      file.string() + ":" + row.line +
                          R"(: not 64 hexadecimal digits, a space, a second space or "*", and a path)")
                << row.sentence;
        }
    }
}

TEST(ChecksumList, ReportsAFileThatCannotBeRead) {
    const TemporaryDirectory directory;
    for (const char* name : {"none", "."})
        EXPECT_THROW(tool::readChecksumList(directory / name), std::filesystem::filesystem_error) << name;
}

} // namespace

} // namespace kinovane::test

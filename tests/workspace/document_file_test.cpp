// SPDX-License-Identifier: Apache-2.0

#include "workspace/document_file.hpp"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <kinovane/json.hpp>

#include "support/temporary_directory.hpp"

namespace kinovane::test {
namespace {

using Integers = std::vector<std::int64_t>;

TEST(DocumentFile, DecodesAFile) {
    struct Row {
        const char* sentence;
        std::string content;
        Integers integers;
    };
    std::string smallElements = "[0";
    for (int element = 1; element < 100'000; ++element)
        smallElements += ",0";
    const Row rows[] = {
        {"a short document", "[1,2,3]", {1, 2, 3}},
        {"a byte-order mark", "\xEF\xBB\xBF[1]", {1}},
        {"white space that is longer than a chunk", std::string(200'000, ' ') + "[1]", {1}},
        {"values that take many times the document's size", smallElements + "]", Integers(100'000, 0)},
    };
    const TemporaryDirectory directory;
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        const auto file = directory.write("document.json", row.content);
        EXPECT_EQ(decodeDocument<Integers>(file), row.integers);
    }
}

TEST(DocumentFile, ReportsAWrongDocument) {
    struct Row {
        const char* sentence;
        std::string content;
        const char* message;
    };
    const Row rows[] = {
        {"an empty file", "", "line 1, column 1: the document ends too early"},
        {"a syntax error", "[1,\n2,x]", "line 2, column 3: this is not valid JSON"},
        {"a wrong element", "[1,true]", "[1]: expected an integer, found true"},
    };
    const TemporaryDirectory directory;
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        const auto file = directory.write("document.json", row.content);
        try {
            static_cast<void>(decodeDocument<Integers>(file));
            ADD_FAILURE() << "was decoded";
        } catch (const JSONDecodingError& error) {
            EXPECT_STREQ(error.what(), row.message);
        }
    }
}

TEST(DocumentFile, ReportsWhatCannotBeRead) {
    const TemporaryDirectory directory;
    const auto codeOf = [](const std::filesystem::path& location) {
        try {
            static_cast<void>(decodeDocument<Integers>(location));
            return std::error_code();
        } catch (const std::filesystem::filesystem_error& error) {
            EXPECT_EQ(error.path1(), location);
            return error.code();
        }
    };
    EXPECT_EQ(codeOf(directory / "missing.json"), std::errc::no_such_file_or_directory);
    EXPECT_EQ(codeOf(directory.path()), std::errc::is_a_directory);
}

} // namespace
} // namespace kinovane::test

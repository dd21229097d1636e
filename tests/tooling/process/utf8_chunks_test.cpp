// SPDX-License-Identifier: Apache-2.0

#include "tooling/process/utf8_chunks.hpp"

#include <random>

#include <gmock/gmock.h>

#include "common/utf8.hpp"

namespace kinovane::test {
namespace {

TEST(UTF8Chunks, EndWhereACharacterEnds) {
    struct Row {
        std::string_view sentence;
        std::vector<std::string> reads;
        std::vector<std::string> chunks; ///< One for each read, then the last.
    };
    const std::vector<Row> rows{
        {"ASCII passes", {"abc", "d"}, {"abc", "d", ""}},
        {"a character of two bytes is kept together", {"a\xC3", "\xA9z"}, {"a", "\xC3\xA9z", ""}},
        {"three bytes, one at a time", {"\xE2", "\x82", "\xAC"}, {"", "", "\xE2\x82\xAC", ""}},
        {"four bytes, cut in the middle", {"\xF0\x9F", "\x8E\xAC."}, {"", "\xF0\x9F\x8E\xAC.", ""}},
        {"a character that is never completed", {"a\xE2\x82"}, {"a", "\xEF\xBF\xBD"}},
        {"a beginning that goes on as something else",
         {"\xE2\x82", "a"},
         {"",
          "\xEF\xBF\xBD"
          "a",
          ""}},
        {"a byte that is not UTF-8", {"\xFF"}, {"", "\xEF\xBF\xBD"}},
        {"a continuation without a beginning", {"\x80"}, {"\xEF\xBF\xBD", ""}},
        {"no bytes", {"", ""}, {"", "", ""}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        UTF8Chunks chunks;
        std::vector<std::string> found;
        for (const std::string& read : row.reads)
            found.push_back(chunks.next(read));
        found.push_back(chunks.last());
        EXPECT_EQ(found, row.chunks);
    }
}

TEST(UTF8Chunks, AreTogetherTheRepairedText) {
    std::mt19937 random(7); // NOLINT(cert-msc51-cpp): the same texts in every run
    constexpr std::string_view bytes = "a\x80\xBF\xC3\xA9\xE2\x82\xAC\xED\xA0\xF0\x9F\x8E\xF4\x90\xFF";
    for (int round = 0; round < 20000; ++round) {
        std::string text;
        std::string joined;
        UTF8Chunks chunks;
        for (auto reads = random() % 6; reads > 0; --reads) {
            std::string read;
            for (auto length = random() % 6; length > 0; --length)
                read += bytes[random() % bytes.size()];
            text += read;
            joined += chunks.next(read);
        }
        joined += chunks.last();
        ASSERT_EQ(joined, repairUTF8(text)) << testing::PrintToString(text);
    }
}

} // namespace
} // namespace kinovane::test

// SPDX-License-Identifier: Apache-2.0

#include <algorithm>
#include <cstring>
#include <string>
#include <system_error>

#include <gtest/gtest.h>

#include "common/json/decoder.hpp"
#include "common/json/example_record.hpp"

namespace kinovane::test {
namespace {

using Integers = std::vector<std::int64_t>;

/// Gives a text in chunks of at most `chunkSize` bytes.
json::ReadChunk chunksOf(std::string_view text, std::size_t chunkSize) {
    return [text, chunkSize](std::span<std::byte> buffer) mutable {
        const std::size_t count = std::min({chunkSize, buffer.size(), text.size()});
        std::memcpy(buffer.data(), text.data(), count);
        text.remove_prefix(count);
        return count;
    };
}

struct Row {
    const char* sentence;
    std::string document;
};

TEST(JSONDecoder, DecodesADocumentInChunks) {
    const Row rows[] = {
        {"a plain document", std::string(fullSceneText)},
        {"a document with a byte-order mark", "\xEF\xBB\xBF" + std::string(fullSceneText)},
        {"white space at both ends", " \n" + std::string(fullSceneText) + "\n "},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        for (const std::size_t chunkSize : {1U, 2U, 3U, 7U, 64U, 1000U})
            for (const std::size_t expectedSize : {std::size_t{0}, row.document.size()}) {
                Scene scene;
                EXPECT_TRUE(json::decodeInto(&scene, json::shapeOf<Scene>(),
                                             chunksOf(row.document, chunkSize), expectedSize));
                EXPECT_TRUE(scene == fullScene()) << "in chunks of " << chunkSize;
            }
    }
}

TEST(JSONDecoder, JoinsAStringThatIsSplitBetweenChunks) {
    const std::string text(200'000, 'k');
    std::string value;
    EXPECT_TRUE(json::decodeInto(&value, json::shapeOf<std::string>(), chunksOf('"' + text + '"', 1000), 0));
    EXPECT_EQ(value, text);
}

TEST(JSONDecoder, LeavesTheValueEmptyWhenItNeedsTheWholeText) {
    std::string smallElements = "[0";
    for (int element = 0; element < 100'000; ++element)
        smallElements += ",0";
    const Row rows[] = {
        {"an empty document", ""},
        {"a syntax error", "[1,2,x]"},
        {"a document that ends too early", "[1,2"},
        {"text after the document", "[1,2] 3"},
        {"values that take many times the document's size", smallElements + "]"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        Integers integers;
        EXPECT_FALSE(json::decodeInto(&integers, json::shapeOf<Integers>(), chunksOf(row.document, 4), 0));
        EXPECT_EQ(integers, Integers());
        EXPECT_EQ(integers.capacity(), 0U);
    }
}

TEST(JSONDecoder, ReportsAWrongValueInAChunk) {
    Integers integers;
    try {
        static_cast<void>(json::decodeInto(&integers, json::shapeOf<Integers>(), chunksOf("[1,true]", 3), 0));
        FAIL() << "was decoded";
    } catch (const JSONDecodingError& error) {
        EXPECT_STREQ(error.what(), "[1]: expected an integer, found true");
        EXPECT_EQ(error.path(), "[1]");
    }
}

TEST(JSONDecoder, PassesOnAnErrorOfReadingAChunk) {
    Integers integers;
    const auto fail = [](std::span<std::byte>) -> std::size_t {
        throw std::system_error(make_error_code(std::errc::io_error));
    };
    EXPECT_THROW(static_cast<void>(json::decodeInto(&integers, json::shapeOf<Integers>(), fail, 0)),
                 std::system_error);
}

} // namespace
} // namespace kinovane::test

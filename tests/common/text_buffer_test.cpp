// SPDX-License-Identifier: Apache-2.0

#include "common/text_buffer.hpp"

#include <algorithm>
#include <string>
#include <utility>

#include <gtest/gtest.h>

namespace kinovane {
namespace {

std::string joinedChunks(const TextBuffer& buffer) {
    std::string text;
    for (const std::string_view chunk : buffer.chunks())
        text += chunk;
    return text;
}

/// A text of which no two parts are equal, so that a lost, repeated or misplaced part is noticed.
std::string numberedText(std::size_t size) {
    std::string text;
    for (std::size_t number = 0; text.size() < size; ++number)
        text += std::to_string(number) + ' ';
    text.resize(size);
    return text;
}

TEST(TextBuffer, HoldsEverythingThatWasAppended) {
    struct Row {
        const char* sentence;
        std::size_t size;
        std::size_t step;
    };
    constexpr Row rows[] = {
        {"an empty text", 0, 1},
        {"one character", 1, 1},
        {"single characters, over several chunks", 10'000, 1},
        {"exactly one chunk", 1024, 1024},
        {"one character more than the first chunk", 1025, 1025},
        {"parts that cross the end of every chunk", 3'000'000, 999},
        {"more than the largest chunk, at once", 9'000'001, 9'000'001},
        {"more than two of the largest chunks, in large parts", 20'000'000, 3'000'003},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        const std::string text = numberedText(row.size);
        TextBuffer buffer;
        for (std::size_t position = 0; position < text.size(); position += row.step)
            buffer.append(std::string_view(text).substr(position, row.step));
        EXPECT_EQ(buffer.size(), text.size());
        EXPECT_TRUE(joinedChunks(buffer) == text);
        EXPECT_TRUE(std::move(buffer).join() == text);
    }
}

TEST(TextBuffer, AppendsSingleCharactersAndEmptyTexts) {
    TextBuffer buffer;
    buffer.append(std::string_view());
    EXPECT_TRUE(buffer.chunks().empty());
    for (int count = 0; count < 5000; ++count) {
        buffer.append('x');
        buffer.append(std::string_view());
    }
    EXPECT_EQ(std::move(buffer).join(), std::string(5000, 'x'));
}

TEST(TextBuffer, HoldsOnlyWhatWasCommittedOfPreparedSpace) {
    TextBuffer buffer;
    const std::span<char> space = buffer.prepare();
    ASSERT_GE(space.size(), 3U);
    std::fill(space.begin(), space.end(), 'x');
    buffer.commit(3);
    EXPECT_EQ(buffer.size(), 3U);
    EXPECT_EQ(buffer.prepare().data(), space.data() + 3);
    // More than the first chunk has left, so this space is in a new one.
    char* const contiguous = buffer.prepare(100'000);
    std::fill_n(contiguous, 100'000, 'y');
    buffer.commit(100'000);
    EXPECT_EQ(joinedChunks(buffer), "xxx" + std::string(100'000, 'y'));
}

} // namespace
} // namespace kinovane

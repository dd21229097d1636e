// SPDX-License-Identifier: Apache-2.0

#include "common/text_buffer.hpp"

#include <algorithm>
#include <string>
#include <utility>

#include <gtest/gtest.h>

namespace kinovane {
namespace {

std::string joinedPieces(const TextBuffer& buffer) {
    std::string text;
    for (const std::string_view piece : buffer.pieces())
        text += piece;
    return text;
}

/// Tells places apart, so that a lost or doubled part shows.
std::string numberedText(std::size_t size) {
    std::string text;
    for (std::size_t number = 0; text.size() < size; ++number)
        text += std::to_string(number) + ' ';
    text.resize(size);
    return text;
}

TEST(TextBuffer, KeepsWhateverIsAppended) {
    struct Row {
        const char* sentence;
        std::size_t size;
        std::size_t step;
    };
    constexpr Row rows[] = {
        {"nothing", 0, 1},
        {"one character", 1, 1},
        {"character by character, over the end of several pieces", 10'000, 1},
        {"a piece that is filled to its last character", 1024, 1024},
        {"a text longer than the first piece", 1025, 1025},
        {"parts that never fit a piece's end", 3'000'000, 999},
        {"more than the largest piece, at once", 9'000'001, 9'000'001},
        {"more than two of the largest pieces, in large parts", 20'000'000, 3'000'003},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        const std::string text = numberedText(row.size);
        TextBuffer buffer;
        for (std::size_t position = 0; position < text.size(); position += row.step)
            buffer.append(std::string_view(text).substr(position, row.step));
        EXPECT_EQ(buffer.size(), text.size());
        EXPECT_TRUE(joinedPieces(buffer) == text);
        EXPECT_TRUE(std::move(buffer).join() == text);
    }
}

TEST(TextBuffer, TakesSingleCharactersAndNoText) {
    TextBuffer buffer;
    buffer.append(std::string_view());
    EXPECT_TRUE(buffer.pieces().empty());
    for (int count = 0; count < 5000; ++count) {
        buffer.append('x');
        buffer.append(std::string_view());
    }
    EXPECT_EQ(std::move(buffer).join(), std::string(5000, 'x'));
}

TEST(TextBuffer, CountsOnlyTheRoomThatWasUsed) {
    TextBuffer buffer;
    const std::span<char> room = buffer.room();
    ASSERT_GE(room.size(), 3U);
    std::fill(room.begin(), room.end(), 'x');
    buffer.advance(3);
    EXPECT_EQ(buffer.size(), 3U);
    EXPECT_EQ(buffer.room().data(), room.data() + 3);
    // What does not fit goes to a new piece as a whole.
    char* const space = buffer.room(100'000);
    std::fill_n(space, 100'000, 'y');
    buffer.advance(100'000);
    EXPECT_EQ(joinedPieces(buffer), "xxx" + std::string(100'000, 'y'));
}

} // namespace
} // namespace kinovane

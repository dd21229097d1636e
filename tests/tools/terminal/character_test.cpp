// SPDX-License-Identifier: Apache-2.0

#include "terminal/character.hpp"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace kinovane::tool {

namespace {

TEST(Character, IsACodePointOrAByteThatIsNotUTF8) {
    struct Row {
        std::string sentence, text;
        std::int32_t codePoint;
        std::size_t length;
    };
    constexpr std::int32_t none = Character::notUTF8;
    const std::vector<Row> rows{
        {"a letter", "ab", 'a', 1},
        {"NUL", std::string("\0a", 2), 0, 1},
        {"two bytes", "é", 0xE9, 2},
        {"three bytes", "灯", 0x706F, 3},
        {"four bytes", "🎬", 0x1F3AC, 4},
        {"the last code point", "\xf4\x8f\xbf\xbf", 0x10FFFF, 4},
        {"a noncharacter", "\xef\xb7\x90", 0xFDD0, 3},
        {"a byte that UTF-8 never has", "\xff", none, 1},
        {"a continuation byte", "\x80", none, 1},
        {"an incomplete character", "\xe7\x81", none, 1},
        {"an interrupted character", "\xe7\x81z", none, 1},
        {"an overlong slash of two bytes", "\xc0\xaf", none, 1},
        {"an overlong slash of three bytes", "\xe0\x80\xaf", none, 1},
        {"an overlong slash of four bytes", "\xf0\x80\x80\xaf", none, 1},
        {"a surrogate", "\xed\xa0\x80", none, 1},
        {"beyond the last code point", "\xf4\x90\x80\x80", none, 1},
    };
    for (const Row& row : rows) {
        const Character character = firstCharacter(row.text);
        EXPECT_EQ(character.codePoint, row.codePoint) << row.sentence;
        EXPECT_EQ(character.length, row.length) << row.sentence;
    }
}

TEST(Character, IsABidirectionalControlInFourRanges) {
    std::vector<std::int32_t> controls;
    for (std::int32_t codePoint = 0; codePoint <= 0x10FFFF; ++codePoint)
        if (isBidirectionalControl(codePoint))
            controls.push_back(codePoint);
    EXPECT_EQ(controls, (std::vector<std::int32_t>{0x061C, 0x200E, 0x200F, 0x202A, 0x202B, 0x202C, 0x202D,
                                                   0x202E, 0x2066, 0x2067, 0x2068, 0x2069}));
}

TEST(Character, IsPrintableUnlessATerminalMustNotGetIt) {
    struct Row {
        std::string sentence;
        std::int32_t first, last;
        bool expected;
    };
    const std::vector<Row> rows{
        {"a byte that is not UTF-8", Character::notUTF8, Character::notUTF8, false},
        {"C0 controls", 0, 0x1F, false},
        {"printable ASCII", 0x20, 0x7E, true},
        {"DEL and C1 controls", 0x7F, 0x9F, false},
        {"Latin-1", 0xA0, 0xAC, true},
        {"a soft hyphen", 0xAD, 0xAD, false},
        {"combining marks", 0x300, 0x36F, true},
        {"an Arabic letter mark", 0x61C, 0x61C, false},
        {"a zero-width space", 0x200B, 0x200B, false},
        {"a non-joiner and a joiner", 0x200C, 0x200D, true},
        {"directional marks", 0x200E, 0x200F, false},
        {"separators and directional embeddings", 0x2028, 0x202E, false},
        {"a word joiner, isolates and deprecated controls", 0x2060, 0x206F, false},
        {"private use", 0xE000, 0xF8FF, true},
        {"style markers and other noncharacters", 0xFDD0, 0xFDEF, false},
        {"variation selectors", 0xFE00, 0xFE0F, true},
        {"a byte-order mark", 0xFEFF, 0xFEFF, false},
        {"interlinear annotations", 0xFFF0, 0xFFFB, false},
        {"a replacement character", 0xFFFC, 0xFFFD, true},
        {"the last noncharacters of a plane", 0xFFFE, 0xFFFF, false},
        {"emoji", 0x1F300, 0x1F64F, true},
        {"the last noncharacters of the next plane", 0x1FFFE, 0x1FFFF, false},
        {"tag characters", 0xE0000, 0xE007F, false},
        {"variation selectors of ideographs", 0xE0100, 0xE01EF, true},
    };
    for (const Row& row : rows)
        for (std::int32_t codePoint = row.first; codePoint <= row.last; ++codePoint)
            EXPECT_EQ(isPrintable(codePoint), row.expected) << row.sentence << ": " << codePoint;
}

} // namespace

} // namespace kinovane::tool

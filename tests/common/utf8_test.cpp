// SPDX-License-Identifier: Apache-2.0

#include "common/utf8.hpp"

#include <cstdint>
#include <optional>
#include <random>
#include <string>

#include <gtest/gtest.h>

namespace kinovane {
namespace {

using namespace std::string_literals;

const std::string replacement = "\uFFFD";

/// An independent implementation to compare with: decodes each code point and checks its value.
bool referenceIsUTF8(std::string_view text) {
    std::size_t position = 0;
    while (position < text.size()) {
        const auto first = static_cast<unsigned char>(text[position++]);
        if (first < 0x80)
            continue;
        std::size_t following = 0;
        while (following < 8 && ((first << following) & 0x80) != 0)
            ++following;
        if (following < 2 || following > 4)
            return false;
        unsigned long codePoint = first & (0x7FU >> following);
        const std::size_t length = following--;
        for (; following > 0; --following) {
            if (position == text.size() || (static_cast<unsigned char>(text[position]) & 0xC0) != 0x80)
                return false;
            codePoint = codePoint << 6U | (static_cast<unsigned char>(text[position++]) & 0x3FU);
        }
        const std::size_t needed = codePoint < 0x80 ? 1 : codePoint < 0x800 ? 2 : codePoint < 0x10000 ? 3 : 4;
        if (needed != length || codePoint > 0x10FFFF || (codePoint >= 0xD800 && codePoint <= 0xDFFF))
            return false;
    }
    return true;
}

struct Row {
    const char* sentence;
    std::string text;
    std::string repaired;
};

TEST(UTF8, IsRepairedByOneReplacementForEachMaximalSubpart) {
    const Row rows[] = {
        {"an empty text", "", ""},
        {"plain text", "ferry", "ferry"},
        {"characters of every length", "a\u00e9\u20ac\U0001F600\U0010FFFF",
         "a\u00e9\u20ac\U0001F600\U0010FFFF"},
        {"NUL", "a\0b"s, "a\0b"s},
        {"a byte that never occurs",
         "a\xFF"
         "b",
         "a" + replacement + "b"},
        {"a continuation byte alone", "\x80", replacement},
        {"an overlong slash", "\xC0\xAF", replacement + replacement},
        {"an overlong form of three bytes", "\xE0\x80\xAF", replacement + replacement + replacement},
        {"an overlong form of four bytes", "\xF0\x80\x80\xAF",
         replacement + replacement + replacement + replacement},
        {"a surrogate", "\xED\xA0\x80", replacement + replacement + replacement},
        {"a code point above U+10FFFF", "\xF4\x90\x80\x80",
         replacement + replacement + replacement + replacement},
        {"a leading byte that never occurs", "\xF5\x80\x80\x80",
         replacement + replacement + replacement + replacement},
        {"two of three bytes, then text",
         "\xE2\x82"
         "a",
         replacement + "a"},
        {"three of four bytes at the end", "x\xF0\x9F\x98", "x" + replacement},
        {"two incomplete sequences", "\xE2\x82\xE2\x82", replacement + replacement},
        {"an incomplete sequence before a complete one", "\xF0\x9F\u00e9", replacement + "\u00e9"},
        {"the example of the Unicode Standard", "\x61\xF1\x80\x80\xE1\x80\xC2\x62\x80\x63\x80\xBF\x64",
         "a" + replacement + replacement + replacement + "b" + replacement + "c" + replacement + replacement +
             "d"},
        {"far into a long text", std::string(1000, 'a') + "\xFF" + std::string(1000, 'b'),
         std::string(1000, 'a') + replacement + std::string(1000, 'b')},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        EXPECT_EQ(repairUTF8(row.text), row.repaired);
        EXPECT_EQ(isUTF8(row.text), row.text == row.repaired);
    }
}

TEST(UTF8, AllowsOnlyASCIIAsSingleBytes) {
    for (int value = 0; value < 0x100; ++value) {
        SCOPED_TRACE(value);
        const std::string text(1, static_cast<char>(value));
        EXPECT_EQ(isUTF8(text), value < 0x80);
        EXPECT_EQ(sequenceLength(text, 0), value < 0x80 ? 1U : 0U);
        EXPECT_EQ(asciiLength(text), value < 0x80 ? 1U : 0U);
        EXPECT_EQ(repairUTF8(text), value < 0x80 ? text : replacement);
    }
}

void compareWithReference(const std::string& text) {
    const bool expected = referenceIsUTF8(text);
    ASSERT_EQ(isUTF8(text), expected) << testing::PrintToString(text);
    const std::string repaired = repairUTF8(text);
    ASSERT_TRUE(referenceIsUTF8(repaired)) << testing::PrintToString(text);
    ASSERT_EQ(repaired == text, expected) << testing::PrintToString(text);
}

TEST(UTF8, AgreesWithTheReferenceOnEveryPairOfBytes) {
    for (unsigned first = 0; first < 0x100; ++first)
        for (unsigned second = 0; second < 0x100; ++second)
            compareWithReference({static_cast<char>(first), static_cast<char>(second)});
}

TEST(UTF8, AgreesWithTheReferenceAtTheLimitsOfContinuationBytes) {
    const std::string limits = "\x7F\x80\x8F\x90\x9F\xA0\xBF\xC0";
    for (unsigned first = 0x80; first < 0x100; ++first)
        for (unsigned second = 0x70; second < 0xD0; ++second)
            for (const char third : limits)
                for (const char fourth : limits)
                    compareWithReference(
                        {static_cast<char>(first), static_cast<char>(second), third, fourth});
}

TEST(UTF8, AgreesWithTheReferenceOnRandomTexts) {
    std::mt19937 random(1);
    std::uniform_int_distribution<std::size_t> anyLength(0, 40);
    std::uniform_int_distribution<int> anyByte(0, 0xFF);
    std::uniform_int_distribution<std::uint32_t> anyCharacter(0x80, 0xD7FF);
    for (int attempt = 0; attempt < 20'000; ++attempt) {
        std::string text;
        for (std::size_t left = anyLength(random); left > 0; --left) {
            const auto character = static_cast<char32_t>(anyCharacter(random));
            if (character % 3 == 0)
                text += static_cast<char>(character % 0x80);
            else if (character % 17 == 0)
                text += static_cast<char>(anyByte(random));
            else if (character < 0x800)
                text +=
                    {static_cast<char>(0xC0 | character >> 6U), static_cast<char>(0x80 | (character & 0x3F))};
            else
                text += {static_cast<char>(0xE0 | character >> 12U),
                         static_cast<char>(0x80 | (character >> 6U & 0x3F)),
                         static_cast<char>(0x80 | (character & 0x3F))};
        }
        compareWithReference(text);
    }
}

TEST(UTF8, HasTheSameASCIILengthAtEveryAlignment) {
    for (std::size_t length = 0; length < 40; ++length)
        for (std::size_t start = 0; start <= length; ++start) {
            const std::string text = std::string(length, 'a') + "é" + std::string(20, 'a');
            ASSERT_EQ(asciiLength(text, start), length - start);
            ASSERT_EQ(asciiLength(std::string(length, 'a'), start), length - start);
        }
}

} // namespace
} // namespace kinovane

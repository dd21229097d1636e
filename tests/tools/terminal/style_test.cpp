// SPDX-License-Identifier: Apache-2.0

#include "terminal/style.hpp"

#include <random>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "terminal/character.hpp"
#include "terminal/shown_text.hpp"

namespace kinovane::tool {

namespace {

TEST(Style, BecomesAnEscapeSequenceOrNothing) {
    struct Row {
        std::string sentence, text, coloured, plain;
    };
    const std::vector<Row> rows{
        {"no style", "a\nb", "a\nb", "a\nb"},
        {"a heading", styled(Style::heading, "x"), "\x1b[1mx\x1b[0m", "x"},
        {"good", styled(Style::good, "x"), "\x1b[32mx\x1b[0m", "x"},
        {"bad", styled(Style::bad, "x"), "\x1b[31mx\x1b[0m", "x"},
        {"a warning", styled(Style::warning, "x"), "\x1b[33mx\x1b[0m", "x"},
        {"dim", styled(Style::dim, "x"), "\x1b[2mx\x1b[0m", "x"},
        {"text around styles", "a " + styled(Style::good, "灯") + " b " + styled(Style::bad, "c"),
         "a \x1b[32m灯\x1b[0m b \x1b[31mc\x1b[0m", "a 灯 b c"},
        {"nested styles", styled(Style::heading, "a" + styled(Style::bad, "b") + "c"),
         "\x1b[1ma\x1b[31mb\x1b[0m\x1b[1mc\x1b[0m", "abc"},
        {"a document that contains a marker", styled(Style::good, shown("x\uFDD2y\uFDD5")),
         "\x1b[32mx\\u{fdd2}y\\u{fdd5}\x1b[0m", "x\\u{fdd2}y\\u{fdd5}"},
        {"a style without an end", "\uFDD0a\uFDD2b", "\x1b[1ma\x1b[31mb\x1b[0m", "ab"},
        {"an end without a style", "a\uFDD5b", "ab", "ab"},
        {"an escape sequence in the text", styled(Style::dim, "\x1b[31mx\u009b0m"),
         "\x1b[2m\\x1b[31mx\\u{9b}0m\x1b[0m", "\\x1b[31mx\\u{9b}0m"},
        {"bytes that join after a marker is removed", "\xe7\uFDD0\x81\x8d", "\\xe7\x1b[1m\\x81\\x8d\x1b[0m",
         "\\xe7\\x81\\x8d"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(rendered(row.text, true), row.coloured) << row.sentence;
        EXPECT_EQ(rendered(row.text, false), row.plain) << row.sentence;
    }
}

TEST(Style, IsIgnoredInsideSixteenOthers) {
    std::string text = "x";
    for (int depth = 0; depth < 1000; ++depth)
        text = styled(Style::good, text);
    std::string begins, ends;
    for (int depth = 0; depth < 16; ++depth) {
        ends = "\x1b[0m" + begins + ends;
        begins += "\x1b[32m";
    }
    EXPECT_EQ(rendered(text, true), begins + "x" + ends);
}

/// Random bytes, with more of those that begin control characters, escape sequences and markers.
std::string randomText(std::mt19937& random) {
    constexpr std::string_view frequent = "\x1b[m\n\x7f\xc2\x80\x9b\xef\xb7\x90\x91\x95\xe2\xae\xf0\x9f";
    std::string text(random() % 40, ' ');
    for (char& character : text)
        character =
            random() % 2 == 0 ? frequent[random() % frequent.size()] : static_cast<char>(random() % 256);
    return text;
}

TEST(Style, LetsNoOtherControlCharacterThrough) {
    std::mt19937 random(1); // NOLINT(cert-msc51-cpp): the same texts in every run
    for (int round = 0; round < 20000; ++round) {
        const std::string text = randomText(random);
        const std::string plain = rendered(text, false);
        for (std::string_view rest = plain; !rest.empty();) {
            const auto [codePoint, length] = firstCharacter(rest);
            ASSERT_TRUE(codePoint == '\n' || isPrintable(codePoint)) << shown(text);
            rest.remove_prefix(length);
        }

        std::string coloured = rendered(text, true);
        const std::size_t last = coloured.rfind('\x1b');
        ASSERT_TRUE(last == std::string::npos || coloured.compare(last, 4, "\x1b[0m") == 0) << shown(text);
        for (const std::string_view sequence :
             {"\x1b[1m", "\x1b[32m", "\x1b[31m", "\x1b[33m", "\x1b[2m", "\x1b[0m"})
            for (std::size_t at = 0; (at = coloured.find(sequence, at)) != std::string::npos;)
                coloured.erase(at, sequence.size());
        ASSERT_EQ(coloured, plain) << shown(text);
    }
}

} // namespace

} // namespace kinovane::tool

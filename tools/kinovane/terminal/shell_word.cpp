// SPDX-License-Identifier: Apache-2.0

#include "terminal/shell_word.hpp"

#include <algorithm>

#include "terminal/shown_text.hpp"

namespace kinovane::tool {

namespace {

/// Letters and digits of ASCII, and all bytes of other characters, which are part of a word in every shell.
bool isPlain(char character) {
    constexpr std::string_view marks = "_-./:,+@%";
    const bool isLetter = (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
    const bool isDigit = character >= '0' && character <= '9';
    const bool isASCII = static_cast<unsigned char>(character) < 0x80;
    return isLetter || isDigit || !isASCII || marks.find(character) != std::string_view::npos;
}

} // namespace

std::string shellWord(std::string_view text) {
    if (shown(text) != text)
        return shownPath(text);
    if (!text.empty() && std::ranges::all_of(text, isPlain))
        return std::string(text);
    std::string word = "'";
    for (const char character : text)
        if (character == '\'')
            word += "'\\''";
        else
            word += character;
    return word + "'";
}

} // namespace kinovane::tool

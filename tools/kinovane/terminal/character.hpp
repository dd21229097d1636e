// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace kinovane::tool {

/// One code point of a text, or one byte that is not part of well-formed UTF-8.
struct Character {
    static constexpr std::int32_t notUTF8 = -1;

    std::int32_t codePoint; ///< `notUTF8` for a byte that is not part of well-formed UTF-8.
    std::size_t length;     ///< In bytes.
};

/// The first character of a text that is not empty. Overlong forms and surrogates are not well-formed.
Character firstCharacter(std::string_view text);

/// The noncharacters that mark styles (see style.hpp).
constexpr std::int32_t firstStyleMarker = 0xFDD0;
constexpr std::int32_t lastStyleMarker = 0xFDD5;

constexpr bool isStyleMarker(std::int32_t codePoint) {
    return codePoint >= firstStyleMarker && codePoint <= lastStyleMarker;
}

/// Changes the order in which a terminal or an editor shows the characters after it.
bool isBidirectionalControl(std::int32_t codePoint);

/// Whether a terminal may get the character: everything but bytes that are not UTF-8, control characters,
/// line and paragraph separators, format characters except the zero-width joiner and non-joiner (which emoji
/// and some scripts need), noncharacters, and code points that Unicode reserves for format characters.
bool isPrintable(std::int32_t codePoint);

} // namespace kinovane::tool

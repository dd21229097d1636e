// SPDX-License-Identifier: Apache-2.0

#include "terminal/character.hpp"

#include <utf8proc.h>

namespace kinovane::tool {

namespace {

constexpr std::int32_t zeroWidthNonJoiner = 0x200C;
constexpr std::int32_t zeroWidthJoiner = 0x200D;

bool isIn(std::int32_t codePoint, std::int32_t first, std::int32_t last) {
    return codePoint >= first && codePoint <= last;
}

bool isNoncharacter(std::int32_t codePoint) {
    return isIn(codePoint, 0xFDD0, 0xFDEF) || (codePoint & 0xFFFE) == 0xFFFE;
}

/// Unassigned, and invisible when a later version of Unicode assigns it.
bool isReservedForFormat(std::int32_t codePoint) {
    return codePoint == 0x2065 || isIn(codePoint, 0xFFF0, 0xFFF8) || isIn(codePoint, 0xE0000, 0xE0FFF);
}

} // namespace

Character firstCharacter(std::string_view text) {
    utf8proc_int32_t codePoint = 0;
    const utf8proc_ssize_t length = utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t*>(text.data()),
                                                     static_cast<utf8proc_ssize_t>(text.size()), &codePoint);
    if (length <= 0)
        return {Character::notUTF8, 1};
    return {codePoint, static_cast<std::size_t>(length)};
}

bool isBidirectionalControl(std::int32_t codePoint) {
    return codePoint == 0x061C || isIn(codePoint, 0x200E, 0x200F) || isIn(codePoint, 0x202A, 0x202E) ||
           isIn(codePoint, 0x2066, 0x2069);
}

bool isPrintable(std::int32_t codePoint) {
    if (codePoint == Character::notUTF8)
        return false;
    switch (utf8proc_category(codePoint)) {
    case UTF8PROC_CATEGORY_CC:
    case UTF8PROC_CATEGORY_CS:
    case UTF8PROC_CATEGORY_ZL:
    case UTF8PROC_CATEGORY_ZP:
        return false;
    case UTF8PROC_CATEGORY_CF:
        return codePoint == zeroWidthNonJoiner || codePoint == zeroWidthJoiner;
    case UTF8PROC_CATEGORY_CN:
        return !isNoncharacter(codePoint) && !isReservedForFormat(codePoint);
    default:
        return true;
    }
}

} // namespace kinovane::tool

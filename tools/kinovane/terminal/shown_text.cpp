// SPDX-License-Identifier: Apache-2.0

#include "terminal/shown_text.hpp"

#include <array>
#include <charconv>

#include "terminal/character.hpp"

namespace kinovane::tool {

namespace {

constexpr std::string_view hexadecimal = "0123456789abcdef";

std::string byteEscape(char character) {
    const auto byte = static_cast<unsigned char>(character);
    return std::string("\\x") + hexadecimal[byte >> 4U] + hexadecimal[byte & 0xFU];
}

std::string codePointEscape(std::int32_t codePoint) {
    std::array<char, 8> digits{};
    const auto written = std::to_chars(digits.data(), digits.data() + digits.size(), codePoint, 16);
    return "\\u{" + std::string(digits.data(), written.ptr) + "}";
}

std::string escape(std::int32_t codePoint, std::string_view bytes) {
    switch (codePoint) {
    case '\n':
        return "\\n";
    case '\t':
        return "\\t";
    case '\r':
        return "\\r";
    default:
        return bytes.size() == 1 ? byteEscape(bytes.front()) : codePointEscape(codePoint);
    }
}

template <class IsKept>
std::string escapedUnless(std::string_view text, IsKept isKept) {
    std::string result;
    result.reserve(text.size());
    while (!text.empty()) {
        const auto [codePoint, length] = firstCharacter(text);
        const std::string_view bytes = text.substr(0, length);
        if (isKept(codePoint))
            result += bytes;
        else
            result += escape(codePoint, bytes);
        text.remove_prefix(length);
    }
    return result;
}

bool isHexadecimalDigit(char character) {
    return (character >= '0' && character <= '9') || (character >= 'a' && character <= 'f') ||
           (character >= 'A' && character <= 'F');
}

/// A character inside $'…'.
std::string quotedCharacter(std::int32_t codePoint, std::string_view bytes) {
    switch (codePoint) {
    case '\n':
        return "\\n";
    case '\t':
        return "\\t";
    case '\\':
        return "\\\\";
    case '\'':
        return "\\'";
    default:
        break;
    }
    std::string result;
    if (isPrintable(codePoint))
        return result.assign(bytes);
    for (const char byte : bytes)
        result += byteEscape(byte);
    return result;
}

} // namespace

std::string shown(std::string_view text) { return escapedUnless(text, isPrintable); }

std::string shownPath(std::string_view path) {
    if (shown(path) == path)
        return std::string(path);
    std::string result = "$'";
    bool afterByteEscape = false;
    while (!path.empty()) {
        const auto [codePoint, length] = firstCharacter(path);
        const std::string_view bytes = path.substr(0, length);
        // Some shells read more than two digits after \x.
        const bool isDigitOfEscape = afterByteEscape && isHexadecimalDigit(bytes.front());
        const std::string part =
            isDigitOfEscape ? byteEscape(bytes.front()) : quotedCharacter(codePoint, bytes);
        afterByteEscape = part.starts_with("\\x");
        result += part;
        path.remove_prefix(length);
    }
    return result + "'";
}

std::string cleanedLines(std::string_view text) {
    return escapedUnless(text, [](std::int32_t codePoint) {
        return codePoint == '\n' || isStyleMarker(codePoint) || isPrintable(codePoint);
    });
}

} // namespace kinovane::tool

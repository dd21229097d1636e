// SPDX-License-Identifier: Apache-2.0

#include "storyboard/html.hpp"

#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>

#include "terminal/character.hpp"

namespace kinovane::tool {

namespace {

constexpr int digitsAfterPoint = 6;
constexpr std::string_view replacementCharacter = "\xEF\xBF\xBD";

bool isAllowed(std::int32_t codePoint) {
    if (codePoint == Character::notUTF8 || codePoint == 0x7F || (codePoint >= 0x80 && codePoint < 0xA0))
        return false;
    const bool isNoncharacter =
        (codePoint >= 0xFDD0 && codePoint <= 0xFDEF) || (codePoint & 0xFFFE) == 0xFFFE;
    return !isNoncharacter && (codePoint >= 0x20 || codePoint == '\n' || codePoint == '\t');
}

/// The entity for a character that has a meaning in HTML; empty for any other.
std::string_view entityOf(char character) {
    switch (character) {
    case '&':
        return "&amp;";
    case '<':
        return "&lt;";
    case '>':
        return "&gt;";
    case '"':
        return "&quot;";
    case '\'':
        return "&#39;";
    default:
        return {};
    }
}

bool isUnreserved(char character) {
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
           (character >= '0' && character <= '9') || character == '-' || character == '_' ||
           character == '.' || character == '/';
}

} // namespace

std::string escaped(std::string_view text) {
    std::string result;
    result.reserve(text.size() + text.size() / 8);
    while (!text.empty()) {
        const auto [codePoint, length] = firstCharacter(text);
        const std::string_view entity = entityOf(text.front());
        if (!isAllowed(codePoint))
            result += replacementCharacter;
        else
            result += entity.empty() ? text.substr(0, length) : entity;
        text.remove_prefix(length);
    }
    return result;
}

std::string base64(std::string_view bytes) {
    constexpr std::string_view digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    const auto byteAt = [&](std::size_t index) -> std::uint32_t {
        return index < bytes.size() ? static_cast<unsigned char>(bytes[index]) : 0;
    };
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    for (std::size_t index = 0; index < bytes.size(); index += 3) {
        const std::uint32_t group = byteAt(index) << 16U | byteAt(index + 1) << 8U | byteAt(index + 2);
        const std::size_t present = bytes.size() - index;
        text += digits[group >> 18U];
        text += digits[group >> 12U & 63U];
        text += present > 1 ? digits[group >> 6U & 63U] : '=';
        text += present > 2 ? digits[group & 63U] : '=';
    }
    return text;
}

Url Url::relative(std::string_view path) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string text;
    for (const char character : path) {
        if (isUnreserved(character)) {
            text += character;
            continue;
        }
        const auto byte = static_cast<unsigned char>(character);
        text += '%';
        text += digits[byte >> 4U];
        text += digits[byte & 15U];
    }
    return Url(std::move(text));
}

Url Url::data(Markup mediaType, std::string_view bytes) {
    return Url("data:" + std::string(mediaType.text()) + ";base64," + base64(bytes));
}

Html& Html::operator<<(Markup markup) {
    html_ += markup.text();
    return *this;
}

Html& Html::operator<<(Text text) {
    html_ += escaped(text.value);
    return *this;
}

Html& Html::operator<<(const Url& url) {
    html_ += url.text();
    return *this;
}

Html& Html::operator<<(double number) {
    std::array<char, 400> digits{}; // The largest number has 309 digits before the point.
    html_.append(
        digits.data(),
        std::to_chars(digits.begin(), digits.end(), number, std::chars_format::fixed, digitsAfterPoint).ptr);
    return *this;
}

Html& Html::operator<<(const Html& part) {
    html_ += part.html_;
    return *this;
}

} // namespace kinovane::tool

// SPDX-License-Identifier: Apache-2.0

#include "json/json_text.hpp"

#include <array>
#include <charconv>
#include <cmath>

#include <kinovane/json.hpp>

namespace kinovane::tool {

namespace {

constexpr std::string_view hexadecimal = "0123456789abcdef";
constexpr unsigned firstPrintable = 0x20;
constexpr unsigned firstBeyondASCII = 0x80;

unsigned byteAt(std::string_view text, std::size_t position) {
    return position < text.size() ? static_cast<unsigned char>(text[position]) : 0;
}

/// The length of the well-formed UTF-8 sequence of more than one byte at `position`, or 0. The bounds of the
/// second byte exclude overlong forms, surrogates and values above U+10FFFF.
std::size_t sequenceLength(std::string_view text, std::size_t position) {
    const unsigned first = byteAt(text, position);
    const std::size_t length = first >= 0xC2 && first <= 0xDF   ? 2
                               : first >= 0xE0 && first <= 0xEF ? 3
                               : first >= 0xF0 && first <= 0xF4 ? 4
                                                                : 0;
    const unsigned lowest = first == 0xE0 ? 0xA0 : first == 0xF0 ? 0x90 : 0x80;
    const unsigned highest = first == 0xED ? 0x9F : first == 0xF4 ? 0x8F : 0xBF;
    if (length == 0 || byteAt(text, position + 1) < lowest || byteAt(text, position + 1) > highest)
        return 0;
    for (std::size_t next = 2; next < length; ++next)
        if ((byteAt(text, position + next) & 0xC0U) != 0x80)
            return 0;
    return length;
}

std::string escaped(char character) {
    switch (character) {
    case '"':
        return "\\\"";
    case '\\':
        return "\\\\";
    case '\n':
        return "\\n";
    case '\r':
        return "\\r";
    case '\t':
        return "\\t";
    default:
        break;
    }
    const auto code = static_cast<unsigned char>(character);
    if (code >= firstPrintable)
        return {character};
    return std::string("\\u00") + hexadecimal[code >> 4U] + hexadecimal[code & 0xFU];
}

std::string quoted(std::string_view text) {
    std::string result = "\"";
    for (std::size_t position = 0; position < text.size();) {
        if (byteAt(text, position) < firstBeyondASCII) {
            result += escaped(text[position++]);
            continue;
        }
        const std::size_t length = sequenceLength(text, position);
        if (length == 0)
            throw JSONEncodingError("", "A path in the result is not UTF-8, and JSON cannot carry it.");
        result += text.substr(position, length);
        position += length;
    }
    return result + "\"";
}

void append(std::string& list, const std::string& item) {
    if (!list.empty())
        list += ',';
    list += item;
}

} // namespace

JSONValue::JSONValue(double value) {
    if (!std::isfinite(value))
        throw JSONEncodingError("", "the number is not finite");
    std::array<char, 32> digits{}; // the shortest form of a double has at most 24
    const auto written = std::to_chars(digits.data(), digits.data() + digits.size(), value);
    text_.assign(digits.data(), written.ptr);
}

JSONValue::JSONValue(std::string_view value) : text_(quoted(value)) {}

JSONValue JSONValue::fromJSON(std::string text) {
    JSONValue value;
    value.text_ = std::move(text);
    return value;
}

JSONObject& JSONObject::add(std::string_view key, const JSONValue& value) {
    append(members_, quoted(key) + ":" + value.text());
    return *this;
}

JSONList& JSONList::add(const JSONValue& value) {
    append(values_, value.text());
    return *this;
}

} // namespace kinovane::tool

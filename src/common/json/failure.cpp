// SPDX-License-Identifier: Apache-2.0

#include "common/json/failure.hpp"

#include <algorithm>
#include <utility>

#include "common/utf8.hpp"

namespace kinovane::json {

namespace {

/// A message shows at most this many characters of a key, so that it does not grow with the document.
constexpr std::size_t mostCharacters = 200;

/// A key of a map may hold any characters, but a message is shown to a person: control characters are shown
/// as JSON escapes.
std::string legible(std::string_view key) {
    static constexpr char digits[] = "0123456789abcdef";
    std::string shown;
    std::size_t characters = 0;
    for (std::size_t position = 0; position < key.size(); ++characters) {
        if (characters == mostCharacters) {
            shown += "…";
            break;
        }
        const std::size_t length = std::max<std::size_t>(sequenceLength(key, position), 1);
        const auto byte = static_cast<unsigned char>(key[position + length - 1]);
        const bool control =
            length == 1 ? byte < 0x20 || byte == 0x7F : length == 2 && key[position] == '\xC2' && byte < 0xA0;
        if (control) {
            shown += "\\u00";
            shown += digits[byte >> 4U];
            shown += digits[byte & 0xFU];
        } else {
            shown += key.substr(position, length);
        }
        position += length;
    }
    return repairUTF8(std::move(shown));
}

} // namespace

Failure Failure::mismatch(std::string_view expected, std::string_view found) {
    std::string text = ": expected ";
    text += expected;
    text += ", found ";
    text += found;
    return Failure(std::move(text));
}

void Failure::prependKey(std::string_view key) { prepend(legible(key)); }

void Failure::prependIndex(std::size_t index) { prepend('[' + std::to_string(index) + ']'); }

void Failure::prepend(std::string outer) {
    if (!path.empty() && !path.starts_with('['))
        outer += '.';
    outer += path;
    path = std::move(outer);
}

std::string Failure::message() const {
    constexpr std::string_view colon = ": ";
    // An empty path means the whole document, and the message begins after the colon.
    return path.empty() && text.starts_with(colon) ? text.substr(colon.size()) : path + text;
}

} // namespace kinovane::json

// SPDX-License-Identifier: Apache-2.0

#include "common/json/failure.hpp"

#include <algorithm>
#include <utility>

#include "common/utf8.hpp"

namespace kinovane::json {

namespace {

/// A message shows at most this many characters of a key, so that it does not grow with the document.
constexpr std::size_t mostCharacters = 200;

/// A key of a map may hold anything, but a message is to be read by a person: what controls a terminal, or
/// ends a text early, is shown as JSON would write it.
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

void Failure::within(std::string_view key) { prepend(legible(key)); }

void Failure::within(std::size_t index) { prepend('[' + std::to_string(index) + ']'); }

void Failure::prepend(std::string outer) {
    if (!path.empty() && !path.starts_with('['))
        outer += '.';
    outer += path;
    path = std::move(outer);
}

std::string Failure::message() const {
    constexpr std::string_view colon = ": ";
    // Without a path the whole document is meant, and there is nothing to put in front of the colon.
    return path.empty() && text.starts_with(colon) ? text.substr(colon.size()) : path + text;
}

std::string syntaxMessage(std::string_view document, std::size_t offset, std::string_view what) {
    const std::string_view before = document.substr(0, std::min(offset, document.size()));
    const auto line = 1 + std::count(before.begin(), before.end(), '\n');
    const std::size_t lineStart = before.rfind('\n') + 1; // npos + 1 is 0
    const auto column = 1 + std::count_if(before.begin() + static_cast<std::ptrdiff_t>(lineStart),
                                          before.end(), [](char byte) { return (byte & '\xC0') != '\x80'; });
    std::string message = "line " + std::to_string(line) + ", column " + std::to_string(column) + ": ";
    message += what;
    return message;
}

} // namespace kinovane::json

// SPDX-License-Identifier: Apache-2.0

#include "common/json/syntax_error.hpp"

#include <algorithm>

#include "common/utf8.hpp"

namespace kinovane::json {

namespace {

/// What surrounds the end of the beginning of a document.
struct Ending {
    bool inString = false;
    std::string open; ///< The brackets of the objects and lists that are not closed.
    char last = '\0'; ///< The last character that is not white space.
};

/// Reads `beginning`, which the parser has accepted.
Ending endingOf(std::string_view beginning) {
    Ending ending;
    for (std::size_t position = 0; position < beginning.size(); ++position) {
        const char byte = beginning[position];
        if (byte == '"')
            ending.inString = !ending.inString;
        else if (ending.inString && byte == '\\')
            ++position;
        else if (!ending.inString && (byte == '{' || byte == '['))
            ending.open += byte;
        else if (!ending.inString && (byte == '}' || byte == ']') && !ending.open.empty())
            ending.open.pop_back();
        if (std::string_view(" \t\r\n").find(byte) == std::string_view::npos)
            ending.last = byte;
    }
    return ending;
}

bool valueMayFollow(const Ending& ending) {
    const char last = ending.last;
    return !ending.inString &&
           (last == '\0' || last == '[' || last == ':' || (last == ',' && ending.open.ends_with('[')));
}

} // namespace

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

std::size_t wrongLetterAt(std::string_view document, std::size_t offset) {
    std::size_t start = offset;
    while (start > 0 && document[start - 1] >= 'a' && document[start - 1] <= 'z')
        --start;
    if (!valueMayFollow(endingOf(document.substr(0, start))))
        return offset;
    const std::string_view word = document.substr(start);
    for (const std::string_view literal : {"true", "false", "null"}) {
        const auto length = static_cast<std::size_t>(
            std::mismatch(literal.begin(), literal.end(), word.begin(), word.end()).first - literal.begin());
        if (length > 0 && length < literal.size())
            return start + length;
    }
    return offset;
}

std::optional<std::size_t> invalidUTF8At(std::string_view document, std::size_t offset) {
    // Inside a string, Boost.JSON stops at the beginning of a run of characters that holds the wrong byte.
    const bool inString = endingOf(document.substr(0, offset)).inString;
    const auto plain = [](char byte) {
        return byte != '"' && byte != '\\' && static_cast<unsigned char>(byte) >= 0x20;
    };
    if (!inString && offset < document.size() && sequenceLength(document, offset) == 0)
        return offset;
    while (inString && offset < document.size() && plain(document[offset])) {
        const std::size_t length = sequenceLength(document, offset);
        if (length == 0)
            return offset;
        offset += length;
    }
    return std::nullopt;
}

} // namespace kinovane::json

// SPDX-License-Identifier: Apache-2.0

#include "unicode.hpp"

#include <algorithm>
#include <array>

namespace kinovane::fuzz {

namespace {

struct Range {
    unsigned char first;
    unsigned char last;
};

struct Row {
    std::size_t length;
    std::array<Range, 4> bytes;
};

constexpr Range any{0x80, 0xBF};

constexpr Row rows[] = {
    {1, {{{0x00, 0x7F}}}},
    {2, {{{0xC2, 0xDF}, any}}},
    {3, {{{0xE0, 0xE0}, {0xA0, 0xBF}, any}}},
    {3, {{{0xE1, 0xEC}, any, any}}},
    {3, {{{0xED, 0xED}, {0x80, 0x9F}, any}}},
    {3, {{{0xEE, 0xEF}, any, any}}},
    {4, {{{0xF0, 0xF0}, {0x90, 0xBF}, any, any}}},
    {4, {{{0xF1, 0xF3}, any, any, any}}},
    {4, {{{0xF4, 0xF4}, {0x80, 0x8F}, any, any}}},
};

std::size_t matched(const Row& row, std::string_view text) {
    std::size_t length = 0;
    while (length < std::min(row.length, text.size())) {
        const auto byte = static_cast<unsigned char>(text[length]);
        if (byte < row.bytes[length].first || byte > row.bytes[length].last)
            break;
        ++length;
    }
    return length;
}

} // namespace

Sequence sequenceAt(std::string_view text, std::size_t position) {
    Sequence longest;
    for (const Row& row : rows) {
        const std::size_t length = matched(row, text.substr(position));
        if (length == row.length)
            return {length, true};
        longest.length = std::max(longest.length, length);
    }
    return longest;
}

bool isWellFormed(std::string_view text) {
    for (std::size_t position = 0; position < text.size();) {
        const Sequence sequence = sequenceAt(text, position);
        if (!sequence.valid)
            return false;
        position += sequence.length;
    }
    return true;
}

std::string repaired(std::string_view text) {
    std::string result;
    for (std::size_t position = 0; position < text.size();) {
        const Sequence sequence = sequenceAt(text, position);
        if (sequence.valid)
            result += text.substr(position, sequence.length);
        else
            result += "\uFFFD";
        position += sequence.length;
    }
    return result;
}

bool isLegible(std::string_view message) {
    for (std::size_t position = 0; position < message.size();) {
        const Sequence sequence = sequenceAt(message, position);
        const auto byteAt = [&](std::size_t index) {
            return static_cast<unsigned char>(message[position + index]);
        };
        const bool control = sequence.length == 1 ? byteAt(0) < 0x20 || byteAt(0) == 0x7F
                                                  : byteAt(0) == 0xC2 && byteAt(1) < 0xA0;
        if (!sequence.valid || control)
            return false;
        position += sequence.length;
    }
    return true;
}

} // namespace kinovane::fuzz

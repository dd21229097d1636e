// SPDX-License-Identifier: Apache-2.0

#include "common/utf8.hpp"

#include <cstdint>
#include <cstring>

namespace kinovane {

namespace {

using Byte = unsigned char;

/// The continuation bytes that a leading byte requires: their number, and the range of the first of them. The
/// range excludes overlong forms, surrogates and code points above U+10FFFF.
struct Continuation {
    std::size_t count = 0;
    Byte lowest = 0x80;
    Byte highest = 0xBF;
};

Continuation continuationOf(Byte byte) noexcept {
    if (byte >= 0xC2 && byte <= 0xDF)
        return {1};
    if (byte >= 0xE0 && byte <= 0xEF)
        return {2, byte == 0xE0 ? Byte{0xA0} : Byte{0x80}, byte == 0xED ? Byte{0x9F} : Byte{0xBF}};
    if (byte >= 0xF0 && byte <= 0xF4)
        return {3, byte == 0xF0 ? Byte{0x90} : Byte{0x80}, byte == 0xF4 ? Byte{0x8F} : Byte{0xBF}};
    return {};
}

/// A well-formed sequence, or the maximal subpart of an ill-formed one.
struct Sequence {
    std::size_t length = 1;
    bool wellFormed = false;
};

Sequence sequenceAt(std::string_view text, std::size_t position) noexcept {
    const auto byteAt = [&](std::size_t index) { return static_cast<Byte>(text[index]); };
    const Byte first = byteAt(position);
    if (first < 0x80)
        return {1, true};
    const Continuation continuation = continuationOf(first);
    if (continuation.count == 0)
        return {1, false};
    std::size_t length = 1;
    Byte lowest = continuation.lowest;
    Byte highest = continuation.highest;
    while (length <= continuation.count) {
        if (position + length == text.size() || byteAt(position + length) < lowest ||
            byteAt(position + length) > highest)
            return {length, false};
        lowest = 0x80;
        highest = 0xBF;
        ++length;
    }
    return {length, true};
}

/// The number of bytes from `position` on up to the first ill-formed sequence.
std::size_t wellFormedLength(std::string_view text, std::size_t position) noexcept {
    const std::size_t start = position;
    while (position < text.size()) {
        position += asciiLength(text, position);
        while (position < text.size() && static_cast<Byte>(text[position]) >= 0x80) {
            const std::size_t length = sequenceLength(text, position);
            if (length == 0)
                return position - start;
            position += length;
        }
    }
    return position - start;
}

} // namespace

std::size_t sequenceLength(std::string_view text, std::size_t position) noexcept {
    const Sequence sequence = sequenceAt(text, position);
    return sequence.wellFormed ? sequence.length : 0;
}

std::size_t asciiLength(std::string_view text, std::size_t position) noexcept {
    constexpr std::uint64_t highBits = 0x8080808080808080U;
    std::size_t length = 0;
    const std::size_t available = text.size() - position;
    for (; length + sizeof(std::uint64_t) <= available; length += sizeof(std::uint64_t)) {
        std::uint64_t word = 0;
        std::memcpy(&word, text.data() + position + length, sizeof word);
        if ((word & highBits) != 0)
            break;
    }
    while (length < available && static_cast<Byte>(text[position + length]) < 0x80)
        ++length;
    return length;
}

bool isUTF8(std::string_view text) noexcept { return wellFormedLength(text, 0) == text.size(); }

std::string repairUTF8(std::string text) {
    std::size_t position = wellFormedLength(text, 0);
    if (position == text.size())
        return text;
    std::string repaired = text.substr(0, position);
    while (position < text.size()) {
        repaired += "\xEF\xBF\xBD";
        position += sequenceAt(text, position).length;
        const std::size_t length = wellFormedLength(text, position);
        repaired.append(text, position, length);
        position += length;
    }
    return repaired;
}

} // namespace kinovane

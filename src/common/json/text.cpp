// SPDX-License-Identifier: Apache-2.0

#include "common/json/text.hpp"

#include <array>
#include <bit>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "common/utf8.hpp"

namespace kinovane::json {

namespace {

/// For each byte: 0 when it is written as it is, the character of its short escape, 'u' for a numbered
/// escape, or 'm' for the first byte of a sequence of several.
constexpr std::array<char, 256> byteClasses = [] {
    std::array<char, 256> classes{};
    for (std::size_t byte = 0; byte < 0x20; ++byte)
        classes[byte] = 'u';
    for (std::size_t byte = 0x80; byte < 0x100; ++byte)
        classes[byte] = 'm';
    classes['\b'] = 'b';
    classes['\f'] = 'f';
    classes['\n'] = 'n';
    classes['\r'] = 'r';
    classes['\t'] = 't';
    classes['"'] = '"';
    classes['\\'] = '\\';
    return classes;
}();

/// How many bytes of `text` from `position` on are written as they are: ASCII characters other than control
/// characters, quotes and backslashes.
std::size_t plainLength(std::string_view text, std::size_t position) noexcept {
    std::size_t end = position;
    if constexpr (std::endian::native == std::endian::little) {
        // Eight bytes at once. One of the four words has the high bit of a byte set when that byte is not
        // written as it is. Above the lowest such byte a borrow may set others, but only the lowest is used.
        constexpr std::uint64_t each = 0x0101010101010101U;
        constexpr std::uint64_t highBits = 0x80 * each;
        for (; end + sizeof(std::uint64_t) <= text.size(); end += sizeof(std::uint64_t)) {
            std::uint64_t word = 0;
            std::memcpy(&word, text.data() + end, sizeof word);
            const std::uint64_t quotes = (word ^ ('"' * each)) - each;
            const std::uint64_t backslashes = (word ^ ('\\' * each)) - each;
            const std::uint64_t controls = word - 0x20 * each;
            if (const std::uint64_t others = (quotes | backslashes | controls | word) & highBits; others != 0)
                return end + static_cast<std::size_t>(std::countr_zero(others)) / 8 - position;
        }
    }
    while (end < text.size() && byteClasses[static_cast<unsigned char>(text[end])] == 0)
        ++end;
    return end - position;
}

template <class Number>
void appendNumber(TextBuffer& document, Number value) {
    constexpr std::size_t longest = 32;
    char* const text = document.prepare(longest);
    document.commit(static_cast<std::size_t>(std::to_chars(text, text + longest, value).ptr - text));
}

} // namespace

bool appendString(TextBuffer& document, std::string_view text) {
    static constexpr char digits[] = "0123456789abcdef";
    document.append('"');
    std::size_t pending = 0; // From here on nothing is appended yet.
    std::size_t position = 0;
    while ((position += plainLength(text, position)) < text.size()) {
        const auto byte = static_cast<unsigned char>(text[position]);
        const char byteClass = byteClasses[byte];
        if (byteClass == 'm') {
            const std::size_t length = sequenceLength(text, position);
            if (length == 0)
                return false;
            position += length;
            continue;
        }
        document.append(text.substr(pending, position - pending));
        document.append('\\');
        document.append(byteClass);
        if (byteClass == 'u') {
            document.append(std::string_view("00"));
            document.append(digits[byte >> 4U]);
            document.append(digits[byte & 0xfU]);
        }
        pending = ++position;
    }
    document.append(text.substr(pending));
    document.append('"');
    return true;
}

void appendInteger(TextBuffer& document, std::int64_t value) { appendNumber(document, value); }

void appendReal(TextBuffer& document, double value) { appendNumber(document, value); }

} // namespace kinovane::json

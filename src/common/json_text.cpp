#include "common/json_text.hpp"

#include <array>
#include <charconv>
#include <cstddef>

#include "common/utf8.hpp"

namespace kinovane::json {

namespace {

/// For each byte: 0 when it stands as it is, the character of its short escape, 'u' for a numbered escape, or
/// 'm' for the first byte of a sequence of several.
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

template <class Number>
void appendNumber(std::string& document, Number value) {
    std::array<char, 32> text{};
    const auto [end, error] = std::to_chars(text.data(), text.data() + text.size(), value);
    document.append(text.data(), end);
}

} // namespace

bool appendString(std::string& document, std::string_view text) {
    static constexpr char digits[] = "0123456789abcdef";
    document += '"';
    std::size_t pending = 0; // From here on nothing is appended yet.
    std::size_t position = 0;
    while (position < text.size()) {
        const auto byte = static_cast<unsigned char>(text[position]);
        const char byteClass = byteClasses[byte];
        if (byteClass == 0) {
            ++position;
        } else if (byteClass == 'm') {
            const std::size_t length = sequenceLength(text, position);
            if (length == 0)
                return false;
            position += length;
        } else {
            document.append(text, pending, position - pending);
            document += '\\';
            document += byteClass;
            if (byteClass == 'u') {
                document += "00";
                document += digits[byte >> 4U];
                document += digits[byte & 0xfU];
            }
            pending = ++position;
        }
    }
    document.append(text, pending);
    document += '"';
    return true;
}

void appendInteger(std::string& document, std::int64_t value) { appendNumber(document, value); }

void appendReal(std::string& document, double value) { appendNumber(document, value); }

} // namespace kinovane::json

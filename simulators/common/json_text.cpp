// SPDX-License-Identifier: Apache-2.0

#include "common/json_text.hpp"

#include <array>
#include <charconv>
#include <stdexcept>

namespace simulator {
namespace {

void appendEscaped(std::string& out, char character) {
    static constexpr std::string_view digits = "0123456789abcdef";
    switch (character) {
    case '"':
        out += "\\\"";
        return;
    case '\\':
        out += "\\\\";
        return;
    case '\b':
        out += "\\b";
        return;
    case '\f':
        out += "\\f";
        return;
    case '\n':
        out += "\\n";
        return;
    case '\r':
        out += "\\r";
        return;
    case '\t':
        out += "\\t";
        return;
    default:
        break;
    }
    const auto code = static_cast<unsigned char>(character);
    if (code < 0x20) {
        out += "\\u00";
        out += digits[code >> 4U];
        out += digits[code & 0x0FU];
    } else {
        out += character;
    }
}

void appendScalar(std::string& out, const boost::json::value& value) {
    if (const auto* text = value.if_string())
        out += jsonQuoted(*text);
    else if (const auto* number = value.if_double())
        out += decimal(*number);
    else
        out += boost::json::serialize(value);
}

void appendPretty(std::string& out, const boost::json::value& value, const std::string& indent);

/// Writes the members between the brackets, each on its own line; nothing at all stays "[]" or "{}".
template <class Members, class Append>
void appendMembers(std::string& out, const Members& members, std::string_view brackets,
                   const std::string& indent, const Append& append) {
    out += brackets.front();
    const std::string inner = indent + "  ";
    bool first = true;
    for (const auto& member : members) {
        out += first ? "\n" : ",\n";
        out += inner;
        append(member, inner);
        first = false;
    }
    if (!first)
        out += "\n" + indent;
    out += brackets.back();
}

void appendPretty(std::string& out, const boost::json::value& value, const std::string& indent) {
    if (const auto* object = value.if_object()) {
        appendMembers(out, *object, "{}", indent, [&](const auto& member, const std::string& inner) {
            out += jsonQuoted(member.key());
            out += ": ";
            appendPretty(out, member.value(), inner);
        });
    } else if (const auto* array = value.if_array()) {
        appendMembers(out, *array, "[]", indent, [&](const auto& element, const std::string& inner) {
            appendPretty(out, element, inner);
        });
    } else {
        appendScalar(out, value);
    }
}

void appendCompact(std::string& out, const boost::json::value& value) {
    if (const auto* object = value.if_object()) {
        std::string_view separator = "{";
        for (const auto& member : *object) {
            out += separator;
            out += jsonQuoted(member.key()) + ":";
            appendCompact(out, member.value());
            separator = ",";
        }
        out += object->empty() ? "{}" : "}";
    } else if (const auto* array = value.if_array()) {
        std::string_view separator = "[";
        for (const auto& element : *array) {
            out += separator;
            appendCompact(out, element);
            separator = ",";
        }
        out += array->empty() ? "[]" : "]";
    } else {
        appendScalar(out, value);
    }
}

} // namespace

std::string jsonQuoted(std::string_view text) {
    std::string out = "\"";
    out.reserve(text.size() + 2);
    for (const char character : text)
        appendEscaped(out, character);
    out += '"';
    return out;
}

std::string decimal(double number) {
    std::array<char, 400> buffer{};
    const auto written =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), number, std::chars_format::fixed, 3);
    if (written.ec != std::errc{})
        throw std::logic_error("a number is too long to be written");
    std::string text(buffer.data(), written.ptr);
    while (text.ends_with('0') && !text.ends_with(".0"))
        text.pop_back();
    return text;
}

std::string compact(const boost::json::value& value) {
    std::string out;
    appendCompact(out, value);
    return out;
}

std::string pretty(const boost::json::value& value) {
    std::string out;
    appendPretty(out, value, "");
    out += '\n';
    return out;
}

} // namespace simulator

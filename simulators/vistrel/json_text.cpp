#include "json_text.hpp"

namespace vistrel {
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
    if (!first) {
        out += "\n" + indent;
    }
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
        out += boost::json::serialize(value);
    }
}

} // namespace

std::string jsonQuoted(std::string_view text) {
    std::string out = "\"";
    out.reserve(text.size() + 2);
    for (const char character : text) {
        appendEscaped(out, character);
    }
    out += '"';
    return out;
}

std::string pretty(const boost::json::value& value) {
    std::string out;
    appendPretty(out, value, "");
    out += '\n';
    return out;
}

} // namespace vistrel

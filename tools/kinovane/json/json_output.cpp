// SPDX-License-Identifier: Apache-2.0

#include "json/json_output.hpp"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>

#include <boost/json/basic_parser_impl.hpp>

#include "terminal/character.hpp"

namespace kinovane::tool {

namespace {

namespace json = boost::json;

constexpr std::string_view replacementCharacter = "\uFFFD";

std::string_view view(const json::string_view& text) { return {text.data(), text.size()}; }

bool isEscaped(std::int32_t codePoint) {
    return codePoint < 0x20 || (codePoint >= 0x7F && codePoint <= 0x9F) || codePoint == 0x2028 ||
           codePoint == 0x2029 || isBidirectionalControl(codePoint);
}

/// Every character that is escaped has at most sixteen bits.
std::string escape(std::int32_t codePoint) {
    constexpr std::string_view hexadecimal = "0123456789abcdef";
    const auto bits = static_cast<std::uint32_t>(codePoint);
    std::string result = "\\u";
    for (const unsigned shift : {12U, 8U, 4U, 0U})
        result += hexadecimal[(bits >> shift) & 0xFU];
    return result;
}

std::string jsonCharacter(std::int32_t codePoint, std::string_view bytes) {
    switch (codePoint) {
    case Character::notUTF8:
        return std::string(replacementCharacter);
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
        return isEscaped(codePoint) ? escape(codePoint) : std::string(bytes);
    }
}

std::string quoted(std::string_view text) {
    std::string result = "\"";
    while (!text.empty()) {
        const auto [codePoint, length] = firstCharacter(text);
        result += jsonCharacter(codePoint, text.substr(0, length));
        text.remove_prefix(length);
    }
    return result + "\"";
}

/// An exponent only for numbers that would have many zeros without it.
std::string numberText(double number) {
    if (!std::isfinite(number))
        return "null";
    const double size = std::abs(number);
    const bool isPlain = size == 0 || (size >= 1e-6 && size < 1e21);
    std::array<char, 32> digits{}; // at most 25 are used
    const auto written = std::to_chars(digits.data(), digits.data() + digits.size(), number,
                                       isPlain ? std::chars_format::fixed : std::chars_format::scientific);
    return {digits.data(), written.ptr};
}

void append(std::string& line, const json::value& value);

void append(std::string& line, const json::array& values) {
    line += '[';
    const char* separator = "";
    for (const json::value& value : values) {
        line += separator;
        append(line, value);
        separator = ",";
    }
    line += ']';
}

void append(std::string& line, const json::object& members) {
    line += '{';
    const char* separator = "";
    for (const json::key_value_pair& member : members) {
        line += separator + quoted(view(member.key())) + ":";
        append(line, member.value());
        separator = ",";
    }
    line += '}';
}

void append(std::string& line, const json::value& value) {
    switch (value.kind()) {
    case json::kind::null:
        line += "null";
        break;
    case json::kind::bool_:
        line += value.get_bool() ? "true" : "false";
        break;
    case json::kind::int64:
        line += std::to_string(value.get_int64());
        break;
    case json::kind::uint64:
        line += std::to_string(value.get_uint64());
        break;
    case json::kind::double_:
        line += numberText(value.get_double());
        break;
    case json::kind::string:
        line += quoted(view(value.get_string()));
        break;
    case json::kind::array:
        append(line, value.get_array());
        break;
    case json::kind::object:
        append(line, value.get_object());
        break;
    }
}

/// Builds a value from the events of Boost.JSON's parser, as Boost.JSON's own handler does, but converts
/// reals exactly. The constants, names and signatures are those that boost::json::basic_parser requires.
class ExactHandler {
  public:
    using Error = boost::system::error_code;
    using View = json::string_view;

    static constexpr std::size_t max_array_size = SIZE_MAX;
    static constexpr std::size_t max_object_size = SIZE_MAX;
    static constexpr std::size_t max_string_size = SIZE_MAX;
    static constexpr std::size_t max_key_size = SIZE_MAX;

    json::value release() { return stack_.release(); }

    bool on_document_begin(Error& /*error*/) {
        stack_.reset();
        return true;
    }
    bool on_document_end(Error& /*error*/) { return true; }
    bool on_object_begin(Error& /*error*/) { return true; }
    bool on_object_end(std::size_t count, Error& /*error*/) {
        stack_.push_object(count);
        return true;
    }
    bool on_array_begin(Error& /*error*/) { return true; }
    bool on_array_end(std::size_t count, Error& /*error*/) {
        stack_.push_array(count);
        return true;
    }
    bool on_key_part(View part, std::size_t /*size*/, Error& /*error*/) {
        stack_.push_chars(part);
        return true;
    }
    bool on_key(View part, std::size_t /*size*/, Error& /*error*/) {
        stack_.push_key(part);
        return true;
    }
    bool on_string_part(View part, std::size_t /*size*/, Error& /*error*/) {
        stack_.push_chars(part);
        return true;
    }
    bool on_string(View part, std::size_t /*size*/, Error& /*error*/) {
        stack_.push_string(part);
        return true;
    }
    // The text is parsed as a whole, so that a number never has several parts.
    bool on_number_part(View /*part*/, Error& /*error*/) { return true; }
    bool on_int64(std::int64_t value, View /*text*/, Error& /*error*/) {
        stack_.push_int64(value);
        return true;
    }
    bool on_uint64(std::uint64_t value, View /*text*/, Error& /*error*/) {
        stack_.push_uint64(value);
        return true;
    }
    bool on_double(double /*value*/, View text, Error& /*error*/) {
        // Some standard libraries have no std::from_chars for reals. This program stays in the C locale.
        stack_.push_double(std::strtod(std::string(text).c_str(), nullptr));
        return true;
    }
    bool on_bool(bool value, Error& /*error*/) {
        stack_.push_bool(value);
        return true;
    }
    bool on_null(Error& /*error*/) {
        stack_.push_null();
        return true;
    }
    bool on_comment_part(View /*part*/, Error& /*error*/) { return true; }
    bool on_comment(View /*part*/, Error& /*error*/) { return true; }

  private:
    json::value_stack stack_;
};

} // namespace

std::string jsonLine(const json::value& value) {
    std::string line;
    append(line, value);
    return line + "\n";
}

json::value parsedJSON(std::string_view text) {
    // On the heap, because the parser takes a text that ends at the parser's own address for an incomplete
    // one.
    const auto parser = std::make_unique<json::basic_parser<ExactHandler>>(json::parse_options());
    boost::system::error_code error;
    const std::size_t end = parser->write_some(false, text.data(), text.size(), error);
    if (!error && end < text.size())
        error = json::error::extra_data;
    if (error)
        throw boost::system::system_error(error);
    return parser->handler().release();
}

} // namespace kinovane::tool

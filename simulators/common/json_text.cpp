// SPDX-License-Identifier: Apache-2.0

#include "common/json_text.hpp"

#include <array>
#include <charconv>

namespace simulator {
namespace {

std::string decimal(double number) {
    // The largest double has 309 digits before the point.
    std::array<char, 400> buffer{};
    const auto written =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), number, std::chars_format::fixed, 3);
    std::string text(buffer.data(), written.ptr);
    while (text.ends_with('0') && !text.ends_with(".0"))
        text.pop_back();
    return text;
}

void append(std::string& out, const json::value& value, const std::string& indent) {
    const std::string inner = indent + "  ";
    const char* separator = "\n";
    const auto beginMember = [&] {
        out += separator + inner;
        separator = ",\n";
    };
    if (const json::object* object = value.if_object(); object != nullptr && !object->empty()) {
        out += '{';
        for (const auto& [key, member] : *object) {
            beginMember();
            out += jsonQuoted(key) + ": ";
            append(out, member, inner);
        }
        out += "\n" + indent + '}';
    } else if (const json::array* array = value.if_array(); array != nullptr && !array->empty()) {
        out += '[';
        for (const json::value& element : *array) {
            beginMember();
            append(out, element, inner);
        }
        out += "\n" + indent + ']';
    } else if (const double* number = value.if_double()) {
        out += decimal(*number);
    } else {
        out += json::serialize(value);
    }
}

} // namespace

std::string jsonQuoted(std::string_view text) { return json::serialize(json::string(text)); }

std::string pretty(const json::value& value) {
    std::string out;
    append(out, value, "");
    out += '\n';
    return out;
}

} // namespace simulator

// SPDX-License-Identifier: Apache-2.0

#include "common/json_text.hpp"

#include <array>
#include <charconv>

#include "common/refusal.hpp"

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

[[noreturn]] void refuseType(std::string_view key, const std::string& expected) {
    throw Refusal("the film's documents are damaged: " + jsonQuoted(key) + " is not " + expected);
}

} // namespace

std::string jsonQuoted(std::string_view text) { return json::serialize(json::string(text)); }

std::string pretty(const json::value& value) {
    std::string out;
    append(out, value, "");
    out += '\n';
    return out;
}

const json::value& memberOf(const json::object& record, std::string_view key) {
    if (const json::value* found = record.if_contains(key))
        return *found;
    throw Refusal("the film's documents are damaged: " + jsonQuoted(key) + " is missing");
}

std::string textOf(const json::object& record, std::string_view key) {
    if (const json::string* text = memberOf(record, key).if_string())
        return {text->data(), text->size()};
    refuseType(key, "a text");
}

std::string optionalTextOf(const json::object& record, std::string_view key) {
    return record.contains(key) ? textOf(record, key) : std::string();
}

std::int64_t integerOf(const json::object& record, std::string_view key) {
    if (const std::int64_t* number = memberOf(record, key).if_int64())
        return *number;
    refuseType(key, "a whole number");
}

double numberOf(const json::object& record, std::string_view key) {
    boost::system::error_code error;
    const auto number = memberOf(record, key).to_number<double>(error);
    if (error)
        refuseType(key, "a number");
    return number;
}

const json::array& listOf(const json::object& record, std::string_view key) {
    if (const json::array* list = memberOf(record, key).if_array())
        return *list;
    refuseType(key, "a list");
}

json::array& listOf(json::object& record, std::string_view key) {
    return const_cast<json::array&>(listOf(static_cast<const json::object&>(record), key));
}

const json::object& recordOf(const json::object& record, std::string_view key) {
    if (const json::object* found = memberOf(record, key).if_object())
        return *found;
    refuseType(key, "a record");
}

json::object& recordOf(json::object& record, std::string_view key) {
    return const_cast<json::object&>(recordOf(static_cast<const json::object&>(record), key));
}

const json::object& asRecord(const json::value& value) {
    if (const json::object* record = value.if_object())
        return *record;
    throw Refusal("the film's documents are damaged: a list holds something that is not a record");
}

json::object& asRecord(json::value& value) {
    return const_cast<json::object&>(asRecord(static_cast<const json::value&>(value)));
}

void removeNulls(json::value& value) {
    if (json::array* list = value.if_array()) {
        for (json::value& element : *list)
            removeNulls(element);
    } else if (json::object* record = value.if_object()) {
        for (auto member = record->begin(); member != record->end();) {
            if (member->value().is_null()) {
                member = record->stable_erase(member);
            } else {
                removeNulls(member->value());
                ++member;
            }
        }
    }
}

json::array textList(const std::vector<std::string>& texts) {
    return json::array(texts.begin(), texts.end());
}

} // namespace simulator

// SPDX-License-Identifier: Apache-2.0

#include "common/record.hpp"

#include "common/refusal.hpp"

namespace simulator {
namespace {

[[noreturn]] void refuseType(std::string_view key, const std::string& expected) {
    throw Refusal("the film's documents are damaged: " + jsonQuoted(key) + " is not " + expected);
}

} // namespace

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

// SPDX-License-Identifier: Apache-2.0

#include "documents.hpp"

#include <cmath>

#include "common/file.hpp"
#include "common/json_text.hpp"
#include "common/refusal.hpp"

namespace film {
namespace {

using simulator::jsonQuoted;
using simulator::Refusal;

constexpr std::uint64_t sizeLimit = std::uint64_t{64} << 20U;

const json::value& require(const json::object& record, std::string_view key) {
    if (const json::value* found = record.if_contains(key))
        return *found;
    throw Refusal("the film's documents are damaged: " + jsonQuoted(key) + " is missing");
}

[[noreturn]] void refuseType(std::string_view key, std::string_view expected) {
    throw Refusal("the film's documents are damaged: " + jsonQuoted(key) + " is not " +
                  std::string(expected));
}

/// Removes every key whose value is null: an optional key that is null counts as absent.
void removeNulls(json::value& value) {
    if (json::array* list = value.if_array()) {
        for (json::value& element : *list)
            removeNulls(element);
    } else if (json::object* record = value.if_object()) {
        for (auto place = record->begin(); place != record->end();) {
            if (place->value().is_null()) {
                place = record->stable_erase(place);
            } else {
                removeNulls(place->value());
                ++place;
            }
        }
    }
}

} // namespace

json::object readDocument(const std::filesystem::path& file) {
    const std::string text = simulator::readWholeFile(file, sizeLimit, "a film document");
    boost::system::error_code error;
    json::value value = json::parse(text, error);
    if (error)
        throw Refusal(jsonQuoted(file.native()) + " is not valid JSON: " + error.message());
    if (!value.is_object())
        throw Refusal(jsonQuoted(file.native()) + " does not hold a JSON object");
    removeNulls(value);
    return std::move(value.get_object());
}

std::string textOf(const json::object& record, std::string_view key) {
    const json::string* text = require(record, key).if_string();
    if (text == nullptr)
        refuseType(key, "a text");
    return {text->data(), text->size()};
}

std::string optionalTextOf(const json::object& record, std::string_view key) {
    const json::value* found = record.if_contains(key);
    return found == nullptr ? std::string() : textOf(record, key);
}

std::int64_t integerOf(const json::object& record, std::string_view key) {
    const std::int64_t* number = require(record, key).if_int64();
    if (number == nullptr)
        refuseType(key, "a whole number");
    return *number;
}

double numberOf(const json::object& record, std::string_view key) {
    boost::system::error_code error;
    const auto number = require(record, key).to_number<double>(error);
    if (error)
        refuseType(key, "a number");
    return number;
}

std::int64_t millisecondsOf(const json::object& record, std::string_view key) {
    const double milliseconds = numberOf(record, key) * 1000;
    // The limit is far beyond any film; it keeps the conversion and later sums within range.
    if (milliseconds < 0 || milliseconds > 1e9)
        refuseType(key, "a reasonable time");
    return std::llround(milliseconds);
}

const json::array& listOf(const json::object& record, std::string_view key) {
    const json::array* list = require(record, key).if_array();
    if (list == nullptr)
        refuseType(key, "a list");
    return *list;
}

json::array& listOf(json::object& record, std::string_view key) {
    return const_cast<json::array&>(listOf(static_cast<const json::object&>(record), key));
}

const json::object& recordOf(const json::object& record, std::string_view key) {
    const json::object* found = require(record, key).if_object();
    if (found == nullptr)
        refuseType(key, "a record");
    return *found;
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

json::array textList(const std::vector<std::string>& texts) {
    json::array list;
    for (const std::string& text : texts)
        list.emplace_back(text);
    return list;
}

json::object* findById(json::array& records, std::string_view id) {
    for (json::value& value : records)
        if (json::object& record = asRecord(value); textOf(record, "id") == id)
            return &record;
    return nullptr;
}

} // namespace film

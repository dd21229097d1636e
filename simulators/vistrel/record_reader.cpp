// SPDX-License-Identifier: Apache-2.0

#include "record_reader.hpp"

#include <cmath>

#include "common/refusal.hpp"

namespace vistrel {
namespace {

using simulator::Refusal;

namespace json = boost::json;

std::string_view nameOf(json::kind kind) {
    switch (kind) {
    case json::kind::null:
        return "null";
    case json::kind::bool_:
        return "true or false";
    case json::kind::int64:
        return "a whole number";
    case json::kind::uint64:
        return "a whole number that is too large";
    case json::kind::double_:
        return "a number with a fraction or an exponent";
    case json::kind::string:
        return "text";
    case json::kind::array:
        return "a list";
    case json::kind::object:
        return "an object";
    }
    return "something unknown";
}

[[noreturn]] void refuseType(const std::string& place, std::string_view expected, const json::value& found) {
    throw Refusal((place.empty() ? "the manifest" : place) + ": expected " + std::string(expected) +
                  ", found " + std::string(nameOf(found.kind())));
}

std::string textOf(const json::value& value, const std::string& place) {
    if (const auto* text = value.if_string())
        return std::string(std::string_view(*text));
    refuseType(place, "text", value);
}

std::int64_t integerOf(const json::value& value, const std::string& place) {
    if (const auto* integer = value.if_int64())
        return *integer;
    refuseType(place, "a whole number", value);
}

} // namespace

RecordReader::RecordReader(const json::value& value, std::string place)
    : object_(value.if_object()), place_(std::move(place)) {
    if (object_ == nullptr)
        refuseType(place_, "an object", value);
}

std::string RecordReader::text(std::string_view key) const { return textOf(require(key), placeOf(key)); }

std::int64_t RecordReader::integer(std::string_view key) const {
    return integerOf(require(key), placeOf(key));
}

double RecordReader::number(std::string_view key) const {
    const json::value& value = require(key);
    if (!value.is_number())
        refuseType(placeOf(key), "a number", value);
    const double number = value.to_number<double>();
    // A number such as 1e400 arrives here as infinity.
    if (!std::isfinite(number))
        throw Refusal(placeOf(key) + ": the number is too large");
    return number;
}

bool RecordReader::flag(std::string_view key) const {
    const json::value& value = require(key);
    if (const auto* flag = value.if_bool())
        return *flag;
    refuseType(placeOf(key), "true or false", value);
}

std::optional<std::string> RecordReader::optionalText(std::string_view key) const {
    const json::value* value = find(key);
    return value != nullptr ? std::optional(textOf(*value, placeOf(key))) : std::nullopt;
}

std::optional<std::int64_t> RecordReader::optionalInteger(std::string_view key) const {
    const json::value* value = find(key);
    return value != nullptr ? std::optional(integerOf(*value, placeOf(key))) : std::nullopt;
}

RecordReader RecordReader::record(std::string_view key) const { return {require(key), placeOf(key)}; }

std::vector<std::string> RecordReader::texts(std::string_view key) const {
    std::vector<std::string> all;
    std::size_t index = 0;
    for (const json::value& element : list(key))
        all.push_back(textOf(element, placeOf(key, index++)));
    return all;
}

const json::value* RecordReader::find(std::string_view key) const {
    const json::value* value = object_->if_contains(key);
    return value != nullptr && !value->is_null() ? value : nullptr;
}

const json::value& RecordReader::require(std::string_view key) const {
    const json::value* value = object_->if_contains(key);
    if (value == nullptr)
        throw Refusal(placeOf(key) + " is missing");
    return *value;
}

const json::array& RecordReader::list(std::string_view key) const {
    const json::value& value = require(key);
    if (const auto* array = value.if_array())
        return *array;
    refuseType(placeOf(key), "a list", value);
}

std::string RecordReader::placeOf(std::string_view key) const {
    return place_.empty() ? std::string(key) : place_ + "." + std::string(key);
}

std::string RecordReader::placeOf(std::string_view key, std::size_t index) const {
    return placeOf(key) + "[" + std::to_string(index) + "]";
}

} // namespace vistrel

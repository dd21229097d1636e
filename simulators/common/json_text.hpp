// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <boost/json.hpp>

namespace simulator {

namespace json = boost::json;

/// The text as a JSON string with its quotes.
std::string jsonQuoted(std::string_view text);

/// The value over several lines with an indent of two, for files that people open. A number with a fraction
/// has one to three decimal places, so that 2.5 stays "2.5" however often a document is read and written.
std::string pretty(const json::value& value);

// Members of a JSON object. One that is missing or of the wrong type is a Refusal that names its key: people
// edit a film's documents.

const json::value& memberOf(const json::object& record, std::string_view key);
std::string textOf(const json::object& record, std::string_view key);
/// The text; empty when the key is missing.
std::string optionalTextOf(const json::object& record, std::string_view key);
std::int64_t integerOf(const json::object& record, std::string_view key);
double numberOf(const json::object& record, std::string_view key);
const json::array& listOf(const json::object& record, std::string_view key);
json::array& listOf(json::object& record, std::string_view key);
const json::object& recordOf(const json::object& record, std::string_view key);
json::object& recordOf(json::object& record, std::string_view key);
const json::object& asRecord(const json::value& value);
json::object& asRecord(json::value& value);

/// Removes every key whose value is null: an optional key that is null counts as absent.
void removeNulls(json::value& value);

json::array textList(const std::vector<std::string>& texts);

} // namespace simulator

// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include <boost/json.hpp>

namespace film {

namespace json = boost::json;

// The documents are kept as JSON, so that keys that this program does not know survive it. What is read from
// them is a Refusal when it is missing or of the wrong type: people edit these files.

/// Reads a document without the keys that are null; these count as absent.
json::object readDocument(const std::filesystem::path& file);

std::string textOf(const json::object& record, std::string_view key);
/// The text, or nothing at all when there is none.
std::string optionalTextOf(const json::object& record, std::string_view key);
std::int64_t integerOf(const json::object& record, std::string_view key);
/// A time in seconds as whole milliseconds.
std::int64_t millisecondsOf(const json::object& record, std::string_view key);
double numberOf(const json::object& record, std::string_view key);
const json::array& listOf(const json::object& record, std::string_view key);
json::array& listOf(json::object& record, std::string_view key);
const json::object& recordOf(const json::object& record, std::string_view key);
json::object& recordOf(json::object& record, std::string_view key);
const json::object& asRecord(const json::value& value);
json::object& asRecord(json::value& value);

json::array textList(const std::vector<std::string>& texts);

/// The record in the list whose `id` it is; none when there is no such record.
json::object* findById(json::array& records, std::string_view id);

} // namespace film

// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "common/json_text.hpp"

namespace simulator {

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

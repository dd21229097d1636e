// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <filesystem>
#include <string_view>

#include "common/record.hpp"

namespace simulator::film {

// The documents are kept as JSON, so that unknown keys are preserved.

/// Reads a document without the keys that are null.
json::object readDocument(const std::filesystem::path& file);

/// A document of templates/.
json::object documentTemplate(std::string_view name);

/// A time in seconds as whole milliseconds.
std::int64_t millisecondsOf(const json::object& record, std::string_view key);

/// The first record whose `key` is this text; null when there is none.
json::object* findRecord(json::array& records, std::string_view key, std::string_view text);

/// Removes the records whose `key` is this text.
void removeRecords(json::array& records, std::string_view key, std::string_view text);

} // namespace simulator::film

// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

#include "common/json_text.hpp"

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

// The artifacts of a project: the record of each media file. Paths identify them.

/// The record of a file; null when there is none.
json::object* findArtifact(json::object& project, std::string_view path);
/// The path of the last artifact of that kind; empty when there is none.
std::string latestPath(const json::object& project, std::string_view kind);
std::int64_t countKind(const json::object& project, std::string_view kind);

/// Adds the record of a file; replaces an earlier one with the same path.
void recordArtifact(json::object& project, std::string_view kind, const std::string& path,
                    std::string_view source, std::string_view bytes, const std::string& createdAt);

} // namespace simulator::film

// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>
#include <string_view>

#include "documents.hpp"

namespace simulator::film {

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

// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>
#include <string_view>

#include "documents.hpp"

namespace film {

/// A file of the film to be recorded: what it is, where it lies in the workspace, and what made it.
struct MediaFile {
    std::string kind, path, contentType, source, bytes;
};

/// The media type that belongs to the ending of a path.
std::string contentTypeOf(std::string_view path);

/// "sha256:" and 64 digits, as the documents write digests.
std::string digestText(std::string_view bytes);

/// The record of a file, or none. Paths are the names by which artifacts are told apart.
json::object* findArtifact(json::object& project, std::string_view path);
/// The path of the last artifact of that kind in the list; empty when there is none.
std::string latestPath(const json::object& project, std::string_view kind);
std::size_t countKind(const json::object& project, std::string_view kind);

/// Adds the record of a file, in the place of an earlier one of the same path.
void recordArtifact(json::object& project, const MediaFile& file, const std::string& createdAt);
void forgetArtifact(json::object& project, std::string_view path);

} // namespace film

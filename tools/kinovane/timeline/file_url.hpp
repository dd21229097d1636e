// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <string>

namespace kinovane::tool {

/// The URL of a file with an absolute path: "file:///films/my%20film/a.mp4". Every byte that is not an
/// unreserved character of RFC 3986 is percent-encoded, so that any path becomes ASCII text.
std::string fileURL(const std::filesystem::path& file);

/// The same as a relative reference from a document in `folder`: "../my%20film/a.mp4". Both paths are
/// absolute, and without links.
std::string relativeURL(const std::filesystem::path& file, const std::filesystem::path& folder);

} // namespace kinovane::tool

// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

namespace kinovane::tool {

/// The path of a regular file below the folder `root`, with all links followed; absent when the path leads
/// anywhere else. `root` is a path without links.
std::optional<std::filesystem::path> pathInside(const std::filesystem::path& root,
                                                const std::filesystem::path& path);

/// The bytes of a regular file whose path `pathInside` returned; absent when it has more than `most` bytes or
/// cannot be read. No link is followed any more, so that a link which was made meanwhile leads nowhere.
std::optional<std::string> contentInside(const std::filesystem::path& root, const std::filesystem::path& file,
                                         std::uint64_t most);

} // namespace kinovane::tool

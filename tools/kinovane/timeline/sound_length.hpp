// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>

namespace kinovane::tool {

/// The length of a WAVE file in milliseconds, rounded down, from its header. Nothing for a file of another
/// format, and for one that cannot be read. Does not wait when the path leads to something else than a file.
std::optional<std::int64_t> soundLength(const std::filesystem::path& file);

} // namespace kinovane::tool

// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>

namespace kinovane::test {

/// Mounts a tmpfs on a directory, visible to this process only. `options` are mount options, such as
/// "size=64k". Returns false when this is not permitted.
bool mountSmallDisk(const std::filesystem::path& directory, const char* options);

/// Remounts it read-only.
void makeReadOnly(const std::filesystem::path& directory);

} // namespace kinovane::test

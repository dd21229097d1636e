// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>

namespace kinovane::test {

/// Puts a disk of its own in place of a directory, seen by this process alone and gone with it. `options` are
/// those of a disk in memory, such as "size=64k". False when this process may not.
bool mountSmallDisk(const std::filesystem::path& directory, const char* options);

/// Lets nobody write to it any more.
void makeReadOnly(const std::filesystem::path& directory);

} // namespace kinovane::test

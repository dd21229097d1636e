// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <string_view>

namespace kinovane::benchmarks {

/// Stores a ready text as a careful program would: a temporary file beside the target, fsync, rename, fsync
/// of the directory. Then hashes the text.
void storeAtomicallyAndHash(std::string_view text, const std::filesystem::path& file);

} // namespace kinovane::benchmarks

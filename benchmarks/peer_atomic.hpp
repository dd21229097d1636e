// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <string_view>

namespace kinovane::benchmarks {

/// Stores a text atomically and durably: temporary file in the same directory, fsync, rename, fsync of the
/// directory. Then hashes the text.
void storeAtomicallyAndHash(std::string_view text, const std::filesystem::path& file);

} // namespace kinovane::benchmarks

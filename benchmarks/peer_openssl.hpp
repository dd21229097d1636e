// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <filesystem>
#include <string_view>
#include <vector>

/// SHA-256 with libcrypto alone.
namespace kinovane::benchmarks {

/// Hashes this many bytes from one buffer of 1 MiB: the upper limit for hashing files.
void hashInMemory(std::uint64_t bytes);

/// The same on two threads, half of the bytes each.
void hashInMemoryOnTwoThreads(std::uint64_t bytes);

/// For each file: open, fstat, read, hash, close, with one context and one buffer for all files.
void hashFilesBare(const std::vector<std::filesystem::path>& files);

/// Hashes one text.
void hashText(std::string_view text);

} // namespace kinovane::benchmarks

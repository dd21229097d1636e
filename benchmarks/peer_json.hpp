// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>

#include <kinovane/handoff.hpp>
#include <kinovane/workspace.hpp>

/// Decoding project documents and encoding manifests with other JSON libraries. Each function reads or writes
/// the file.
namespace kinovane::benchmarks {

FilmProject loadWithNlohmann(const std::filesystem::path& project);

FilmProject loadWithSimdjsonTree(const std::filesystem::path& project);
FilmProject loadWithSimdjsonOnDemand(const std::filesystem::path& project);

/// Parses the document into a tree and destroys it; makes no records.
void parseWithBoost(const std::filesystem::path& project);

/// Writes the manifest directly to the target file, with fsync.
void writeWithNlohmann(const VistrelHandoff& handoff, const std::filesystem::path& file);

} // namespace kinovane::benchmarks

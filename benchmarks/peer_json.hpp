// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>

#include <kinovane/handoff.hpp>
#include <kinovane/workspace.hpp>

/// Project documents and manifests through other JSON libraries. Each reads the file itself.
namespace kinovane::benchmarks {

FilmProject loadWithNlohmann(const std::filesystem::path& project);

FilmProject loadWithSimdjsonTree(const std::filesystem::path& project);
FilmProject loadWithSimdjsonOnDemand(const std::filesystem::path& project);

/// Reads, parses and drops the tree; makes no records.
void parseWithBoost(const std::filesystem::path& project);

/// Writes the manifest straight into its place, with fsync.
void writeWithNlohmann(const VistrelHandoff& handoff, const std::filesystem::path& file);

} // namespace kinovane::benchmarks

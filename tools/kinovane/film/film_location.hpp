// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>

#include <kinovane/workspace.hpp>

namespace kinovane::tool {

/// The path of the run manifest: for a folder the "run.json" in it, otherwise the given path.
std::filesystem::path runManifestAt(const std::filesystem::path& film);

/// Loads a film from its run manifest or its folder. Throws CommandError (`workspace`) whose message names
/// the full path of the document that is wrong, and the recorded path of an artifact beside its number.
FilmWorkspaceSnapshot loadFilm(const std::filesystem::path& film);

} // namespace kinovane::tool

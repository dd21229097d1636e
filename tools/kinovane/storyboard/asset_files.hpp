// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include <kinovane/handoff.hpp>

#include "commands/damage_text.hpp"

namespace kinovane::tool {

/// What is known about the file of an asset.
struct AssetFile {
    /// Absent when the film was not found; for a file that exists, absent unless it was verified.
    std::optional<FileState> state;
    std::string reason; ///< Why the file is not sound. Must be escaped like the text of a document.
    bool exists = false;

    bool isDamaged() const { return state && *state != FileState::sound; }

    bool operator==(const AssetFile&) const = default;
};

/// The files of the assets, in the order of the assets. With `verify` they are compared with their records;
/// without, only their paths are followed, and no content is read. The options give the workers, the progress
/// and the stop. Throws as VistrelHandoffBuilder::examine.
std::vector<AssetFile> examineAssets(const std::filesystem::path& root,
                                     const std::vector<FilmArtifact>& assets, bool verify,
                                     HandoffBuildOptions options);

} // namespace kinovane::tool

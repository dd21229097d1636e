// SPDX-License-Identifier: Apache-2.0

#include "storyboard/asset_files.hpp"

namespace kinovane::tool {

std::vector<AssetFile> examineAssets(const std::filesystem::path& root,
                                     const std::vector<FilmArtifact>& assets, bool verify,
                                     HandoffBuildOptions options) {
    options.compareSizes = true;
    std::vector<FilmArtifact> examined = assets;
    if (!verify)
        for (FilmArtifact& asset : examined)
            asset.bytes = -1; // No file has this size, so that none is read.
    std::vector<AssetFile> files;
    for (const ArtifactOutcome& outcome : VistrelHandoffBuilder::examine(root, examined, options)) {
        const FileState state = stateOf(outcome);
        AssetFile file;
        file.exists = outcome.actualBytes.has_value() && !outcome.failure;
        if (verify || !file.exists) {
            file.state = state;
            file.reason = reasonText(outcome, root);
        }
        files.push_back(std::move(file));
    }
    return files;
}

} // namespace kinovane::tool

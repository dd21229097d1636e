// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <string>

#include "manifest.hpp"

namespace vistrel {

/// What the importer tells its caller about a film.
struct Receipt {
    bool ok = true;
    std::string projectId, episodeId;
    std::int64_t importedScenes = 0, importedShots = 0, importedAssets = 0;
    std::string projectURL;
};

/// The receipt of a film that was accepted; the same for a dry run and for the import itself.
Receipt receiptFor(const Manifest& manifest);

/// The folder and project id of a film: always the same for one id of the film's own project, and never the
/// same for two. It is safe as a file name.
std::string projectIdFor(const Manifest& manifest);

/// The scene of each shot, counted from 1. Shots that follow on each other at one location are one scene.
std::vector<std::int64_t> sceneNumbers(const std::vector<Shot>& shots);

/// One compact line without its line break.
std::string toJson(const Receipt& receipt);

} // namespace vistrel

// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include <boost/json/object.hpp>

#include <kinovane/handoff.hpp>

namespace kinovane::tool {

/// Which records of one list differ between two manifests, in the order of the manifests.
struct RecordChanges {
    std::vector<std::string> changed;
    std::vector<std::string> added;
    std::vector<std::string> removed;

    bool empty() const { return changed.empty() && added.empty() && removed.empty(); }
};

/// What changed in a film since it was handed over before.
struct ManifestChanges {
    std::string since;   ///< The time stamp of the older manifest.
    RecordChanges files; ///< By their paths.
    RecordChanges shots; ///< By their ids.
};

/// The manifest in a file. Absent when there is no such file, and when it is not a readable manifest.
std::optional<VistrelHandoff> readManifest(const std::filesystem::path& file);

ManifestChanges changesBetween(const VistrelHandoff& before, const VistrelHandoff& after);

/// One line: "2 files changed, 1 added; 1 shot removed".
std::string summaryText(const ManifestChanges& changes);

/// One line for each file and each shot: "changed  clips/shot-03.mp4".
std::vector<std::string> listLines(const ManifestChanges& changes);

boost::json::object changesJSON(const ManifestChanges& changes);

} // namespace kinovane::tool

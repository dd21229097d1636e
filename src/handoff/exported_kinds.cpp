// SPDX-License-Identifier: Apache-2.0

#include "handoff/exported_kinds.hpp"

#include <array>
#include <unordered_set>

#include <kinovane/handoff.hpp>

namespace kinovane {

namespace {

constexpr std::array<std::string_view, 29> kinds{
    "cast-master",      "location-master",  "shot-keyframe",   "shot-clip",
    "dialogue",         "sound-effect",     "score",           "subtitle-srt",
    "subtitle-vtt",     "caption-receipt",  "edit-block",      "edit-block-receipt",
    "rough-cut",        "final-master",     "delivery-master", "poster",
    "thumbnail",        "technical-review", "creative-review", "media-inspection",
    "inspection-frame", "review-frame",     "dialogue-qc",     "sound-qc",
    "take-selection",   "review-package",   "human-review",    "production-readiness",
    "delivery",
};

} // namespace

bool isExportedKind(std::string_view kind) {
    // Never destroyed: a worker thread may use it while the process exits.
    static const auto& exported = *new std::unordered_set<std::string_view>(kinds.begin(), kinds.end());
    return exported.contains(kind);
}

std::vector<const FilmArtifact*> exportedArtifacts(const FilmProject& project) {
    std::vector<const FilmArtifact*> exported;
    for (const FilmArtifact& artifact : project.artifacts)
        if (isExportedKind(artifact.kind))
            exported.push_back(&artifact);
    return exported;
}

std::span<const std::string_view> VistrelHandoffBuilder::exportedKinds() noexcept { return kinds; }

} // namespace kinovane

// SPDX-License-Identifier: Apache-2.0

#include "handoff/exported_kinds.hpp"

#include <unordered_set>

namespace kinovane {

bool isExportedKind(std::string_view kind) {
    // Never destroyed: a worker thread may use it while the process exits.
    static const auto& exportedKinds = *new std::unordered_set<std::string_view>{
        "cast-master",      "location-master",  "shot-keyframe",   "shot-clip",
        "dialogue",         "sound-effect",     "score",           "subtitle-srt",
        "subtitle-vtt",     "caption-receipt",  "edit-block",      "edit-block-receipt",
        "rough-cut",        "final-master",     "delivery-master", "poster",
        "thumbnail",        "technical-review", "creative-review", "media-inspection",
        "inspection-frame", "review-frame",     "dialogue-qc",     "sound-qc",
        "take-selection",   "review-package",   "human-review",    "production-readiness",
        "delivery",
    };
    return exportedKinds.contains(kind);
}

} // namespace kinovane

// SPDX-License-Identifier: Apache-2.0

#include "common/handoff.hpp"

#include <algorithm>
#include <array>

#include "common/digest.hpp"
#include "common/json_text.hpp"

namespace simulator {
namespace {

constexpr std::array<std::string_view, 29> kinds{
    "cast-master",      "location-master",      "shot-keyframe",   "shot-clip",
    "dialogue",         "sound-effect",         "score",           "subtitle-srt",
    "subtitle-vtt",     "caption-receipt",      "edit-block",      "edit-block-receipt",
    "rough-cut",        "final-master",         "delivery-master", "poster",
    "thumbnail",        "technical-review",     "creative-review", "media-inspection",
    "inspection-frame", "review-frame",         "dialogue-qc",     "sound-qc",
    "take-selection",   "production-readiness", "review-package",  "human-review",
    "delivery"};

} // namespace

bool isHandedOver(std::string_view kind) { return std::ranges::find(kinds, kind) != kinds.end(); }

std::string assetId(std::string_view path, std::string_view sha256) {
    const std::string named = "{\"path\":" + jsonQuoted(path) + ",\"sha256\":" + jsonQuoted(sha256) + "}";
    return "film_asset_" + digestOf(named).substr(0, 20);
}

} // namespace simulator

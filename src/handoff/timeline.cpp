// SPDX-License-Identifier: Apache-2.0

#include "handoff/timeline.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "common/fatal.hpp"
#include "handoff/milliseconds.hpp"

namespace kinovane {

namespace {

using AssetsByPath = std::unordered_map<std::string_view, const VistrelHandoffAsset*>;

AssetsByPath byPath(const std::vector<VistrelHandoffAsset>& assets) {
    AssetsByPath result;
    result.reserve(assets.size());
    for (const VistrelHandoffAsset& asset : assets)
        if (!result.emplace(asset.relativePath, &asset).second)
            fatalStop("Duplicate values for key: '" + asset.relativePath + "'");
    return result;
}

std::optional<std::string> assetIDAt(const std::string& path, const AssetsByPath& assets) {
    const auto found = assets.find(path);
    if (found == assets.end())
        return std::nullopt;
    return found->second->id;
}

} // namespace

std::string keyframePath(const std::string& shotId) { return "frames/" + shotId + ".png"; }

std::string clipPath(const std::string& shotId) { return "clips/" + shotId + ".mp4"; }

std::optional<std::int64_t> endOnTimeline(std::optional<std::int64_t> start,
                                          std::optional<std::int64_t> duration) {
    std::int64_t end = 0;
    if (!start || !duration || __builtin_add_overflow(*start, *duration, &end))
        return std::nullopt;
    return end;
}

std::vector<VistrelHandoffShot> timelineOf(const std::vector<FilmProductionShot>& planned,
                                           const std::vector<VistrelHandoffAsset>& assets) {
    const AssetsByPath assetsByPath = byPath(assets);
    std::vector<VistrelHandoffShot> shots;
    shots.reserve(planned.size());
    std::int64_t start = 0;
    for (const FilmProductionShot& shot : planned) {
        const std::int64_t duration = roundedMilliseconds(shot.durationSeconds);
        shots.push_back({
            .id = shot.id,
            .order = static_cast<std::int64_t>(shots.size()),
            .purpose = shot.purpose,
            .prompt = shot.prompt,
            .framePrompt = shot.framePrompt,
            .timelineStartMilliseconds = start,
            .durationMilliseconds = duration,
            .characterIds = shot.characters,
            .locationId = shot.location,
            .transition = shot.transition,
            .take = shot.take,
            .seed = shot.selectedSeed.value_or(shot.seed),
            .keyframeAssetId = assetIDAt(keyframePath(shot.id), assetsByPath),
            .clipAssetId = assetIDAt(clipPath(shot.id), assetsByPath),
            .dialogue = shot.dialogue,
            .soundEffects = shot.soundEffects,
        });
        if (__builtin_add_overflow(start, duration, &start))
            fatalStop("The film's timeline does not fit 64 bits of milliseconds");
    }
    return shots;
}

} // namespace kinovane

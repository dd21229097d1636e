// SPDX-License-Identifier: Apache-2.0

#include "manifest_check.hpp"

#include <algorithm>
#include <array>
#include <limits>
#include <map>
#include <set>

#include "common/digest.hpp"
#include "common/json_text.hpp"
#include "common/refusal.hpp"

namespace vistrel {
namespace {

using simulator::digestOf;
using simulator::jsonQuoted;
using simulator::Refusal;

constexpr std::array<std::string_view, 29> importedKinds{
    "cast-master",      "location-master",      "shot-keyframe",   "shot-clip",
    "dialogue",         "sound-effect",         "score",           "subtitle-srt",
    "subtitle-vtt",     "caption-receipt",      "edit-block",      "edit-block-receipt",
    "rough-cut",        "final-master",         "delivery-master", "poster",
    "thumbnail",        "technical-review",     "creative-review", "media-inspection",
    "inspection-frame", "review-frame",         "dialogue-qc",     "sound-qc",
    "take-selection",   "production-readiness", "review-package",  "human-review",
    "delivery"};

constexpr std::string_view idPrefix = "film_asset_";
constexpr std::size_t idDigits = 20;
constexpr std::string_view digestPrefix = "sha256:";
constexpr std::size_t digestDigits = 64;

using AssetsById = std::map<std::string_view, const Asset*>;

[[noreturn]] void refuseShot(const Shot& shot, const std::string& reason) {
    throw Refusal("shot " + jsonQuoted(shot.id) + ": " + reason);
}

[[noreturn]] void refuseAsset(const Asset& asset, const std::string& reason) {
    throw Refusal("asset " + jsonQuoted(asset.relativePath) + ": " + reason);
}

std::string milliseconds(std::int64_t time) { return std::to_string(time) + " ms"; }

/// The prefix, then exactly so many lowercase hexadecimal digits.
bool isPrefixedHex(std::string_view text, std::string_view prefix, std::size_t digits) {
    return text.size() == prefix.size() + digits && text.starts_with(prefix) &&
           text.substr(prefix.size()).find_first_not_of("0123456789abcdef") == std::string_view::npos;
}

bool hasParentPiece(std::string_view path) {
    for (std::size_t start = 0; start <= path.size();) {
        const std::size_t end = std::min(path.find('/', start), path.size());
        if (path.substr(start, end - start) == "..")
            return true;
        start = end + 1;
    }
    return false;
}

void checkHeader(const Manifest& manifest) {
    if (manifest.source.runManifest != "run.json") {
        throw Refusal("source.runManifest: expected \"run.json\", found " +
                      jsonQuoted(manifest.source.runManifest));
    }
    if (manifest.project.durationMilliseconds < 0) {
        throw Refusal("project.durationMilliseconds: a film cannot last " +
                      milliseconds(manifest.project.durationMilliseconds));
    }
}

void checkPath(const Asset& asset) {
    const std::string& path = asset.relativePath;
    if (path.empty())
        throw Refusal("asset " + jsonQuoted(asset.id) + ": the path is empty");
    if (path.front() == '/')
        refuseAsset(asset, "the path is not relative to the project folder");
    if (hasParentPiece(path))
        refuseAsset(asset, "the path has a \"..\" piece");
    if (path.find('\0') != std::string::npos)
        refuseAsset(asset, "the path has a NUL character");
}

void checkIdentity(const Asset& asset) {
    if (!isPrefixedHex(asset.sha256, digestPrefix, digestDigits)) {
        refuseAsset(asset, "the digest " + jsonQuoted(asset.sha256) +
                               " is not \"sha256:\" followed by 64 lowercase hexadecimal digits");
    }
    if (!isPrefixedHex(asset.id, idPrefix, idDigits)) {
        refuseAsset(asset, "the id " + jsonQuoted(asset.id) +
                               " is not \"film_asset_\" followed by 20 lowercase hexadecimal digits");
    }
    const std::string named =
        "{\"path\":" + jsonQuoted(asset.relativePath) + ",\"sha256\":" + jsonQuoted(asset.sha256) + "}";
    const std::string expected = std::string(idPrefix) + digestOf(named).substr(0, idDigits);
    if (asset.id != expected) {
        refuseAsset(asset, "the id is " + jsonQuoted(asset.id) + ", but its path and digest make " +
                               jsonQuoted(expected));
    }
}

AssetsById checkAssets(const std::vector<Asset>& assets) {
    AssetsById byId;
    std::set<std::string_view> paths;
    for (const Asset& asset : assets) {
        checkPath(asset);
        if (!paths.insert(asset.relativePath).second)
            refuseAsset(asset, "two assets have this path");
        if (!byId.emplace(asset.id, &asset).second)
            refuseAsset(asset, "another asset has the same id " + jsonQuoted(asset.id));
        if (std::ranges::find(importedKinds, asset.kind) == importedKinds.end())
            refuseAsset(asset, "the kind " + jsonQuoted(asset.kind) + " is not one that can be imported");
        if (asset.bytes < 0)
            refuseAsset(asset, "a file cannot have " + std::to_string(asset.bytes) + " bytes");
        checkIdentity(asset);
    }
    return byId;
}

void checkLink(const Shot& shot, std::string_view role, const std::optional<std::string>& assetId,
               const std::string& expectedPath, const AssetsById& assets) {
    if (!assetId)
        return;
    const auto found = assets.find(*assetId);
    if (found == assets.end()) {
        refuseShot(shot,
                   "its " + std::string(role) + " " + jsonQuoted(*assetId) + " is not among the assets");
    }
    if (const std::string& path = found->second->relativePath; path != expectedPath) {
        refuseShot(shot, "its " + std::string(role) + " is " + jsonQuoted(path) + ", but should be " +
                             jsonQuoted(expectedPath));
    }
}

void checkShots(const std::vector<Shot>& shots, const AssetsById& assets) {
    std::set<std::string_view> ids;
    std::int64_t order = 0;
    std::int64_t clock = 0;
    for (const Shot& shot : shots) {
        if (!ids.insert(shot.id).second)
            refuseShot(shot, "two shots have this id");
        if (shot.order != order) {
            refuseShot(shot, "its order is " + std::to_string(shot.order) +
                                 ", but its place in the film is " + std::to_string(order));
        }
        if (shot.timelineStartMilliseconds != clock) {
            refuseShot(shot, "starts at " + milliseconds(shot.timelineStartMilliseconds) +
                                 ", but the shots before it end at " + milliseconds(clock));
        }
        if (shot.durationMilliseconds < 0)
            refuseShot(shot, "cannot last " + milliseconds(shot.durationMilliseconds));
        if (shot.durationMilliseconds > std::numeric_limits<std::int64_t>::max() - clock)
            refuseShot(shot, "makes the film longer than can be counted in milliseconds");
        checkLink(shot, "key frame", shot.keyframeAssetId, "frames/" + shot.id + ".png", assets);
        checkLink(shot, "clip", shot.clipAssetId, "clips/" + shot.id + ".mp4", assets);
        clock += shot.durationMilliseconds;
        ++order;
    }
}

} // namespace

void checkManifest(const Manifest& manifest) {
    checkHeader(manifest);
    const AssetsById assets = checkAssets(manifest.assets);
    checkShots(manifest.shots, assets);
}

} // namespace vistrel

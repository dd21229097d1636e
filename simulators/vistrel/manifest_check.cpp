// SPDX-License-Identifier: Apache-2.0

#include <algorithm>
#include <limits>
#include <map>
#include <set>

#include "common/handoff.hpp"
#include "common/refusal.hpp"
#include "manifest.hpp"

namespace simulator::vistrel {
namespace {

constexpr std::string_view idPrefix = "film_asset_";
constexpr std::size_t idDigits = 20;
constexpr std::string_view digestPrefix = "sha256:";
constexpr std::size_t digestDigits = 64;

using PathsById = std::map<std::string, std::string>;

std::string milliseconds(std::int64_t time) { return std::to_string(time) + " ms"; }

/// Whether the text is the prefix followed by exactly so many lowercase hexadecimal digits.
bool isPrefixedHex(std::string_view text, std::string_view prefix, std::size_t digits) {
    return text.size() == prefix.size() + digits && text.starts_with(prefix) &&
           text.substr(prefix.size()).find_first_not_of("0123456789abcdef") == std::string_view::npos;
}

void checkHeader(const json::object& manifest) {
    const std::string runManifest = textOf(recordOf(manifest, "source"), "runManifest");
    if (runManifest != "run.json")
        throw Refusal("source.runManifest: expected \"run.json\", found " + jsonQuoted(runManifest));
    const std::int64_t duration = integerOf(recordOf(manifest, "project"), "durationMilliseconds");
    if (duration < 0)
        throw Refusal("project.durationMilliseconds: a film cannot last " + milliseconds(duration));
}

/// The checks of one asset by itself; each failure is a Refusal that names the asset.
class AssetCheck {
  public:
    explicit AssetCheck(const json::object& asset)
        : id_(textOf(asset, "id")), path_(textOf(asset, "relativePath")), kind_(textOf(asset, "kind")),
          sha256_(textOf(asset, "sha256")), bytes_(integerOf(asset, "bytes")) {}

    const std::string& id() const noexcept { return id_; }
    const std::string& path() const noexcept { return path_; }

    [[noreturn]] void refuse(const std::string& reason) const {
        throw Refusal("asset " + jsonQuoted(path_.empty() ? id_ : path_) + ": " + reason);
    }

    void checkPath() const {
        if (path_.empty())
            refuse("the path is empty");
        if (path_.front() == '/')
            refuse("the path is not relative to the project folder");
        const std::filesystem::path path(path_);
        if (std::ranges::find(path, std::filesystem::path("..")) != path.end())
            refuse("the path has a \"..\" component");
        if (path_.find('\0') != std::string::npos)
            refuse("the path has a NUL character");
    }

    void checkContent() const {
        if (!isHandedOver(kind_))
            refuse("the kind " + jsonQuoted(kind_) + " is not one that can be imported");
        if (bytes_ < 0)
            refuse("a file cannot have " + std::to_string(bytes_) + " bytes");
        if (!isPrefixedHex(sha256_, digestPrefix, digestDigits)) {
            refuse("the digest " + jsonQuoted(sha256_) +
                   " is not \"sha256:\" followed by 64 lowercase hexadecimal digits");
        }
        if (!isPrefixedHex(id_, idPrefix, idDigits)) {
            refuse("the id " + jsonQuoted(id_) +
                   " is not \"film_asset_\" followed by 20 lowercase hexadecimal digits");
        }
        if (const std::string expected = assetId(path_, sha256_); id_ != expected)
            refuse("the id is " + jsonQuoted(id_) + ", but its path and digest make " + jsonQuoted(expected));
    }

  private:
    std::string id_, path_, kind_, sha256_;
    std::int64_t bytes_;
};

PathsById checkAssets(const json::array& assets) {
    PathsById pathsById;
    std::set<std::string> paths;
    for (const json::value& value : assets) {
        const AssetCheck asset(asRecord(value));
        asset.checkPath();
        if (!paths.insert(asset.path()).second)
            asset.refuse("two assets have this path");
        if (!pathsById.emplace(asset.id(), asset.path()).second)
            asset.refuse("another asset has the same id " + jsonQuoted(asset.id()));
        asset.checkContent();
    }
    return pathsById;
}

[[noreturn]] void refuseShot(const std::string& id, const std::string& reason) {
    throw Refusal("shot " + jsonQuoted(id) + ": " + reason);
}

void checkLink(const json::object& shot, const std::string& role, std::string_view key,
               const std::string& expectedPath, const PathsById& assets) {
    if (!shot.contains(key))
        return;
    const std::string id = textOf(shot, key);
    const auto found = assets.find(id);
    if (found == assets.end())
        refuseShot(textOf(shot, "id"), "its " + role + " " + jsonQuoted(id) + " is not among the assets");
    if (found->second != expectedPath) {
        refuseShot(textOf(shot, "id"), "its " + role + " is " + jsonQuoted(found->second) +
                                           ", but should be " + jsonQuoted(expectedPath));
    }
}

void checkShots(const json::array& shots, const PathsById& assets) {
    std::set<std::string> ids;
    std::int64_t expectedOrder = 0;
    std::int64_t expectedStart = 0;
    for (const json::value& value : shots) {
        const json::object& shot = asRecord(value);
        const std::string id = textOf(shot, "id");
        if (!ids.insert(id).second)
            refuseShot(id, "two shots have this id");
        if (const std::int64_t order = integerOf(shot, "order"); order != expectedOrder) {
            refuseShot(id, "its order is " + std::to_string(order) + ", but its position in the film is " +
                               std::to_string(expectedOrder));
        }
        const std::int64_t start = integerOf(shot, "timelineStartMilliseconds");
        if (start != expectedStart) {
            refuseShot(id, "starts at " + milliseconds(start) + ", but the shots before it end at " +
                               milliseconds(expectedStart));
        }
        const std::int64_t duration = integerOf(shot, "durationMilliseconds");
        if (duration < 0)
            refuseShot(id, "cannot last " + milliseconds(duration));
        if (duration > std::numeric_limits<std::int64_t>::max() - expectedStart)
            refuseShot(id, "makes the film longer than can be counted in milliseconds");
        checkLink(shot, "key frame", "keyframeAssetId", "frames/" + id + ".png", assets);
        checkLink(shot, "clip", "clipAssetId", "clips/" + id + ".mp4", assets);
        expectedStart += duration;
        ++expectedOrder;
    }
}

} // namespace

void checkManifest(const json::object& manifest) {
    checkHeader(manifest);
    checkShots(listOf(manifest, "shots"), checkAssets(listOf(manifest, "assets")));
}

} // namespace simulator::vistrel

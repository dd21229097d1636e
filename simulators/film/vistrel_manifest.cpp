// SPDX-License-Identifier: Apache-2.0

#include "vistrel_manifest.hpp"

#include <map>

#include "common/digest.hpp"
#include "common/handoff.hpp"
#include "common/refusal.hpp"

namespace simulator::film {
namespace {

constexpr std::uint64_t sizeLimit = std::uint64_t{1} << 30U;

using AssetIds = std::map<std::string, std::string>;

void verify(const Workspace& workspace, const json::object& artifact) {
    const std::string path = textOf(artifact, "path");
    const std::filesystem::path file = std::filesystem::weakly_canonical(workspace.path(path));
    const std::filesystem::path inside =
        file.lexically_relative(std::filesystem::canonical(workspace.root()));
    if (path.starts_with('/') || inside.empty() || *inside.begin() == "..")
        throw Refusal("The file " + jsonQuoted(path) + " does not lie inside the film's folder.");
    if (!std::filesystem::exists(file))
        throw Refusal("The file " + jsonQuoted(path) + " is missing.");
    const std::string bytes = readWholeFile(file, sizeLimit, "a media file");
    if ("sha256:" + digestOf(bytes) != textOf(artifact, "sha256") ||
        static_cast<std::int64_t>(bytes.size()) != integerOf(artifact, "bytes")) {
        throw Refusal("The file " + jsonQuoted(path) + " is not the one that was recorded.");
    }
}

json::array assetsOf(const Workspace& workspace, VistrelManifest& manifest, AssetIds& ids) {
    json::array assets;
    for (const json::value& value : listOf(workspace.project(), "artifacts")) {
        const json::object& artifact = asRecord(value);
        const std::string kind = textOf(artifact, "kind");
        if (!isHandedOver(kind))
            continue;
        verify(workspace, artifact);
        const std::string path = textOf(artifact, "path");
        const std::string id = assetId(path, textOf(artifact, "sha256"));
        if (!ids.emplace(path, id).second)
            throw Refusal("The file " + jsonQuoted(path) + " is recorded twice.");
        json::object asset{{"id", id}, {"kind", kind}, {"relativePath", path}};
        for (const char* key : {"sha256", "bytes", "contentType", "source"})
            asset[key] = memberOf(artifact, key);
        assets.emplace_back(std::move(asset));
        manifest.bytes += integerOf(artifact, "bytes");
    }
    manifest.assets = static_cast<std::int64_t>(assets.size());
    return assets;
}

json::array shotsOf(const json::object& plan, const AssetIds& ids) {
    json::array shots;
    std::int64_t start = 0;
    for (const json::value& value : listOf(plan, "shots")) {
        const json::object& planned = asRecord(value);
        const std::string id = textOf(planned, "id");
        const std::int64_t length = millisecondsOf(planned, "durationSeconds");
        const bool chosen = planned.contains("selectedSeed");
        json::object shot{{"id", id},
                          {"order", static_cast<std::int64_t>(shots.size())},
                          {"purpose", textOf(planned, "purpose")},
                          {"prompt", textOf(planned, "prompt")},
                          {"framePrompt", textOf(planned, "framePrompt")},
                          {"timelineStartMilliseconds", start},
                          {"durationMilliseconds", length},
                          {"characterIds", listOf(planned, "characters")},
                          {"locationId", textOf(planned, "location")},
                          {"transition", textOf(planned, "transition")},
                          {"take", integerOf(planned, "take")},
                          {"seed", integerOf(planned, chosen ? "selectedSeed" : "seed")}};
        if (const auto frame = ids.find("frames/" + id + ".png"); frame != ids.end())
            shot["keyframeAssetId"] = frame->second;
        if (const auto clip = ids.find("clips/" + id + ".mp4"); clip != ids.end())
            shot["clipAssetId"] = clip->second;
        shot["dialogue"] = listOf(planned, "dialogue");
        shot["soundEffects"] = listOf(planned, "soundEffects");
        shots.emplace_back(std::move(shot));
        start += length;
    }
    return shots;
}

json::object headerOf(const Workspace& workspace) {
    const json::object& plan = workspace.plan();
    const json::object& target = recordOf(plan, "target");
    json::object header{{"title", textOf(workspace.project(), "title")},
                        {"idea", textOf(workspace.project(), "idea")}};
    if (const std::optional<json::object>& treatment = workspace.treatment())
        for (const char* key : {"logline", "synopsis", "theme"})
            header[key] = textOf(*treatment, key);
    header["durationMilliseconds"] = millisecondsOf(plan, "plannedDurationSeconds");
    header["fps"] = target.contains("fps") ? integerOf(target, "fps") : 24;
    header["aspectRatio"] = target.contains("aspectRatio") ? textOf(target, "aspectRatio") : "16:9";
    for (const char* key : {"width", "height"})
        if (target.contains(key))
            header[key] = integerOf(target, key);
    return header;
}

} // namespace

VistrelManifest vistrelManifestOf(const Workspace& workspace) {
    const json::object& project = workspace.project();
    const json::object& plan = workspace.plan();
    if (plan.empty())
        throw Refusal("This film has no production plan, so there is nothing to hand over.");
    VistrelManifest manifest;
    AssetIds ids;
    json::array assets = assetsOf(workspace, manifest, ids);
    json::array shots = shotsOf(plan, ids);
    manifest.shots = static_cast<std::int64_t>(shots.size());
    manifest.document = {
        {"contractVersion", handoffContract},
        {"exportedAt", timeStamp()},
        {"source", json::object{{"projectId", textOf(project, "projectId")},
                                {"projectRoot", workspace.root().native()},
                                {"runManifest", "run.json"},
                                {"projectContractVersion", textOf(project, "contractVersion")},
                                {"updatedAt", textOf(project, "updatedAt")}}},
        {"project", headerOf(workspace)},
        {"cast", listOf(plan, "cast")},
        {"locations", listOf(plan, "locations")},
        {"shots", std::move(shots)},
        {"assets", std::move(assets)},
        {"proof", recordOf(project, "proof")}};
    return manifest;
}

} // namespace simulator::film

// SPDX-License-Identifier: Apache-2.0

#include <cstdio>
#include <optional>
#include <stdexcept>
#include <string>

#include <unistd.h>

#include "peer_json.hpp"
#include "peer_nlohmann_records.hpp"

namespace kinovane {

using nlohmann::json;

namespace {

template <class Value>
void put(json& object, const char* key, const std::optional<Value>& value) {
    if (value)
        object[key] = *value;
}

} // namespace

static void to_json(json& object, const VistrelHandoffProject& project) {
    object["title"] = project.title;
    object["idea"] = project.idea;
    put(object, "logline", project.logline);
    put(object, "synopsis", project.synopsis);
    put(object, "theme", project.theme);
    object["durationMilliseconds"] = project.durationMilliseconds;
    object["fps"] = project.fps;
    object["aspectRatio"] = project.aspectRatio;
    put(object, "width", project.width);
    put(object, "height", project.height);
}

static void to_json(json& object, const FilmCastMember& member) {
    object["id"] = member.id;
    object["name"] = member.name;
    object["visual"] = member.visual;
    object["wardrobe"] = member.wardrobe;
    object["voice"] = member.voice;
    put(object, "seed", member.seed);
}

static void to_json(json& object, const FilmLocation& location) {
    object["id"] = location.id;
    object["name"] = location.name;
    object["visual"] = location.visual;
    object["ambience"] = location.ambience;
    put(object, "seed", location.seed);
}

static void to_json(json& object, const VistrelHandoffShot& shot) {
    object["id"] = shot.id;
    object["order"] = shot.order;
    object["purpose"] = shot.purpose;
    object["prompt"] = shot.prompt;
    object["framePrompt"] = shot.framePrompt;
    object["timelineStartMilliseconds"] = shot.timelineStartMilliseconds;
    object["durationMilliseconds"] = shot.durationMilliseconds;
    object["characterIds"] = shot.characterIds;
    object["locationId"] = shot.locationId;
    object["transition"] = shot.transition;
    object["take"] = shot.take;
    object["seed"] = shot.seed;
    put(object, "keyframeAssetId", shot.keyframeAssetId);
    put(object, "clipAssetId", shot.clipAssetId);
    object["dialogue"] = shot.dialogue;
    object["soundEffects"] = shot.soundEffects;
}

static void to_json(json& object, const VistrelHandoff& handoff) {
    object["contractVersion"] = handoff.contractVersion;
    object["exportedAt"] = handoff.exportedAt;
    object["source"] = handoff.source;
    object["project"] = handoff.project;
    object["cast"] = handoff.cast;
    object["locations"] = handoff.locations;
    object["shots"] = handoff.shots;
    object["assets"] = handoff.assets;
    object["proof"] = handoff.proof;
}

void benchmarks::writeWithNlohmann(const VistrelHandoff& handoff, const std::filesystem::path& file) {
    const std::string text = json(handoff).dump(2);
    std::FILE* out = std::fopen(file.c_str(), "wb");
    const bool written = out != nullptr && std::fwrite(text.data(), 1, text.size(), out) == text.size() &&
                         std::fflush(out) == 0 && ::fsync(::fileno(out)) == 0;
    if (out != nullptr)
        std::fclose(out);
    if (!written)
        throw std::runtime_error("cannot write " + file.string());
}

} // namespace kinovane

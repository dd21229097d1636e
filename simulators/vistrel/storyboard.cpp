// SPDX-License-Identifier: Apache-2.0

#include "storyboard.hpp"

#include <algorithm>
#include <cmath>
#include <map>

#include "common/json_text.hpp"
#include "receipt.hpp"

namespace vistrel {
namespace {

using simulator::pretty;

namespace json = boost::json;

/// The names and files that the shots refer to by id.
struct Register {
    std::map<std::string_view, std::string_view> names;
    std::map<std::string_view, std::string> files;
};

Register registerOf(const Manifest& manifest) {
    Register all;
    for (const CastMember& member : manifest.cast)
        all.names.emplace(member.id, member.name);
    for (const Location& location : manifest.locations)
        all.names.emplace(location.id, location.name);
    for (const Asset& asset : manifest.assets)
        all.files.emplace(asset.id, storedPath(asset).generic_string());
    return all;
}

/// Plans may refer to people and places that they do not describe; those keep their id as their name.
std::string_view nameOf(const Register& all, std::string_view id) {
    const auto found = all.names.find(id);
    return found != all.names.end() ? found->second : id;
}

/// Times beyond any film are cut to the limit, because a conversion of them would have no defined result.
std::int64_t milliseconds(double seconds) {
    constexpr double limit = 9e12;
    return std::llround(std::clamp(seconds, -limit, limit) * 1000);
}

json::array dialogueOf(const Register& all, const Shot& shot) {
    json::array lines;
    for (const DialogueLine& line : shot.dialogue) {
        lines.push_back(json::object{{"offsetMilliseconds", milliseconds(line.startSeconds)},
                                     {"speaker", nameOf(all, line.speaker)},
                                     {"text", line.text},
                                     {"delivery", line.delivery}});
    }
    return lines;
}

json::array soundOf(const Shot& shot) {
    json::array effects;
    for (const SoundEffect& effect : shot.soundEffects) {
        effects.push_back(json::object{{"offsetMilliseconds", milliseconds(effect.startSeconds)},
                                       {"durationMilliseconds", milliseconds(effect.durationSeconds)},
                                       {"sound", effect.prompt}});
    }
    return effects;
}

json::object shotOf(const Register& all, const Shot& shot, std::int64_t scene) {
    json::object entry{{"id", shot.id},
                       {"scene", scene},
                       {"startMilliseconds", shot.timelineStartMilliseconds},
                       {"endMilliseconds", shot.timelineStartMilliseconds + shot.durationMilliseconds},
                       {"purpose", shot.purpose},
                       {"location", nameOf(all, shot.locationId)}};
    json::array characters;
    for (const std::string& id : shot.characterIds)
        characters.emplace_back(nameOf(all, id));
    entry["characters"] = std::move(characters);
    if (shot.keyframeAssetId)
        entry["keyFrame"] = all.files.at(*shot.keyframeAssetId);
    if (shot.clipAssetId)
        entry["clip"] = all.files.at(*shot.clipAssetId);
    entry["dialogue"] = dialogueOf(all, shot);
    entry["soundEffects"] = soundOf(shot);
    entry["transition"] = shot.transition;
    return entry;
}

} // namespace

std::filesystem::path storedPath(const Asset& asset) {
    return "assets" / std::filesystem::path(asset.relativePath).lexically_normal();
}

std::string storyboardOf(const Manifest& manifest) {
    const Register all = registerOf(manifest);
    const std::vector<std::int64_t> scenes = sceneNumbers(manifest.shots);
    json::object board{{"title", manifest.project.title}};
    if (manifest.project.logline)
        board["logline"] = *manifest.project.logline;
    board["durationMilliseconds"] = manifest.project.durationMilliseconds;
    board["framesPerSecond"] = manifest.project.fps;
    board["aspectRatio"] = manifest.project.aspectRatio;
    json::array shots;
    for (std::size_t index = 0; index < manifest.shots.size(); ++index)
        shots.push_back(shotOf(all, manifest.shots[index], scenes[index]));
    board["shots"] = std::move(shots);
    return pretty(board);
}

} // namespace vistrel

// SPDX-License-Identifier: Apache-2.0

#include "storyboard.hpp"

#include <algorithm>
#include <cmath>
#include <map>
#include <optional>

#include "common/digest.hpp"

namespace simulator::vistrel {
namespace {

/// The names and files that the shots refer to by id.
struct References {
    std::map<std::string, std::string> names, files;

    explicit References(const json::object& manifest) {
        for (const char* list : {"cast", "locations"})
            for (const json::value& value : listOf(manifest, list))
                names.emplace(textOf(asRecord(value), "id"), textOf(asRecord(value), "name"));
        for (const json::value& value : listOf(manifest, "assets")) {
            const json::object& asset = asRecord(value);
            files.emplace(textOf(asset, "id"), storedPath(asset).generic_string());
        }
    }

    /// Plans may refer to people and locations that they do not describe; their id serves as the name.
    std::string nameOf(const std::string& id) const {
        const auto found = names.find(id);
        return found != names.end() ? found->second : id;
    }
};

std::int64_t milliseconds(const json::object& record, std::string_view secondsKey) {
    // Within this limit the conversion to an integer is defined.
    constexpr double limit = 9e12;
    return std::llround(std::clamp(numberOf(record, secondsKey), -limit, limit) * 1000);
}

json::array dialogueOf(const json::object& shot, const References& references) {
    json::array lines;
    for (const json::value& value : listOf(shot, "dialogue")) {
        const json::object& line = asRecord(value);
        lines.push_back(json::object{{"offsetMilliseconds", milliseconds(line, "startSeconds")},
                                     {"speaker", references.nameOf(textOf(line, "speaker"))},
                                     {"text", textOf(line, "text")},
                                     {"delivery", textOf(line, "delivery")}});
    }
    return lines;
}

json::array soundEffectsOf(const json::object& shot) {
    json::array effects;
    for (const json::value& value : listOf(shot, "soundEffects")) {
        const json::object& effect = asRecord(value);
        effects.push_back(json::object{{"offsetMilliseconds", milliseconds(effect, "startSeconds")},
                                       {"durationMilliseconds", milliseconds(effect, "durationSeconds")},
                                       {"sound", textOf(effect, "prompt")}});
    }
    return effects;
}

json::object shotOf(const json::object& shot, std::int64_t scene, const References& references) {
    const std::int64_t start = integerOf(shot, "timelineStartMilliseconds");
    json::array characters;
    for (const json::value& id : listOf(shot, "characterIds"))
        characters.emplace_back(references.nameOf(std::string(id.as_string())));
    json::object entry{{"id", textOf(shot, "id")},
                       {"scene", scene},
                       {"startMilliseconds", start},
                       {"endMilliseconds", start + integerOf(shot, "durationMilliseconds")},
                       {"purpose", textOf(shot, "purpose")},
                       {"location", references.nameOf(textOf(shot, "locationId"))},
                       {"characters", std::move(characters)}};
    if (shot.contains("keyframeAssetId"))
        entry["keyFrame"] = references.files.at(textOf(shot, "keyframeAssetId"));
    if (shot.contains("clipAssetId"))
        entry["clip"] = references.files.at(textOf(shot, "clipAssetId"));
    entry["dialogue"] = dialogueOf(shot, references);
    entry["soundEffects"] = soundEffectsOf(shot);
    entry["transition"] = textOf(shot, "transition");
    return entry;
}

constexpr std::size_t longestName = 40;
constexpr std::size_t fingerprintDigits = 12;

/// The readable part of a project id: ASCII letters and digits in lower case, "-" for everything else.
std::string readableName(std::string_view id) {
    std::string name;
    for (const char character : id.substr(0, longestName)) {
        const bool upper = character >= 'A' && character <= 'Z';
        const bool plain = (character >= 'a' && character <= 'z') || (character >= '0' && character <= '9');
        if (upper)
            name += static_cast<char>(character - 'A' + 'a');
        else
            name += plain ? character : '-';
    }
    return name;
}

} // namespace

std::filesystem::path storedPath(const json::object& asset) {
    return "assets" / std::filesystem::path(textOf(asset, "relativePath")).lexically_normal();
}

json::object storyboardOf(const json::object& manifest) {
    const References references(manifest);
    const json::object& project = recordOf(manifest, "project");
    json::object board{{"title", textOf(project, "title")}};
    if (project.contains("logline"))
        board["logline"] = textOf(project, "logline");
    board["durationMilliseconds"] = integerOf(project, "durationMilliseconds");
    board["framesPerSecond"] = integerOf(project, "fps");
    board["aspectRatio"] = textOf(project, "aspectRatio");
    const std::vector<std::int64_t> scenes = sceneNumbers(listOf(manifest, "shots"));
    json::array shots;
    for (const json::value& shot : listOf(manifest, "shots"))
        shots.push_back(shotOf(asRecord(shot), scenes[shots.size()], references));
    board["shots"] = std::move(shots);
    return board;
}

std::string projectIdFor(const json::object& manifest) {
    // With the name alone, "film 1" and "film-1" would replace each other.
    const std::string id = textOf(recordOf(manifest, "source"), "projectId");
    return "vistrel_" + readableName(id) + "_" + digestOf(id).substr(0, fingerprintDigits);
}

std::vector<std::int64_t> sceneNumbers(const json::array& shots) {
    std::vector<std::int64_t> numbers;
    std::int64_t scene = 0;
    std::optional<std::string> previous;
    for (const json::value& shot : shots) {
        std::string location = textOf(asRecord(shot), "locationId");
        if (previous != location)
            ++scene;
        numbers.push_back(scene);
        previous = std::move(location);
    }
    return numbers;
}

json::object receiptFor(const json::object& manifest) {
    const std::string projectId = projectIdFor(manifest);
    const json::array& shots = listOf(manifest, "shots");
    const std::vector<std::int64_t> scenes = sceneNumbers(shots);
    return {{"ok", true},
            {"project_id", projectId},
            {"episode_id", projectId + "_episode_1"},
            {"imported_scenes", scenes.empty() ? 0 : scenes.back()},
            {"imported_shots", shots.size()},
            {"imported_assets", listOf(manifest, "assets").size()},
            {"project_url", "vistrel://projects/" + projectId}};
}

} // namespace simulator::vistrel

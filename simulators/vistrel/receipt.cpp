// SPDX-License-Identifier: Apache-2.0

#include "receipt.hpp"

#include <optional>

#include "common/digest.hpp"

namespace simulator::vistrel {
namespace {

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

// SPDX-License-Identifier: Apache-2.0

#include "receipt.hpp"

#include <boost/json.hpp>

#include "common/digest.hpp"

namespace vistrel {
namespace {

using simulator::digestOf;

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

std::string projectIdFor(const Manifest& manifest) {
    // The name alone would let "film 1" and "film-1" overwrite each other.
    const std::string& id = manifest.source.projectId;
    return "vistrel_" + readableName(id) + "_" + digestOf(id).substr(0, fingerprintDigits);
}

std::vector<std::int64_t> sceneNumbers(const std::vector<Shot>& shots) {
    std::vector<std::int64_t> numbers;
    std::int64_t scene = 0;
    const Shot* before = nullptr;
    for (const Shot& shot : shots) {
        if (before == nullptr || before->locationId != shot.locationId)
            ++scene;
        numbers.push_back(scene);
        before = &shot;
    }
    return numbers;
}

Receipt receiptFor(const Manifest& manifest) {
    const std::string projectId = projectIdFor(manifest);
    const std::vector<std::int64_t> scenes = sceneNumbers(manifest.shots);
    Receipt receipt;
    receipt.projectId = projectId;
    receipt.episodeId = projectId + "_episode_1";
    receipt.importedScenes = scenes.empty() ? 0 : scenes.back();
    receipt.importedShots = static_cast<std::int64_t>(manifest.shots.size());
    receipt.importedAssets = static_cast<std::int64_t>(manifest.assets.size());
    receipt.projectURL = "vistrel://projects/" + projectId;
    return receipt;
}

std::string toJson(const Receipt& receipt) {
    return boost::json::serialize(boost::json::object{{"ok", receipt.ok},
                                                      {"project_id", receipt.projectId},
                                                      {"episode_id", receipt.episodeId},
                                                      {"imported_scenes", receipt.importedScenes},
                                                      {"imported_shots", receipt.importedShots},
                                                      {"imported_assets", receipt.importedAssets},
                                                      {"project_url", receipt.projectURL}});
}

} // namespace vistrel

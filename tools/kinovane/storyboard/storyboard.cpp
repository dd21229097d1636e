// SPDX-License-Identifier: Apache-2.0

#include "storyboard/storyboard.hpp"

#include <algorithm>
#include <functional>
#include <iterator>
#include <string_view>
#include <unordered_map>

#include <kinovane/film_shots.hpp>

namespace kinovane::tool {

namespace {

/// The names of records by their ids; of several with one id the first counts.
template <class Record>
std::unordered_map<std::string, std::string> namesOf(const std::vector<Record>& records) {
    std::unordered_map<std::string, std::string> names;
    for (const Record& record : records)
        names.emplace(record.id, record.name);
    return names;
}

using Names = std::unordered_map<std::string, std::string>;
using Positions = std::unordered_map<std::string, std::size_t>;

StoryboardName named(const std::string& id, const Names& names) {
    const auto found = names.find(id);
    return {id, found == names.end() ? std::nullopt : std::optional(found->second)};
}

std::vector<StoryboardName> named(const std::vector<std::string>& ids, const Names& names) {
    std::vector<StoryboardName> list;
    for (const std::string& id : ids)
        list.push_back(named(id, names));
    return list;
}

std::vector<FilmDialogueLine> withSpeakerNames(std::vector<FilmDialogueLine> lines, const Names& names) {
    for (FilmDialogueLine& line : lines)
        if (const auto found = names.find(line.speaker); found != names.end())
            line.speaker = found->second;
    return lines;
}

std::optional<std::size_t> positionOf(const std::string& id, const Positions& positions) {
    const auto found = positions.find(id);
    return found == positions.end() ? std::nullopt : std::optional(found->second);
}

std::optional<std::size_t> positionOf(const std::optional<FilmArtifact>& artifact,
                                      const Positions& positions) {
    return artifact ? positionOf(artifact->id(), positions) : std::nullopt;
}

std::vector<FilmIssue> blockingFirst(const std::vector<FilmIssue>& issues) {
    std::vector<FilmIssue> ordered;
    std::ranges::copy_if(issues, std::back_inserter(ordered), &FilmIssue::blocking);
    std::ranges::copy_if(issues, std::back_inserter(ordered), std::not_fn(&FilmIssue::blocking));
    return ordered;
}

void addPlan(Storyboard& storyboard, const FilmProductionPlan& plan) {
    storyboard.hasPlan = true;
    storyboard.durationSeconds = plan.plannedDurationSeconds;
    storyboard.fps = plan.target.fps;
    storyboard.width = plan.target.width;
    storyboard.height = plan.target.height;
    storyboard.aspectRatio = plan.target.aspectRatio;
    storyboard.cast = plan.cast;
    storyboard.locations = plan.locations;
}

void addShots(Storyboard& storyboard, const FilmWorkspaceSnapshot& film) {
    Positions positions;
    for (std::size_t index = 0; index < storyboard.assets.size(); ++index)
        positions[storyboard.assets[index].id()] = index;
    const Names cast = namesOf(storyboard.cast);
    const Names locations = namesOf(storyboard.locations);
    for (const FilmShot& shot : shots(film)) {
        const FilmProductionShot& planned = shot.planned;
        const auto& state = shot.state;
        storyboard.shots.push_back({.id = planned.id,
                                    .purpose = planned.purpose,
                                    .prompt = planned.prompt,
                                    .framePrompt = planned.framePrompt,
                                    .startMilliseconds = shot.startMilliseconds,
                                    .durationMilliseconds = shot.durationMilliseconds,
                                    .characters = named(planned.characters, cast),
                                    .location = named(planned.location, locations),
                                    .transition = planned.transition,
                                    .status = state && state->status ? *state->status : planned.status,
                                    .take = state && state->take ? *state->take : planned.take,
                                    .seed = planned.selectedSeed.value_or(planned.seed),
                                    .dialogue = withSpeakerNames(planned.dialogue, cast),
                                    .soundEffects = planned.soundEffects,
                                    .keyframe = positionOf(shot.keyframe, positions),
                                    .clip = positionOf(shot.clip, positions)});
    }
}

/// "frames/shot-01.png" is named "shot-01".
std::string_view stemOf(std::string_view path) {
    path.remove_prefix(path.rfind('/') + 1);
    return path.substr(0, std::min(path.rfind('.'), path.size()));
}

} // namespace

Storyboard storyboardOf(const FilmWorkspaceSnapshot& film) {
    const FilmProject& project = film.project;
    Storyboard storyboard;
    storyboard.title = project.title;
    storyboard.idea = project.idea;
    storyboard.updatedAt = project.updatedAt;
    storyboard.phase = project.phase;
    storyboard.status = project.status;
    storyboard.proof = project.proof;
    storyboard.assets = project.artifacts;
    if (const auto& treatment = film.treatment) {
        storyboard.logline = treatment->logline;
        storyboard.synopsis = treatment->synopsis;
        storyboard.theme = treatment->theme;
    }
    if (film.productionPlan)
        addPlan(storyboard, *film.productionPlan);
    addShots(storyboard, film);
    storyboard.findings = VistrelHandoffBuilder::preflight(film, film.root.string());
    storyboard.issues = blockingFirst(project.issues);
    return storyboard;
}

std::vector<FilmArtifact> artifactsOf(const VistrelHandoff& handoff) {
    std::vector<FilmArtifact> artifacts;
    for (const VistrelHandoffAsset& asset : handoff.assets)
        artifacts.push_back({.bytes = asset.bytes,
                             .contentType = asset.contentType,
                             .createdAt = {},
                             .kind = asset.kind,
                             .path = asset.relativePath,
                             .sha256 = asset.sha256,
                             .source = asset.source});
    return artifacts;
}

Storyboard storyboardOf(const VistrelHandoff& handoff) {
    const VistrelHandoffProject& project = handoff.project;
    Storyboard storyboard;
    storyboard.title = project.title;
    storyboard.idea = project.idea;
    storyboard.logline = project.logline;
    storyboard.synopsis = project.synopsis;
    storyboard.theme = project.theme;
    storyboard.updatedAt = handoff.source.updatedAt;
    storyboard.exportedAt = handoff.exportedAt;
    storyboard.durationSeconds = static_cast<double>(project.durationMilliseconds) / 1000;
    storyboard.fps = project.fps;
    storyboard.width = project.width;
    storyboard.height = project.height;
    storyboard.aspectRatio = project.aspectRatio;
    storyboard.proof = handoff.proof;
    storyboard.hasPlan = true;
    storyboard.cast = handoff.cast;
    storyboard.locations = handoff.locations;
    storyboard.assets = artifactsOf(handoff);

    Positions positions;
    for (std::size_t index = 0; index < handoff.assets.size(); ++index)
        positions[handoff.assets[index].id] = index;
    const Names cast = namesOf(handoff.cast);
    const Names locations = namesOf(handoff.locations);
    for (const VistrelHandoffShot& shot : handoff.shots)
        storyboard.shots.push_back({.id = shot.id,
                                    .purpose = shot.purpose,
                                    .prompt = shot.prompt,
                                    .framePrompt = shot.framePrompt,
                                    .startMilliseconds = shot.timelineStartMilliseconds,
                                    .durationMilliseconds = shot.durationMilliseconds,
                                    .characters = named(shot.characterIds, cast),
                                    .location = named(shot.locationId, locations),
                                    .transition = shot.transition,
                                    .status = std::nullopt,
                                    .take = shot.take,
                                    .seed = shot.seed,
                                    .dialogue = withSpeakerNames(shot.dialogue, cast),
                                    .soundEffects = shot.soundEffects,
                                    .keyframe = positionOf(shot.keyframeAssetId.value_or(""), positions),
                                    .clip = positionOf(shot.clipAssetId.value_or(""), positions)});
    return storyboard;
}

std::optional<std::size_t> lastAsset(const Storyboard& storyboard, std::string_view kind,
                                     std::optional<std::string_view> name) {
    for (std::size_t index = storyboard.assets.size(); index-- > 0;) {
        const FilmArtifact& asset = storyboard.assets[index];
        if (asset.kind == kind && (!name || stemOf(asset.path) == *name))
            return index;
    }
    return std::nullopt;
}

} // namespace kinovane::tool

// SPDX-License-Identifier: Apache-2.0

#include <string_view>
#include <unordered_map>

#include <kinovane/film_shots.hpp>

#include "handoff/exported_kinds.hpp"
#include "handoff/milliseconds.hpp"
#include "handoff/timeline.hpp"

namespace kinovane {

namespace {

/// Records by a text of theirs.
template <class Record>
using RecordsById = std::unordered_map<std::string_view, const Record*>;

template <class Record>
RecordsById<Record> firstById(const std::vector<Record>& records) {
    RecordsById<Record> result;
    for (const Record& record : records)
        result.emplace(record.id, &record);
    return result;
}

template <class Record>
RecordsById<Record> lastById(const std::vector<Record>& records) {
    RecordsById<Record> result;
    for (const Record& record : records)
        result[record.id] = &record;
    return result;
}

RecordsById<FilmArtifact> lastExportedByPath(const std::vector<FilmArtifact>& artifacts) {
    RecordsById<FilmArtifact> result;
    for (const FilmArtifact& artifact : artifacts)
        if (isExportedKind(artifact.kind))
            result[artifact.path] = &artifact;
    return result;
}

template <class Record>
std::optional<Record> find(const RecordsById<Record>& records, std::string_view id) {
    const auto found = records.find(id);
    if (found == records.end())
        return std::nullopt;
    return *found->second;
}

} // namespace

std::vector<FilmShot> shots(const FilmWorkspaceSnapshot& snapshot) {
    if (!snapshot.productionPlan)
        return {};
    const FilmProductionPlan& plan = *snapshot.productionPlan;
    const auto states = lastById(snapshot.project.shots);
    const auto artifacts = lastExportedByPath(snapshot.project.artifacts);
    const auto cast = firstById(plan.cast);
    const auto locations = firstById(plan.locations);

    std::vector<FilmShot> result;
    result.reserve(plan.shots.size());
    std::optional<std::int64_t> start = 0;
    for (const FilmProductionShot& planned : plan.shots) {
        FilmShot shot;
        shot.planned = planned;
        shot.order = static_cast<std::int64_t>(result.size());
        shot.startMilliseconds = start;
        shot.durationMilliseconds = millisecondsOf(planned.durationSeconds);
        start = endOnTimeline(start, shot.durationMilliseconds);
        shot.state = find(states, planned.id);
        shot.keyframe = find(artifacts, keyframePath(planned.id));
        shot.clip = find(artifacts, clipPath(planned.id));
        for (const std::string& character : planned.characters)
            if (std::optional<FilmCastMember> member = find(cast, character))
                shot.cast.push_back(std::move(*member));
        shot.location = find(locations, planned.location);
        result.push_back(std::move(shot));
    }
    return result;
}

} // namespace kinovane

// SPDX-License-Identifier: Apache-2.0

#include <utility>

#include "changes.hpp"
#include "phases.hpp"
#include "shots.hpp"

namespace simulator::film {
namespace {

/// One picture for each record of a list of the plan.
void makeMasters(Step& step, std::string_view list, std::string_view kind) {
    for (const json::value& value : listOf(std::as_const(step.plan()), list)) {
        const std::string path = std::string(list) + "/" + textOf(asRecord(value), "id") + ".png";
        if (!step.has(path))
            step.makeMedia(kind, path, "simulator-picture", "picture.png", textOf(asRecord(value), "visual"));
    }
}

} // namespace

void makeFrames(Step& step) {
    makeMasters(step, "cast", "cast-master");
    makeMasters(step, "locations", "location-master");
    beginNewTakes(step.project());
    for (const Shot& shot : shotsOf(step.project(), step.plan())) {
        if (step.has(shot.framePath()))
            continue;
        step.makeMedia("shot-keyframe", shot.framePath(), "simulator-picture", "picture.png", shot.takeName(),
                       shot.id);
        markShot(step.project(), shot, "framed");
        applyRequests(step.project(), shot.id, step.startedAt());
    }
    step.setProof({"creation"}, true);
}

void makeClips(Step& step) {
    json::array selected;
    for (const Shot& shot : shotsOf(step.project(), step.plan())) {
        selected.emplace_back(
            json::object{{"shotId", shot.id}, {"take", shot.take}, {"selectedCandidate", 0}});
        if (step.has(shot.clipPath()))
            continue;
        step.makeMedia("shot-clip", shot.clipPath(), "simulator-movie", "clip.mp4", shot.takeName(), shot.id);
        markShot(step.project(), shot, "accepted");
    }
    if (!step.has("receipts/take-selection.json")) {
        step.makeJson("take-selection", "receipts/take-selection.json", "simulator-vision",
                      {{"selectedAt", step.startedAt()}, {"shots", std::move(selected)}});
    }
    step.setProof({"clips"}, true);
}

} // namespace simulator::film

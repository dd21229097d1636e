// SPDX-License-Identifier: Apache-2.0

#include "phase_work.hpp"
#include "reel.hpp"
#include "shots.hpp"

namespace film {
namespace {

void selectTakes(Step& step, const std::vector<Shot>& shots) {
    json::array selected;
    for (const Shot& shot : shots) {
        selected.emplace_back(
            json::object{{"shotId", shot.id}, {"take", shot.take}, {"selectedCandidate", 0}});
    }
    step.makeJson("take-selection", "receipts/take-selection.json", "stand-in-eye",
                  {{"selectedAt", step.startedAt()}, {"shots", std::move(selected)}});
}

} // namespace

void makeClips(Step& step) {
    const std::vector<Shot> shots = shotsOf(step.project(), step.plan());
    for (const Shot& shot : shots) {
        if (step.has(shot.clipPath()))
            continue;
        step.make("shot-clip", shot.clipPath(), "stand-in-movie", encodeMovie(picturesOf(shot), {}), shot.id);
        markShot(step.project(), shot, "accepted");
    }
    if (!step.has("receipts/take-selection.json"))
        selectTakes(step, shots);
    recordOf(step.project(), "proof")["clips"] = true;
}

} // namespace film

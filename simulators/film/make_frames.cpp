// SPDX-License-Identifier: Apache-2.0

#include <utility>

#include "phase_work.hpp"
#include "picture.hpp"
#include "review_requests.hpp"
#include "seed.hpp"
#include "shots.hpp"

namespace film {
namespace {

constexpr std::string_view source = "stand-in-picture";

/// One picture for everybody and every place, so that all shots can agree on how they look.
void makeMasters(Step& step, std::string_view list, std::string_view folder, std::string_view kind) {
    for (const json::value& value : listOf(std::as_const(step.plan()), list)) {
        const std::string id = textOf(asRecord(value), "id");
        const std::string path = std::string(folder).append("/").append(id).append(".png");
        if (!step.has(path)) {
            const std::uint64_t seed = mixed(seedOf(id), seedOf(textOf(asRecord(value), "visual")));
            step.make(kind, path, source, encodePng(drawPicture(seed, 0)));
        }
    }
}

} // namespace

void makeFrames(Step& step) {
    makeMasters(step, "cast", "cast", "cast-master");
    makeMasters(step, "locations", "locations", "location-master");
    beginNewTakes(step.project());
    for (const Shot& shot : shotsOf(step.project(), step.plan())) {
        if (step.has(shot.framePath()))
            continue;
        step.make("shot-keyframe", shot.framePath(), source, encodePng(drawPicture(shot.seed, 0)), shot.id);
        markShot(step.project(), shot, "framed");
        applyRequests(step.project(), shot.id, step.startedAt());
    }
    recordOf(step.project(), "proof")["creation"] = true;
}

} // namespace film

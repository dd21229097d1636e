// SPDX-License-Identifier: Apache-2.0

#include "phase_work.hpp"
#include "picture.hpp"
#include "reel.hpp"
#include "shots.hpp"

namespace film {
namespace {

/// A film this short is one block; longer ones would be cut block by block.
void makeBlock(Step& step, const std::vector<Shot>& shots) {
    json::array cuts;
    for (const Shot& shot : shots) {
        cuts.emplace_back(json::object{{"shotId", shot.id},
                                       {"take", shot.take},
                                       {"startMilliseconds", shot.startMilliseconds},
                                       {"durationMilliseconds", shot.milliseconds}});
    }
    step.make("edit-block", "edit/block-1.mp4", "stand-in-cutter", encodeMovie(picturesOf(shots), {}));
    step.makeJson("edit-block-receipt", "edit/block-1.json", "stand-in-cutter",
                  {{"block", "edit/block-1.mp4"}, {"cuts", std::move(cuts)}});
}

void inspect(Step& step, const std::vector<Shot>& shots) {
    json::array inspected;
    for (const Shot& shot : shots) {
        const std::string path = "inspection/" + shot.id + "-middle.png";
        step.make("inspection-frame", path, "stand-in-eye", encodePng(drawPicture(shot.seed, 0.5)), shot.id);
        inspected.emplace_back(json::object{{"shotId", shot.id}, {"frame", path}, {"passed", true}});
    }
    step.makeJson("media-inspection", "receipts/media-inspection.json", "stand-in-eye",
                  {{"inspectedAt", step.startedAt()}, {"shots", std::move(inspected)}});
}

} // namespace

void makeRoughCut(Step& step) {
    const std::vector<Shot> shots = shotsOf(step.project(), step.plan());
    if (!step.has("cuts/rough-cut.mp4")) {
        makeBlock(step, shots);
        step.make("rough-cut", "cuts/rough-cut.mp4", "stand-in-cutter",
                  encodeMovie(picturesOf(shots), soundOf(shots, false)));
        inspect(step, shots);
    }
    json::object& proof = recordOf(step.project(), "proof");
    proof["assembly"] = true;
    proof["inspection"] = true;
}

} // namespace film

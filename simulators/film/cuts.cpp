// SPDX-License-Identifier: Apache-2.0

#include "changes.hpp"
#include "phases.hpp"
#include "shots.hpp"

namespace simulator::film {
namespace {

constexpr const char* editor = "simulator-editor";
constexpr const char* inspector = "simulator-vision";
constexpr const char* producer = "simulator-producer";

/// A short film is one block; a longer one would have several.
void makeBlock(Step& step, const std::vector<Shot>& shots) {
    json::array cuts;
    for (const Shot& shot : shots) {
        cuts.emplace_back(json::object{{"shotId", shot.id},
                                       {"take", shot.take},
                                       {"startMilliseconds", shot.startMilliseconds},
                                       {"durationMilliseconds", shot.milliseconds}});
    }
    step.makeMedia("edit-block", "edit/block-1.mp4", editor, "clip.mp4", takeNames(shots));
    step.makeJson("edit-block-receipt", "edit/block-1.json", editor,
                  {{"block", "edit/block-1.mp4"}, {"cuts", std::move(cuts)}});
}

void inspect(Step& step, const std::vector<Shot>& shots) {
    json::array inspected;
    for (const Shot& shot : shots) {
        const std::string path = "inspection/" + shot.id + "-middle.png";
        step.makeMedia("inspection-frame", path, inspector, "picture.png", shot.takeName(), shot.id);
        inspected.emplace_back(json::object{{"shotId", shot.id}, {"frame", path}, {"passed", true}});
    }
    step.makeJson("media-inspection", "receipts/media-inspection.json", inspector,
                  {{"inspectedAt", step.startedAt()}, {"shots", std::move(inspected)}});
}

/// A page for the approver with the shots and a link to the film.
void makePackage(Step& step, const std::vector<Shot>& shots) {
    const std::string title = markupOf(textOf(step.project(), "title"));
    std::string page = "<!doctype html>\n<meta charset=\"utf-8\">\n<title>" + title + "</title>\n<h1>" +
                       title + "</h1>\n<p><a href=\"../masters/final-master.mp4\">The film</a></p>\n";
    for (const Shot& shot : shots) {
        step.makeMedia("review-frame", "review/frames/" + shot.id + ".png", inspector, "picture.png",
                       shot.takeName(), shot.id);
        page += "<h2>" + markupOf(shot.id) + ", take " + std::to_string(shot.take) +
                "</h2>\n<img src=\"frames/" + markupOf(shot.id) + ".png\" alt=\"\">\n";
        for (const Line& line : shot.lines)
            page += "<p>" + markupOf(line.speaker) + ": " + markupOf(line.text) + "</p>\n";
    }
    step.make("review-package", "review/package.html", inspector, page);
}

} // namespace

void makeRoughCut(Step& step) {
    const std::vector<Shot> shots = shotsOf(step.project(), step.plan());
    if (!step.has("cuts/rough-cut.mp4")) {
        makeBlock(step, shots);
        step.makeMedia("rough-cut", "cuts/rough-cut.mp4", editor, "film.mp4", takeNames(shots));
        inspect(step, shots);
    }
    step.setProof({"assembly", "inspection"}, true);
}

void makeMaster(Step& step) {
    const std::vector<Shot> shots = shotsOf(step.project(), step.plan());
    if (!step.has("masters/final-master.mp4")) {
        const std::string takes = takeNames(shots);
        step.makeMedia("final-master", "masters/final-master.mp4", editor, "film.mp4", takes);
        step.makeMedia("poster", "poster.png", "simulator-picture", "poster.png", takes);
        step.makeMedia("thumbnail", "thumbnail.png", "simulator-picture", "thumbnail.png", takes);
        makeReviews(step);
        makePackage(step, shots);
    }
    step.setProof({"review"}, true);
}

void makeDelivery(Step& step) {
    const std::vector<Shot> shots = shotsOf(step.project(), step.plan());
    if (!step.has("delivery/delivery-master.mp4")) {
        step.makeMedia("delivery-master", "delivery/delivery-master.mp4", editor, "film.mp4",
                       takeNames(shots));
        step.makeJson("human-review", "review/human-review.json", producer,
                      {{"approvals", recordOf(step.project(), "approvals")}});
        step.makeJson("production-readiness", "receipts/production-readiness.json", producer,
                      {{"ready", true}, {"shots", shots.size()}});
        step.makeJson("delivery", "delivery/delivery.json", producer,
                      {{"master", "delivery/delivery-master.mp4"},
                       {"subtitles", textList({"subtitles/film.en.srt", "subtitles/film.en.vtt"})},
                       {"durationMilliseconds", durationOf(shots)},
                       {"deliveredAt", step.startedAt()}});
    }
    step.setProof({"humanReview", "delivery"}, true);
}

} // namespace simulator::film

// SPDX-License-Identifier: Apache-2.0

#include <string>

#include "common/json_text.hpp"
#include "phase_work.hpp"
#include "picture.hpp"
#include "reel.hpp"
#include "review.hpp"
#include "shots.hpp"

namespace film {
namespace {

std::string escaped(const std::string& text) {
    std::string out;
    for (const char character : text)
        if (character == '&')
            out += "&amp;";
        else if (character == '<')
            out += "&lt;";
        else
            out += character;
    return out;
}

/// What an approver opens: the shots one under the other and the film itself.
void makePackage(Step& step, const std::vector<Shot>& shots) {
    const std::string title = escaped(textOf(step.project(), "title"));
    std::string page = "<!doctype html>\n<meta charset=\"utf-8\">\n<title>" + title + "</title>\n<h1>" +
                       title + "</h1>\n<p><a href=\"../masters/final-master.mp4\">The film</a></p>\n";
    for (const Shot& shot : shots) {
        const std::string frame = "review/frames/" + shot.id + ".png";
        step.make("review-frame", frame, "stand-in-eye", encodePng(drawPicture(shot.seed, 1)), shot.id);
        page += "<h2>" + escaped(shot.id) + ", take " + std::to_string(shot.take) +
                "</h2>\n<img src=\"frames/" + escaped(shot.id) + ".png\" alt=\"\">\n";
        for (const Line& line : shot.lines)
            page += "<p>" + escaped(line.speaker) + ": " + escaped(line.text) + "</p>\n";
    }
    step.make("review-package", "review/package.html", "stand-in-eye", page);
}

} // namespace

void makeMaster(Step& step) {
    const std::vector<Shot> shots = shotsOf(step.project(), step.plan());
    if (!step.has("masters/final-master.mp4")) {
        step.make("final-master", "masters/final-master.mp4", "stand-in-cutter",
                  encodeMovie(picturesOf(shots), soundOf(shots, true)));
        step.make("poster", "poster.png", "stand-in-picture",
                  encodePng(drawPicture(shots.back().seed, 0.7, 48, 72)));
        step.make("thumbnail", "thumbnail.png", "stand-in-picture",
                  encodePng(drawPicture(shots.front().seed, 0.3, 32, 18)));
        makeReviews(step);
        makePackage(step, shots);
    }
    recordOf(step.project(), "proof")["review"] = true;
}

void makeDelivery(Step& step) {
    const std::vector<Shot> shots = shotsOf(step.project(), step.plan());
    constexpr double deliveryLevelDb = -1;
    if (!step.has("delivery/delivery-master.mp4")) {
        Samples sound(sampleCount(lengthOf(shots)));
        lay(sound, soundOf(shots, true), 0, deliveryLevelDb);
        step.make("delivery-master", "delivery/delivery-master.mp4", "stand-in-cutter",
                  encodeMovie(picturesOf(shots), sound));
        step.makeJson("human-review", "review/human-review.json", "stand-in-desk",
                      {{"approvals", recordOf(step.project(), "approvals")}});
        step.makeJson("production-readiness", "receipts/production-readiness.json", "stand-in-desk",
                      {{"ready", true}, {"shots", static_cast<std::int64_t>(shots.size())}});
        step.makeJson("delivery", "delivery/delivery.json", "stand-in-desk",
                      {{"master", "delivery/delivery-master.mp4"},
                       {"subtitles", textList({"subtitles/film.en.srt", "subtitles/film.en.vtt"})},
                       {"durationMilliseconds", lengthOf(shots)},
                       {"deliveredAt", step.startedAt()}});
    }
    json::object& proof = recordOf(step.project(), "proof");
    proof["humanReview"] = true;
    proof["delivery"] = true;
}

} // namespace film

// SPDX-License-Identifier: Apache-2.0

#include "phase_work.hpp"
#include "shots.hpp"

namespace simulator::film {
namespace {

constexpr const char* checker = "simulator-speech-recognition";

void makeDialogue(Step& step, const std::vector<Shot>& shots) {
    json::array checked;
    for (const Shot& shot : shots) {
        for (const Line& line : shot.lines) {
            checked.emplace_back(json::object{{"path", line.path}, {"text", line.text}, {"passed", true}});
            if (!step.has(line.path)) {
                step.makeMedia("dialogue", line.path, "simulator-voice", "line.wav", shot.takeName(),
                               shot.id);
            }
        }
    }
    if (!step.has("receipts/dialogue-qc.json"))
        step.makeJson("dialogue-qc", "receipts/dialogue-qc.json", checker, {{"lines", std::move(checked)}});
}

void makeEffects(Step& step, const std::vector<Shot>& shots) {
    json::array checked;
    for (const Shot& shot : shots) {
        for (const std::string& path : shot.effectPaths) {
            checked.emplace_back(json::object{{"path", path}, {"passed", true}});
            if (!step.has(path)) {
                step.makeMedia("sound-effect", path, "simulator-effects", "effect.wav", shot.takeName(),
                               shot.id);
            }
        }
    }
    if (!step.has("score/score.wav")) {
        step.makeMedia("score", "score/score.wav", "simulator-music", "score.wav",
                       std::to_string(durationOf(shots)) + " ms");
    }
    if (!step.has("receipts/sound-qc.json")) {
        step.makeJson("sound-qc", "receipts/sound-qc.json", checker,
                      {{"score", "score/score.wav"}, {"effects", std::move(checked)}});
    }
}

} // namespace

void makeSound(Step& step) {
    const std::vector<Shot> shots = shotsOf(step.project(), step.plan());
    makeDialogue(step, shots);
    makeEffects(step, shots);
    makeCaptions(step);
    step.setProof({"dialogue", "sound", "captions"}, true);
}

} // namespace simulator::film

// SPDX-License-Identifier: Apache-2.0

#include "common/json_text.hpp"
#include "phase_work.hpp"
#include "reel.hpp"
#include "shots.hpp"
#include "subtitles.hpp"

namespace film {
namespace {

using Lines = std::vector<Cue>;

void makeVoices(Step& step, const std::vector<Shot>& shots) {
    json::array checked;
    for (const Shot& shot : shots) {
        for (const Line& line : shot.lines) {
            checked.emplace_back(json::object{{"path", line.path}, {"text", line.text}, {"passed", true}});
            if (!step.has(line.path)) {
                step.make("dialogue", line.path, "stand-in-voice",
                          encodeWav(hum(line.seed, line.milliseconds)), shot.id);
            }
        }
    }
    if (!step.has("receipts/dialogue-qc.json")) {
        step.makeJson("dialogue-qc", "receipts/dialogue-qc.json", "stand-in-ear",
                      {{"lines", std::move(checked)}});
    }
}

void makeEffects(Step& step, const std::vector<Shot>& shots) {
    json::array checked;
    for (const Shot& shot : shots) {
        for (const Effect& effect : shot.effects) {
            checked.emplace_back(json::object{{"path", effect.path}, {"passed", true}});
            if (!step.has(effect.path)) {
                step.make("sound-effect", effect.path, "stand-in-rustle",
                          encodeWav(rustle(effect.seed, effect.milliseconds)), shot.id);
            }
        }
    }
    if (!step.has("score/score.wav"))
        step.make("score", "score/score.wav", "stand-in-chords", encodeWav(scoreOf(shots)));
    if (!step.has("receipts/sound-qc.json")) {
        step.makeJson("sound-qc", "receipts/sound-qc.json", "stand-in-ear",
                      {{"score", "score/score.wav"}, {"effects", std::move(checked)}});
    }
}

Lines cuesOf(const std::vector<Shot>& shots) {
    Lines cues;
    for (const Shot& shot : shots) {
        for (const Line& line : shot.lines) {
            const std::int64_t start = shot.startMilliseconds + line.startMilliseconds;
            cues.push_back({line.speaker, line.text, start, start + line.milliseconds});
        }
    }
    return cues;
}

void makeCaptions(Step& step, const std::vector<Shot>& shots) {
    if (step.has("receipts/captions.json"))
        return;
    const Lines cues = cuesOf(shots);
    step.make("subtitle-srt", "subtitles/film.en.srt", "stand-in-voice", encodeSrt(cues));
    step.make("subtitle-vtt", "subtitles/film.en.vtt", "stand-in-voice", encodeVtt(cues));
    step.makeJson("caption-receipt", "receipts/captions.json", "stand-in-voice",
                  {{"language", "en"}, {"cues", static_cast<std::int64_t>(cues.size())}});
}

} // namespace

void makeSound(Step& step) {
    const std::vector<Shot> shots = shotsOf(step.project(), step.plan());
    makeVoices(step, shots);
    makeEffects(step, shots);
    makeCaptions(step, shots);
    json::object& proof = recordOf(step.project(), "proof");
    for (const char* flag : {"dialogue", "sound", "captions"})
        proof[flag] = true;
}

} // namespace film

// SPDX-License-Identifier: Apache-2.0

#include <algorithm>

#include "phases.hpp"
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

std::string padded(std::int64_t number, std::size_t width) {
    const std::string digits = std::to_string(number);
    return std::string(digits.size() < width ? width - digits.size() : 0, '0') + digits;
}

std::string timeOf(std::int64_t milliseconds, char point) {
    const std::int64_t seconds = milliseconds / 1000;
    return padded(seconds / 3600, 2) + ':' + padded(seconds / 60 % 60, 2) + ':' + padded(seconds % 60, 2) +
           point + padded(milliseconds % 1000, 3);
}

/// The time of a line in the film.
std::string spanOf(const Shot& shot, const Line& line, char point) {
    const std::int64_t start = shot.startMilliseconds + line.startMilliseconds;
    return timeOf(start, point) + " --> " + timeOf(start + line.milliseconds, point) + '\n';
}

/// The text without line breaks, which would end the cue.
std::string inOneLine(std::string text) {
    std::ranges::replace(text, '\n', ' ');
    std::ranges::replace(text, '\r', ' ');
    return text;
}

void makeCaptions(Step& step) {
    if (step.has("receipts/captions.json"))
        return;
    std::string srt;
    std::string vtt = "WEBVTT\n\n";
    std::int64_t cues = 0;
    for (const Shot& shot : shotsOf(step.project(), step.plan())) {
        for (const Line& line : shot.lines) {
            srt += std::to_string(++cues) + '\n' + spanOf(shot, line, ',') + inOneLine(line.text) + "\n\n";
            vtt += spanOf(shot, line, '.') + "<v " + markupOf(inOneLine(line.speaker)) + '>' +
                   markupOf(inOneLine(line.text)) + "\n\n";
        }
    }
    step.make("subtitle-srt", "subtitles/film.en.srt", "simulator-voice", srt);
    step.make("subtitle-vtt", "subtitles/film.en.vtt", "simulator-voice", vtt);
    step.makeJson("caption-receipt", "receipts/captions.json", "simulator-voice",
                  {{"language", "en"}, {"cues", cues}});
}

} // namespace

std::string markupOf(const std::string& text) {
    std::string out;
    for (const char character : text)
        if (character == '&')
            out += "&amp;";
        else if (character == '<')
            out += "&lt;";
        else if (character == '>')
            out += "&gt;";
        else
            out += character;
    return out;
}

void makeSound(Step& step) {
    const std::vector<Shot> shots = shotsOf(step.project(), step.plan());
    makeDialogue(step, shots);
    makeEffects(step, shots);
    makeCaptions(step);
    step.setProof({"dialogue", "sound", "captions"}, true);
}

} // namespace simulator::film

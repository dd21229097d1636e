// SPDX-License-Identifier: Apache-2.0

#include "subtitles.hpp"

#include <string_view>

namespace film {
namespace {

std::string padded(std::int64_t number, std::size_t width) {
    const std::string digits = std::to_string(number);
    return std::string(digits.size() < width ? width - digits.size() : 0, '0') + digits;
}

std::string clock(std::int64_t milliseconds, char point) {
    const std::int64_t seconds = milliseconds / 1000;
    return padded(seconds / 3600, 2) + ':' + padded(seconds / 60 % 60, 2) + ':' + padded(seconds % 60, 2) +
           point + padded(milliseconds % 1000, 3);
}

std::string span(const Cue& cue, char point) {
    return clock(cue.startMilliseconds, point) + " --> " + clock(cue.endMilliseconds, point) + '\n';
}

/// A line break inside a cue would end it, and in VTT "&" and "<" begin something else.
std::string cueText(std::string_view text, bool markup) {
    std::string out;
    for (const char character : text)
        if (character == '\n' || character == '\r')
            out += ' ';
        else if (markup && character == '&')
            out += "&amp;";
        else if (markup && character == '<')
            out += "&lt;";
        else if (markup && character == '>')
            out += "&gt;";
        else
            out += character;
    return out;
}

} // namespace

std::string encodeSrt(const std::vector<Cue>& cues) {
    std::string out;
    std::int64_t number = 1;
    for (const Cue& cue : cues)
        out += std::to_string(number++) + '\n' + span(cue, ',') + cueText(cue.text, false) + "\n\n";
    return out;
}

std::string encodeVtt(const std::vector<Cue>& cues) {
    std::string out = "WEBVTT\n\n";
    for (const Cue& cue : cues)
        out += span(cue, '.') + "<v " + cueText(cue.speaker, true) + '>' + cueText(cue.text, true) + "\n\n";
    return out;
}

} // namespace film

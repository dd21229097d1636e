// SPDX-License-Identifier: Apache-2.0

#include "timeline/edl_writer.hpp"

#include <algorithm>
#include <array>
#include <cstdio>
#include <map>
#include <set>
#include <string_view>

#include "session/failure.hpp"
#include "terminal/character.hpp"
#include "timeline/timecode.hpp"

namespace kinovane::tool {

namespace {

constexpr std::size_t longestTitle = 70;
constexpr std::size_t reelColumns = 8;
constexpr std::size_t mostEvents = 999;
constexpr const char* black = "BL";

constexpr FrameRate timecodeRates[]{
    {24'000, 1001}, {24, 1}, {25, 1},        {30'000, 1001}, // NOLINT(*-c-arrays)
    {30, 1},        {50, 1}, {60'000, 1001}, {60, 1}};

/// The text with "_" for each character that is not printable ASCII.
std::string ascii(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        const auto [codePoint, length] = firstCharacter(text);
        const bool isSpace = codePoint == '\n' || codePoint == '\r' || codePoint == '\t';
        const bool isPrintableASCII = codePoint >= 0x20 && codePoint < 0x7F;
        result += isPrintableASCII ? text.front() : isSpace ? ' ' : '_';
        text.remove_prefix(length);
    }
    return result;
}

void requireTimecode(const Edit& edit) {
    const auto refuse = [](const std::string& reason) { throw CommandError(ExitStatus::handoff, reason); };
    if (std::ranges::find(timecodeRates, edit.rate) == std::end(timecodeRates)) {
        std::string rates;
        for (const FrameRate& rate : timecodeRates)
            rates += (rates.empty() ? "" : ", ") + frameRateText(rate);
        refuse("an EDL has no timecode for " + frameRateText(edit.rate) + " frames per second, only for " +
               rates + "\nNext: kinovane timeline --frame-rate 24");
    }
    if (edit.length >= timecodeDay(edit.rate))
        refuse("an EDL holds less than 24 hours\nNext: kinovane timeline --format otio");
    if (edit.shots.size() > mostEvents)
        refuse("an EDL holds 999 shots, and the film has " + std::to_string(edit.shots.size()) +
               "\nNext: kinovane timeline --format otio");
}

/// Names of at most eight letters and digits for the files, made from the shots' ids.
class Reels {
  public:
    /// Two shots with one clip have one name.
    const std::string& nameOf(const EditMedia& clip, std::string_view shotId) {
        std::string& name = names_[clip.url];
        if (!name.empty())
            return name;
        for (const char character : shotId)
            if ((character >= '0' && character <= '9') || (character >= 'A' && character <= 'Z'))
                name += character;
            else if (character >= 'a' && character <= 'z')
                name += static_cast<char>(character - 'a' + 'A');
        if (name.empty() || name.size() > reelColumns || !used_.insert(name).second)
            name = numbered();
        return name;
    }

  private:
    std::string numbered() {
        for (;;) {
            std::array<char, 32> name{};
            std::snprintf(name.data(), name.size(), "R%07d", ++number_);
            if (used_.insert(name.data()).second)
                return name.data();
        }
    }

    std::map<std::string, std::string> names_; ///< By URL.
    std::set<std::string> used_{black, "AX"};  // What the format has for black and for any other source.
    int number_ = 0;
};

class EDLWriter {
  public:
    explicit EDLWriter(const Edit& edit) : edit_(edit) {}

    std::string document() {
        text_ = "TITLE: " + ascii(edit_.title).substr(0, longestTitle) + "\n";
        text_ += edit_.rate.isDropFrame() ? "FCM: DROP FRAME\n" : "FCM: NON-DROP FRAME\n";
        for (std::size_t index = 0; index < edit_.shots.size(); ++index)
            addShot(index);
        for (const EditMedia& subtitles : edit_.subtitles)
            comment("SUBTITLES", subtitles.url.empty() ? subtitles.path + " (missing)" : subtitles.url);
        return text_;
    }

  private:
    void addShot(std::size_t index) {
        const EditShot& shot = edit_.shots[index];
        const FilmProductionShot& planned = shot.shot.planned;
        addEvent(index + 1, shot);
        if (const EditMedia* clip = shot.presentClip()) {
            comment("FROM CLIP NAME", clip->name);
            comment("SOURCE FILE", clip->url);
        }
        comment("SHOT", planned.id + ", TAKE " + std::to_string(planned.take) + ", SEED " +
                            std::to_string(planned.selectedSeed.value_or(planned.seed)));
        if (!planned.transition.empty())
            comment("TRANSITION", planned.transition);
        for (const EditMarker& marker : shot.markers)
            comment("LOC", timecode(shot.start + marker.start, edit_.rate) + " GREEN   " +
                               marker.line.speaker + ": " + marker.line.text);
        for (const EditTrack& track : edit_.tracks)
            for (const EditSound& sound : track.sounds)
                if (sound.start >= shot.start && sound.start < shot.start + shot.length)
                    comment("SOUND", timecode(sound.start, edit_.rate) + " " +
                                         timecode(sound.end(), edit_.rate) + " " + sound.media.url);
    }

    void addEvent(std::size_t number, const EditShot& shot) {
        const EditMedia* clip = shot.presentClip();
        const std::string reel = clip != nullptr ? reels_.nameOf(*clip, shot.shot.planned.id) : black;
        std::array<char, 64> line{};
        std::snprintf(line.data(), line.size(), "%03zu  %-8s V     C        ", number, reel.c_str());
        text_ += line.data() + timecode(0, edit_.rate) + " " + timecode(shot.length, edit_.rate) + " " +
                 timecode(shot.start, edit_.rate) + " " + timecode(shot.start + shot.length, edit_.rate) +
                 "\n";
    }

    void comment(const char* key, const std::string& value) {
        text_ += "* " + std::string(key) + ": " + ascii(value) + "\n";
    }

    const Edit& edit_;
    Reels reels_;
    std::string text_;
};

} // namespace

std::string edlDocument(const Edit& edit) {
    requireTimecode(edit);
    return EDLWriter(edit).document();
}

} // namespace kinovane::tool

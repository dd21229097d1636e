// SPDX-License-Identifier: Apache-2.0

#include "timeline/edit_sounds.hpp"

#include <algorithm>
#include <string>
#include <utility>

#include "timeline/sound_files.hpp"
#include "timeline/sound_time.hpp"

namespace kinovane::tool {

namespace {

std::vector<FilmShot> plannedShots(const Edit& edit) {
    std::vector<FilmShot> shots;
    for (const EditShot& shot : edit.shots)
        shots.push_back(shot.shot);
    return shots;
}

/// Collects the sounds of a film.
class SoundCollector {
  public:
    SoundCollector(const FilmWorkspaceSnapshot& film, const Edit& edit, MediaFiles& files)
        : film_(film), edit_(edit), files_(files), shots_(plannedShots(edit)), recorded_(film, shots_) {}

    std::vector<EditTrack> tracks() {
        for (std::size_t index = 0; index < edit_.shots.size(); ++index) {
            addDialogue(index);
            addEffects(index);
        }
        addScore();
        for (const FilmArtifact* sound : recorded_.unplanned())
            files_.remark("left out", sound->path, "the plan has no line or effect for this sound");
        addTracks("Dialogue", SoundRole::dialogue, std::move(dialogue_));
        addTracks("Effects", SoundRole::effects, std::move(effects_));
        addTracks("Score", SoundRole::score, std::move(score_));
        return std::move(tracks_);
    }

  private:
    void addDialogue(std::size_t index) {
        const EditShot& shot = edit_.shots[index];
        const std::vector<FilmDialogueLine>& lines = shot.shot.planned.dialogue;
        for (std::size_t line = 0; line < lines.size(); ++line) {
            const FilmArtifact* file = recorded_.dialogue(shot.shot.planned.id, line + 1);
            // A line outside the film has a remark already.
            const std::optional<SoundTime> time = soundTime(edit_, index, lines[line].startSeconds);
            if (file == nullptr || !time)
                continue;
            EditSound sound = soundOf(*file, *time, shot);
            sound.line = lines[line];
            add(dialogue_, std::move(sound), endOfLine(shot, line, time->milliseconds), false);
        }
    }

    void addEffects(std::size_t index) {
        const EditShot& shot = edit_.shots[index];
        const std::vector<FilmSoundEffect>& effects = shot.shot.planned.soundEffects;
        for (std::size_t effect = 0; effect < effects.size(); ++effect) {
            const FilmArtifact* file = recorded_.effect(shot.shot.planned.id, effect + 1);
            if (file == nullptr)
                continue;
            const std::optional<SoundTime> time = soundTime(edit_, index, effects[effect].startSeconds);
            if (!time) {
                files_.remark("left out", file->path, "the effect begins outside the film");
                continue;
            }
            EditSound sound = soundOf(*file, *time, shot);
            sound.effect = effects[effect];
            const std::int64_t planned = timelineMilliseconds(effects[effect].durationSeconds).value_or(0);
            add(effects_, std::move(sound), planned > 0 ? time->milliseconds + planned : shot.endMilliseconds,
                true);
        }
    }

    void addScore() {
        if (const std::optional<FilmArtifact> score = film_.latestArtifact("score")) {
            EditSound sound;
            sound.media = files_.media(*score);
            add(score_, std::move(sound), longestTimeline, true);
        }
    }

    EditSound soundOf(const FilmArtifact& file, const SoundTime& time, const EditShot& shot) {
        EditSound sound;
        sound.media = files_.media(file);
        sound.startMilliseconds = time.milliseconds;
        sound.start = time.frame;
        sound.shotId = shot.shot.planned.id;
        return sound;
    }

    /// Where a line ends if its file does not tell: at the next line, or with the shot.
    static std::int64_t endOfLine(const EditShot& shot, std::size_t line, std::int64_t start) {
        std::int64_t end = shot.endMilliseconds > start ? shot.endMilliseconds : longestTimeline;
        for (const FilmDialogueLine& other : shot.shot.planned.dialogue) {
            const std::optional<std::int64_t> offset = timelineMilliseconds(other.startSeconds);
            if (offset && &other != &shot.shot.planned.dialogue[line] &&
                shot.startMilliseconds + *offset > start)
                end = std::min(end, shot.startMilliseconds + *offset);
        }
        return end;
    }

    /// `end` is the time at which the sound ends. If its file tells its length, the sound is not longer, so
    /// that no program looks for frames that the file does not have; it is as long as the file unless `end`
    /// is a limit.
    void add(std::vector<EditSound>& sounds, EditSound sound, std::int64_t end, bool isLimit) {
        if (sound.media.url.empty())
            return;
        const std::optional<std::int64_t> fileLength = files_.lengthOf(sound.media);
        const std::int64_t filmEnd = edit_.shots.back().endMilliseconds;
        end = fileLength && !isLimit ? filmEnd : std::min(end, filmEnd);
        sound.length = edit_.rate.frameAt(end) - sound.start;
        if (fileLength)
            sound.length =
                std::min(sound.length, edit_.rate.framesWithin(std::min(*fileLength, longestTimeline)));
        sound.length = std::max<std::int64_t>(sound.length, 1);
        // After those that begin with it, so that they stay in the order of the plan.
        sounds.insert(std::ranges::upper_bound(sounds, sound.start, {}, &EditSound::start), std::move(sound));
    }

    void addTracks(const std::string& name, SoundRole role, std::vector<EditSound> sounds) {
        const std::size_t first = tracks_.size();
        for (EditSound& sound : sounds) {
            std::size_t track = first;
            while (track < tracks_.size() && tracks_[track].sounds.back().end() > sound.start)
                ++track;
            if (track == tracks_.size()) {
                const std::string number = track > first ? " " + std::to_string(track - first + 1) : "";
                tracks_.push_back({name + number, role, {}});
            }
            tracks_[track].sounds.push_back(std::move(sound));
        }
    }

    const FilmWorkspaceSnapshot& film_;
    const Edit& edit_;
    MediaFiles& files_;
    std::vector<FilmShot> shots_;
    SoundFiles recorded_;
    std::vector<EditSound> dialogue_;
    std::vector<EditSound> effects_;
    std::vector<EditSound> score_;
    std::vector<EditTrack> tracks_;
};

} // namespace

std::vector<EditTrack> soundTracks(const FilmWorkspaceSnapshot& film, const Edit& edit, MediaFiles& files) {
    return SoundCollector(film, edit, files).tracks();
}

} // namespace kinovane::tool

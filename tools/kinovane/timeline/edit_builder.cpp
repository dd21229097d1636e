// SPDX-License-Identifier: Apache-2.0

#include "timeline/edit_builder.hpp"

#include <algorithm>
#include <string>
#include <utility>

#include "session/failure.hpp"
#include "terminal/shown_text.hpp"
#include "timeline/edit_sounds.hpp"
#include "timeline/sound_time.hpp"

namespace kinovane::tool {

namespace {

constexpr std::int64_t rateWithoutTarget = 24; // As in a handoff manifest.

CommandError refused(const std::string& reason) { return {ExitStatus::handoff, reason}; }

std::string quoted(const FilmShot& shot) { return "the shot \"" + shown(shot.planned.id) + "\""; }

FrameRate rateOf(const FilmProductionPlan& plan) {
    const std::int64_t recorded = plan.target.fps.value_or(rateWithoutTarget);
    if (const std::optional<FrameRate> rate = frameRateOf(std::to_string(recorded)))
        return *rate;
    throw refused("the film's plan records " + std::to_string(recorded) +
                  " frames per second\nNext: kinovane timeline --frame-rate 24");
}

/// The shot with its times in milliseconds, if it has a place on a timeline.
EditShot placed(const FilmShot& shot) {
    const std::optional<std::int64_t>& start = shot.startMilliseconds;
    const std::optional<std::int64_t>& length = shot.durationMilliseconds;
    if (!start || !length || *length > longestTimeline || *start > longestTimeline - *length)
        throw refused("with " + quoted(shot) + " the film is longer than 1000 hours");
    if (*length < 0)
        throw refused(quoted(shot) + " has a length below zero");
    EditShot place;
    place.shot = shot;
    place.startMilliseconds = *start;
    place.endMilliseconds = *start + *length;
    return place;
}

bool hasFrames(const std::vector<EditShot>& shots, const FrameRate& rate) {
    return std::ranges::all_of(shots, [&](const EditShot& shot) {
        return rate.frameAt(shot.startMilliseconds) < rate.frameAt(shot.endMilliseconds);
    });
}

CommandError withoutFrame(const EditShot& shot, const std::vector<EditShot>& shots, const FrameRate& rate) {
    std::string next;
    for (const std::int64_t other : {25, 30, 48, 50, 60, 120})
        if (next.empty() && hasFrames(shots, {other, 1}))
            next = "\nNext: kinovane timeline --frame-rate " + std::to_string(other);
    return refused(quoted(shot.shot) + " lasts " +
                   std::to_string(shot.endMilliseconds - shot.startMilliseconds) +
                   " ms and has no frame of its own at " + frameRateText(rate) + " frames per second" + next);
}

/// The shots, each from the frame nearest to its start to the frame nearest to its end.
std::vector<EditShot> cutsOf(const std::vector<FilmShot>& shots, const FrameRate& rate) {
    std::vector<EditShot> cuts;
    for (const FilmShot& shot : shots) {
        EditShot& cut = cuts.emplace_back(placed(shot));
        cut.start = rate.frameAt(cut.startMilliseconds);
        cut.length = rate.frameAt(cut.endMilliseconds) - cut.start;
    }
    // Only now is it known that all shots have a place.
    for (const EditShot& cut : cuts)
        if (cut.length < 1)
            throw withoutFrame(cut, cuts, rate);
    return cuts;
}

/// The position of the shot that shows this frame.
std::size_t shotAt(const std::vector<EditShot>& shots, std::int64_t frame) {
    const auto after = std::ranges::upper_bound(shots, frame, {}, &EditShot::start);
    return static_cast<std::size_t>(after - shots.begin()) - 1;
}

void addMarkers(Edit& edit, MediaFiles& files) {
    for (std::size_t index = 0; index < edit.shots.size(); ++index) {
        const EditShot& shot = edit.shots[index];
        std::size_t number = 0;
        for (const FilmDialogueLine& line : shot.shot.planned.dialogue) {
            ++number;
            const std::optional<SoundTime> time = soundTime(edit, index, line.startSeconds);
            if (!time) {
                files.remark("left out", shot.shot.planned.id,
                             "line " + std::to_string(number) + " begins outside the film");
                continue;
            }
            EditShot& marked = edit.shots[shotAt(edit.shots, time->frame)];
            const std::int64_t start = time->frame - marked.start;
            marked.markers.insert(std::ranges::upper_bound(marked.markers, start, {}, &EditMarker::start),
                                  {start, time->milliseconds, line});
        }
    }
}

std::vector<EditMedia> subtitlesOf(const FilmWorkspaceSnapshot& film, MediaFiles& files) {
    std::vector<EditMedia> subtitles;
    for (const char* kind : {"subtitle-srt", "subtitle-vtt"})
        if (const std::optional<FilmArtifact> latest = film.latestArtifact(kind))
            subtitles.push_back(files.media(*latest));
    return subtitles;
}

} // namespace

Edit editOf(const FilmWorkspaceSnapshot& film, const std::optional<FrameRate>& rate, MediaFiles& files) {
    if (!film.productionPlan)
        throw refused("the film has no production plan yet");
    const std::vector<FilmShot> shots = kinovane::shots(film);
    if (shots.empty())
        throw refused("the production plan has no shots");
    Edit edit;
    edit.title = film.project.title;
    edit.projectId = film.project.projectId;
    edit.rate = rate ? *rate : rateOf(*film.productionPlan);
    edit.width = film.productionPlan->target.width;
    edit.height = film.productionPlan->target.height;
    edit.shots = cutsOf(shots, edit.rate);
    edit.length = edit.shots.back().start + edit.shots.back().length;
    for (EditShot& shot : edit.shots) {
        if (shot.shot.clip)
            shot.clip = files.media(*shot.shot.clip);
        if (shot.shot.keyframe)
            shot.keyframe = files.media(*shot.shot.keyframe);
    }
    addMarkers(edit, files);
    edit.tracks = soundTracks(film, edit, files);
    edit.subtitles = subtitlesOf(film, files);
    return edit;
}

} // namespace kinovane::tool

// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <kinovane/film_shots.hpp>
#include <kinovane/production_plan.hpp>
#include <kinovane/workspace.hpp>

#include "timeline/frame_rate.hpp"

/// A film as an editing program knows it: every position is a whole number of frames. The formats are written
/// from it.
namespace kinovane::tool {

/// A recorded file.
struct EditMedia {
    std::string path;        ///< As recorded.
    std::string name;        ///< The last component of the path.
    std::string contentType; ///< As recorded.
    std::string kind;        ///< As recorded.
    std::string url;         ///< Empty when no file in the film's folder is there.
};

/// A spoken line, on the shot in which it begins.
struct EditMarker {
    std::int64_t start = 0;             ///< In frames from the start of the shot; within the shot.
    std::int64_t startMilliseconds = 0; ///< From the start of the film.
    FilmDialogueLine line;
};

/// A shot at its place on the timeline.
struct EditShot {
    FilmShot shot;
    std::int64_t startMilliseconds = 0; ///< As in the handoff manifest.
    std::int64_t endMilliseconds = 0;
    std::int64_t start = 0;  ///< In frames from the start of the film.
    std::int64_t length = 0; ///< In frames, at least 1.
    std::optional<EditMedia> clip;
    std::optional<EditMedia> keyframe;
    std::vector<EditMarker> markers; ///< In the order of their times.

    /// The clip; null when it is not recorded, or its file is not there.
    const EditMedia* presentClip() const noexcept { return clip && !clip->url.empty() ? &*clip : nullptr; }
};

/// A recorded sound at its place on the timeline, within the film.
struct EditSound {
    EditMedia media;
    std::int64_t startMilliseconds = 0; ///< From the start of the film.
    std::int64_t start = 0;             ///< In frames from the start of the film.
    std::int64_t length = 0;            ///< In frames, at least 1.
    std::string shotId;                 ///< Empty for the score.
    std::optional<FilmDialogueLine> line;
    std::optional<FilmSoundEffect> effect;

    std::int64_t end() const noexcept { return start + length; }
};

/// What the sounds of a track are.
enum class SoundRole { dialogue, effects, score };

/// Sounds that do not overlap, in the order of their times.
struct EditTrack {
    std::string name; ///< Such as "Effects 2".
    SoundRole role = SoundRole::dialogue;
    std::vector<EditSound> sounds;
};

struct Edit {
    std::string title;
    std::string projectId;
    FrameRate rate;
    std::optional<std::int64_t> width;  ///< In pixels.
    std::optional<std::int64_t> height; ///< In pixels.
    std::int64_t length = 0;            ///< Of all shots, in frames.
    std::vector<EditShot> shots;        ///< In film order, each beginning where the one before ends.
    std::vector<EditTrack> tracks;
    std::vector<EditMedia> subtitles;
};

} // namespace kinovane::tool

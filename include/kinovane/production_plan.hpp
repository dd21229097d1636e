// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <kinovane/export.hpp>
#include <kinovane/json.hpp>

/// The records of production-plan.json, the plan of a film, shot by shot. The film tool writes it; the
/// library only reads it. FilmCastMember, FilmLocation, FilmDialogueLine and FilmSoundEffect are also parts
/// of the handoff document (handoff.hpp), which the library writes.
///
/// Every record is a plain aggregate whose members have the names of their JSON keys. A std::optional member
/// is absent when its key is missing or null. All other keys are required, and decodeJSON throws
/// JSONDecodingError when one is missing or has a value of another type. Unknown keys are ignored. encodeJSON
/// leaves out the keys of absent members. Time stamps and
/// status words are text exactly as the film tool wrote it, and are not interpreted.
///
/// Records own their data. Different objects may be used from different threads, and one object may be read
/// from several threads at once.
namespace kinovane {

/// The format in which the film is delivered, `target` of production-plan.json.
struct KINOVANE_EXPORT FilmTarget {
    std::optional<std::string> aspectRatio; ///< As text.
    std::optional<std::string> audience;    ///< The intended audience.
    std::optional<double> durationSeconds;  ///< The intended length of the film, in seconds.
    std::optional<std::int64_t> fps;        ///< Frames per second.
    std::optional<std::int64_t> height;     ///< Of a frame, in pixels.
    std::optional<std::string> language;    ///< The language of the film.
    std::optional<std::string> platform;    ///< Where the film is to be shown.
    std::optional<std::string> rating;      ///< The content rating.
    std::optional<std::string> usage;       ///< What the film is meant for.
    std::optional<std::int64_t> width;      ///< Of a frame, in pixels.

    bool operator==(const FilmTarget&) const = default;
};

/// A character of the film, `cast[]` of production-plan.json and of the handoff manifest.
struct KINOVANE_EXPORT FilmCastMember {
    std::string id;                   ///< Named by FilmProductionShot::characters.
    std::string name;                 ///< The name for display.
    std::string visual;               ///< The description from which images are generated.
    std::string wardrobe;             ///< The description of the clothes.
    std::string voice;                ///< The description of the voice.
    std::optional<std::int64_t> seed; ///< Generation seed.

    bool operator==(const FilmCastMember&) const = default;
};

/// A set of the film, `locations[]` of production-plan.json and of the handoff manifest. Not a location in
/// the file system.
struct KINOVANE_EXPORT FilmLocation {
    std::string id;                   ///< Named by FilmProductionShot::location.
    std::string name;                 ///< The name for display.
    std::string visual;               ///< The description from which images are generated.
    std::string ambience;             ///< The description of the ambient sound.
    std::optional<std::int64_t> seed; ///< Generation seed.

    bool operator==(const FilmLocation&) const = default;
};

/// A spoken line of a shot, `shots[].dialogue[]` of production-plan.json and of the handoff manifest.
struct KINOVANE_EXPORT FilmDialogueLine {
    std::string speaker;     ///< The id or the name of a cast member.
    std::string text;        ///< The spoken text.
    double startSeconds = 0; ///< In seconds from the start of the shot.
    std::string delivery;    ///< How the line is spoken.

    bool operator==(const FilmDialogueLine&) const = default;
};

/// A sound effect of a shot, `shots[].soundEffects[]` of production-plan.json and of the handoff manifest.
struct KINOVANE_EXPORT FilmSoundEffect {
    std::string prompt;         ///< The prompt for the sound.
    double startSeconds = 0;    ///< In seconds from the start of the shot.
    double durationSeconds = 0; ///< The length of the sound, in seconds.
    double levelDb = 0;         ///< The level in decibels.
    std::int64_t seed = 0;      ///< Generation seed.

    bool operator==(const FilmSoundEffect&) const = default;
};

/// A shot of the plan, `shots[]` of production-plan.json. Its order in the film is its position in the list.
struct KINOVANE_EXPORT FilmProductionShot {
    std::string id;                                ///< The identifier of the shot.
    std::string purpose;                           ///< What the shot contributes to the story.
    std::string framePrompt;                       ///< The prompt for the still key frame.
    std::string prompt;                            ///< The prompt for the moving clip.
    double durationSeconds = 0;                    ///< The length of the shot, in seconds.
    std::int64_t seed = 0;                         ///< Generation seed.
    std::vector<std::string> characters;           ///< Ids of FilmCastMember records, which need not exist.
    std::string location;                          ///< The id of a FilmLocation, which need not exist.
    std::vector<FilmDialogueLine> dialogue;        ///< The spoken lines.
    std::vector<FilmSoundEffect> soundEffects;     ///< The sound effects.
    std::string transition;                        ///< The transition into the next shot.
    std::string status;                            ///< Status word.
    std::int64_t take = 0;                         ///< The number of the current take.
    std::optional<std::int64_t> selectedCandidate; ///< The index of the chosen candidate.
    std::optional<std::int64_t> selectedSeed;      ///< The generation seed of the chosen candidate.

    bool operator==(const FilmProductionShot&) const = default;
};

/// The whole of production-plan.json.
struct KINOVANE_EXPORT FilmProductionPlan {
    std::string contractVersion;           ///< May be any text.
    std::string projectId;                 ///< Of the project that the plan belongs to.
    std::string title;                     ///< The title of the film.
    std::string createdAt;                 ///< Time stamp.
    FilmTarget target;                     ///< The format of the delivered film.
    std::string scorePrompt;               ///< The prompt for the music.
    std::vector<FilmCastMember> cast;      ///< The characters.
    std::vector<FilmLocation> locations;   ///< The sets.
    std::vector<FilmProductionShot> shots; ///< In the order of the film.
    double plannedDurationSeconds = 0;     ///< The planned running time, in seconds.

    bool operator==(const FilmProductionPlan&) const = default;
};

template <>
inline constexpr JSONForm jsonForm<FilmTarget> = JSONForm::readingAndWriting;
template <>
inline constexpr JSONForm jsonForm<FilmCastMember> = JSONForm::readingAndWriting;
template <>
inline constexpr JSONForm jsonForm<FilmLocation> = JSONForm::readingAndWriting;
template <>
inline constexpr JSONForm jsonForm<FilmDialogueLine> = JSONForm::readingAndWriting;
template <>
inline constexpr JSONForm jsonForm<FilmSoundEffect> = JSONForm::readingAndWriting;
template <>
inline constexpr JSONForm jsonForm<FilmProductionShot> = JSONForm::readingAndWriting;
template <>
inline constexpr JSONForm jsonForm<FilmProductionPlan> = JSONForm::readingAndWriting;

} // namespace kinovane

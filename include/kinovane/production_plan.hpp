// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <kinovane/export.hpp>
#include <kinovane/json.hpp>

/// production-plan.json: the film, shot by shot, written by the film tool.
///
/// Every record is a plain aggregate. A member has the name of its JSON key; optional members are absent when
/// the key is missing or null, and all other keys are required. Time stamps are opaque text, as the film tool
/// wrote them. Records are independent values: copy, move and share them between threads as you would a
/// std::string.
namespace kinovane {

/// What is to be delivered.
struct KINOVANE_EXPORT FilmTarget {
    std::optional<std::string> aspectRatio;
    std::optional<std::string> audience;
    std::optional<double> durationSeconds;
    std::optional<std::int64_t> fps;
    std::optional<std::int64_t> height; ///< Pixels.
    std::optional<std::string> language;
    std::optional<std::string> platform;
    std::optional<std::string> rating;
    std::optional<std::string> usage;
    std::optional<std::int64_t> width; ///< Pixels.

    bool operator==(const FilmTarget&) const = default;
};

/// A character of the film.
struct KINOVANE_EXPORT FilmCastMember {
    std::string id;
    std::string name;
    std::string visual;
    std::string wardrobe;
    std::string voice;
    std::optional<std::int64_t> seed;

    bool operator==(const FilmCastMember&) const = default;
};

/// A set of the film.
struct KINOVANE_EXPORT FilmLocation {
    std::string id;
    std::string name;
    std::string visual;
    std::string ambience;
    std::optional<std::int64_t> seed;

    bool operator==(const FilmLocation&) const = default;
};

/// A spoken line of a shot.
struct KINOVANE_EXPORT FilmDialogueLine {
    std::string speaker;
    std::string text;
    double startSeconds = 0; ///< From the start of the shot.
    std::string delivery;

    bool operator==(const FilmDialogueLine&) const = default;
};

/// A sound effect of a shot.
struct KINOVANE_EXPORT FilmSoundEffect {
    std::string prompt;
    double startSeconds = 0; ///< From the start of the shot.
    double durationSeconds = 0;
    double levelDb = 0; ///< Decibels.
    std::int64_t seed = 0;

    bool operator==(const FilmSoundEffect&) const = default;
};

/// A shot of the plan. Its place in the film is its position in FilmProductionPlan::shots.
struct KINOVANE_EXPORT FilmProductionShot {
    std::string id;
    std::string purpose;
    std::string framePrompt; ///< For the still key frame.
    std::string prompt;      ///< For the moving clip.
    double durationSeconds = 0;
    std::int64_t seed = 0;
    std::vector<std::string> characters; ///< Ids of cast members.
    std::string location;                ///< Id of a location.
    std::vector<FilmDialogueLine> dialogue;
    std::vector<FilmSoundEffect> soundEffects;
    std::string transition; ///< Into the next shot.
    std::string status;
    std::int64_t take = 0;
    std::optional<std::int64_t> selectedCandidate;
    std::optional<std::int64_t> selectedSeed;

    bool operator==(const FilmProductionShot&) const = default;
};

/// The whole of production-plan.json.
struct KINOVANE_EXPORT FilmProductionPlan {
    std::string contractVersion; ///< Kept as read; no value is required.
    std::string projectId;
    std::string title;
    std::string createdAt;
    FilmTarget target;
    std::string scorePrompt;
    std::vector<FilmCastMember> cast;
    std::vector<FilmLocation> locations;
    std::vector<FilmProductionShot> shots; ///< In film order.
    double plannedDurationSeconds = 0;

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

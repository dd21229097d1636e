// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <kinovane/export.hpp>
#include <kinovane/film_project.hpp>
#include <kinovane/json.hpp>
#include <kinovane/production_plan.hpp>

/// The handoff manifest: the document "quexrun/film-vistrel-handoff.v1". All times are whole milliseconds.
namespace kinovane {

/// The project that a handoff was made from, `source` of the handoff manifest.
struct KINOVANE_EXPORT VistrelHandoffSource {
    std::string projectId;              ///< The identifier of the project.
    std::string projectRoot;            ///< The project's directory, as given to `build`.
    std::string runManifest;            ///< Always "run.json" when built by this library.
    std::string projectContractVersion; ///< The contract version of film-project.json.
    std::string updatedAt;              ///< The project's last change.

    bool operator==(const VistrelHandoffSource&) const = default;
};

/// General facts about the film, `project` of the handoff manifest.
struct KINOVANE_EXPORT VistrelHandoffProject {
    std::string title;                     ///< The title of the film.
    std::string idea;                      ///< The user's idea for the film.
    std::optional<std::string> logline;    ///< From the treatment.
    std::optional<std::string> synopsis;   ///< From the treatment.
    std::optional<std::string> theme;      ///< From the treatment.
    std::int64_t durationMilliseconds = 0; ///< The planned running time, in milliseconds.
    std::int64_t fps = 0;                  ///< Frames per second.
    std::string aspectRatio;               ///< Such as "16:9".
    std::optional<std::int64_t> width;     ///< Pixels.
    std::optional<std::int64_t> height;    ///< Pixels.

    bool operator==(const VistrelHandoffProject&) const = default;
};

/// One shot on the film's timeline, `shots[]` of the handoff manifest.
struct KINOVANE_EXPORT VistrelHandoffShot {
    std::string id;                             ///< The id of the planned shot.
    std::int64_t order = 0;                     ///< Position in the film, from 0.
    std::string purpose;                        ///< What the shot contributes to the story.
    std::string prompt;                         ///< The prompt for the moving clip.
    std::string framePrompt;                    ///< The prompt for the still key frame.
    std::int64_t timelineStartMilliseconds = 0; ///< The sum of all earlier durations.
    std::int64_t durationMilliseconds = 0;      ///< The length of the shot, in milliseconds.
    std::vector<std::string> characterIds;      ///< Ids of FilmCastMember records.
    std::string locationId;                     ///< The id of a FilmLocation.
    std::string transition;                     ///< The transition into the next shot.
    std::int64_t take = 0;                      ///< The number of the current take.
    std::int64_t seed = 0;                      ///< The selected seed, or the planned one.
    std::optional<std::string> keyframeAssetId; ///< The asset "frames/" + id + ".png".
    std::optional<std::string> clipAssetId;     ///< The asset "clips/" + id + ".mp4".
    std::vector<FilmDialogueLine> dialogue;     ///< The spoken lines.
    std::vector<FilmSoundEffect> soundEffects;  ///< The sound effects.

    bool operator==(const VistrelHandoffShot&) const = default;
};

/// One exported media file, `assets[]` of the handoff manifest.
struct KINOVANE_EXPORT VistrelHandoffAsset {
    std::string id;           ///< "film_asset_" and 20 hexadecimal digits; depends on path and digest only.
    std::string kind;         ///< One of VistrelHandoffBuilder::exportedKinds.
    std::string relativePath; ///< Relative to the project's directory.
    std::string sha256;       ///< "sha256:" and 64 lowercase hexadecimal digits.
    std::int64_t bytes = 0;   ///< The size in bytes, as the project records it.
    std::string contentType;  ///< The media type, such as "video/mp4".
    std::string source;       ///< What produced the file, as the project records it.

    bool operator==(const VistrelHandoffAsset&) const = default;
};

/// The whole handoff manifest.
struct KINOVANE_EXPORT VistrelHandoff {
    /// "quexrun/film-vistrel-handoff.v1" when built by this library. Any other text is read as well.
    std::string contractVersion;
    std::string
        exportedAt; ///< UTC, such as "2026-03-01T14:05:09Z", unless the caller of `build` gave a text.
    VistrelHandoffSource source;             ///< The project that it was made from.
    VistrelHandoffProject project;           ///< General facts about the film.
    std::vector<FilmCastMember> cast;        ///< The characters of the plan.
    std::vector<FilmLocation> locations;     ///< The sets of the plan.
    std::vector<VistrelHandoffShot> shots;   ///< In film order.
    std::vector<VistrelHandoffAsset> assets; ///< In the order of the project's artifacts.
    FilmProof proof;                         ///< Which production steps were complete.

    bool operator==(const VistrelHandoff&) const = default;
};

template <>
inline constexpr JSONForm jsonForm<VistrelHandoff> = JSONForm::readingAndWriting;
template <>
inline constexpr JSONForm jsonForm<VistrelHandoffSource> = JSONForm::readingAndWriting;
template <>
inline constexpr JSONForm jsonForm<VistrelHandoffProject> = JSONForm::readingAndWriting;
template <>
inline constexpr JSONForm jsonForm<VistrelHandoffShot> = JSONForm::readingAndWriting;
template <>
inline constexpr JSONForm jsonForm<VistrelHandoffAsset> = JSONForm::readingAndWriting;

} // namespace kinovane

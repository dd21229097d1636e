// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <kinovane/handoff.hpp>
#include <kinovane/preflight.hpp>
#include <kinovane/workspace.hpp>

namespace kinovane::tool {

/// A character or a location that a shot names by its id.
struct StoryboardName {
    std::string id;
    std::optional<std::string> name; ///< Absent when the documents have no record with this id.

    bool operator==(const StoryboardName&) const = default;
};

struct StoryboardShot {
    std::string id;
    std::string purpose;
    std::string prompt;
    std::string framePrompt;
    /// Absent when the value does not fit 64 bits of milliseconds.
    std::optional<std::int64_t> startMilliseconds;
    std::optional<std::int64_t> durationMilliseconds;
    std::vector<StoryboardName> characters;
    StoryboardName location;
    std::string transition;
    std::optional<std::string> status; ///< Not in a manifest.
    std::int64_t take = 0;
    std::int64_t seed = 0;
    std::vector<FilmDialogueLine> dialogue; ///< The speakers are names where they are known.
    std::vector<FilmSoundEffect> soundEffects;
    std::optional<std::size_t> keyframe; ///< The position in Storyboard::assets.
    std::optional<std::size_t> clip;
};

/// Everything that the storyboard page tells, apart from the files themselves.
struct Storyboard {
    std::string title;
    std::string idea;
    std::optional<std::string> logline;
    std::optional<std::string> synopsis;
    std::optional<std::string> theme;

    std::string updatedAt;
    std::optional<std::string> exportedAt; ///< Only in a manifest.
    std::optional<std::string> phase;      ///< Not in a manifest.
    std::optional<std::string> status;     ///< Not in a manifest.
    std::optional<double> durationSeconds; ///< As planned for the whole film.
    std::optional<std::int64_t> fps;
    std::optional<std::int64_t> width;
    std::optional<std::int64_t> height;
    std::optional<std::string> aspectRatio;

    FilmProof proof;
    bool hasPlan = false;
    std::vector<StoryboardShot> shots; ///< In film order.
    std::vector<FilmCastMember> cast;
    std::vector<FilmLocation> locations;
    std::vector<FilmArtifact> assets; ///< In the order of the documents.

    /// Absent in a manifest, which tells neither.
    std::optional<std::vector<PreflightFinding>> findings;
    std::optional<std::vector<FilmIssue>> issues; ///< Blocking ones first.
};

/// The storyboard of a workspace. Does not touch the disk.
Storyboard storyboardOf(const FilmWorkspaceSnapshot& film);

/// The storyboard of a handoff manifest, as far as the manifest tells it.
Storyboard storyboardOf(const VistrelHandoff& handoff);

/// The assets of a manifest in the form in which a workspace records them.
std::vector<FilmArtifact> artifactsOf(const VistrelHandoff& handoff);

/// The last asset of this kind; with a name, the last whose file has this name without its extension.
std::optional<std::size_t> lastAsset(const Storyboard& storyboard, std::string_view kind,
                                     std::optional<std::string_view> name = std::nullopt);

} // namespace kinovane::tool

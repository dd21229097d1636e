// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vistrel {

/// Where the film comes from.
struct Source {
    std::string projectId, projectRoot, runManifest, projectContractVersion, updatedAt;
};

/// The film's header.
struct Header {
    std::string title, idea;
    std::optional<std::string> logline, synopsis, theme;
    std::int64_t durationMilliseconds = 0, fps = 0;
    std::string aspectRatio;
    std::optional<std::int64_t> width, height;
};

struct CastMember {
    std::string id, name, visual, wardrobe, voice;
    std::optional<std::int64_t> seed;
};

struct Location {
    std::string id, name, visual, ambience;
    std::optional<std::int64_t> seed;
};

/// Times of lines and effects count from the start of their shot.
struct DialogueLine {
    std::string speaker, text;
    double startSeconds = 0;
    std::string delivery;
};

struct SoundEffect {
    std::string prompt;
    double startSeconds = 0, durationSeconds = 0, levelDb = 0;
    std::int64_t seed = 0;
};

struct Shot {
    std::string id;
    std::int64_t order = 0;
    std::string purpose, prompt, framePrompt;
    std::int64_t timelineStartMilliseconds = 0, durationMilliseconds = 0;
    std::vector<std::string> characterIds;
    std::string locationId, transition;
    std::int64_t take = 0, seed = 0;
    std::optional<std::string> keyframeAssetId, clipAssetId;
    std::vector<DialogueLine> dialogue;
    std::vector<SoundEffect> soundEffects;
};

struct Asset {
    std::string id, kind, relativePath, sha256;
    std::int64_t bytes = 0;
    std::string contentType, source;
};

/// Which steps of the production the film has behind it.
struct Proof {
    bool creation = false, clips = false, assembly = false, dialogue = false, sound = false, captions = false,
         inspection = false, review = false, humanReview = false, delivery = false;
};

/// A film as its maker's tool hands it over.
struct Manifest {
    std::string contractVersion, exportedAt;
    Source source;
    Header project;
    std::vector<CastMember> cast;
    std::vector<Location> locations;
    std::vector<Shot> shots;
    std::vector<Asset> assets;
    Proof proof;
};

/// The text of a manifest file of a reasonable size.
std::string readManifestFile(const std::filesystem::path& file);

/// The film in the text. Refused are text that is no JSON, another contract version, a missing key and a
/// value of the wrong type; what the values mean is left to checkManifest.
Manifest parseManifest(std::string_view text);

} // namespace vistrel

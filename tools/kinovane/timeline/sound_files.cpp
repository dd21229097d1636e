// SPDX-License-Identifier: Apache-2.0

#include "timeline/sound_files.hpp"

#include <algorithm>
#include <charconv>
#include <functional>
#include <optional>
#include <string_view>
#include <system_error>

namespace kinovane::tool {

namespace {

/// The number at the beginning of the text, after "WORD-" where the text begins so.
std::optional<std::size_t> numberAfter(std::string_view text, std::string_view word) {
    if (text.starts_with(word))
        text.remove_prefix(word.size());
    std::size_t number = 0;
    const auto [rest, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() ? std::optional(number) : std::nullopt;
}

/// How many lines or effects each shot has, by its id.
using Counts = std::map<std::string, std::size_t, std::less<>>;

/// The shot and the number that the name of a file tells. An id may hold "-" and numbers itself: the longest
/// id counts.
std::optional<std::pair<std::string, std::size_t>> keyOf(std::string_view path, std::string_view word,
                                                         const Counts& counts) {
    const std::string_view name = path.substr(path.rfind('/') + 1); // The whole path without a "/".
    for (std::size_t end = name.rfind('-'); end != std::string_view::npos && end > 0;
         end = name.rfind('-', end - 1)) {
        const auto shot = counts.find(name.substr(0, end));
        const std::optional<std::size_t> number = numberAfter(name.substr(end + 1), word);
        if (shot != counts.end() && number && *number >= 1 && *number <= shot->second)
            return std::pair(shot->first, *number);
    }
    return std::nullopt;
}

} // namespace

SoundFiles::SoundFiles(const FilmWorkspaceSnapshot& film, const std::vector<FilmShot>& shots) {
    Counts lines;
    Counts effects;
    for (const FilmShot& shot : shots) {
        lines[shot.planned.id] = std::max(lines[shot.planned.id], shot.planned.dialogue.size());
        effects[shot.planned.id] = std::max(effects[shot.planned.id], shot.planned.soundEffects.size());
    }
    for (const FilmArtifact& artifact : film.project.artifacts) {
        const bool isDialogue = artifact.kind == "dialogue";
        if (!isDialogue && artifact.kind != "sound-effect")
            continue;
        const auto key =
            isDialogue ? keyOf(artifact.path, "line-", lines) : keyOf(artifact.path, "effect-", effects);
        if (key)
            (isDialogue ? dialogue_ : effects_)[*key] = &artifact;
        else
            unplanned_.push_back(&artifact);
    }
}

const FilmArtifact* SoundFiles::dialogue(const std::string& shotId, std::size_t number) const {
    const auto found = dialogue_.find({shotId, number});
    return found == dialogue_.end() ? nullptr : found->second;
}

const FilmArtifact* SoundFiles::effect(const std::string& shotId, std::size_t number) const {
    const auto found = effects_.find({shotId, number});
    return found == effects_.end() ? nullptr : found->second;
}

} // namespace kinovane::tool

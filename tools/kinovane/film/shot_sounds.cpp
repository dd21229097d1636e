// SPDX-License-Identifier: Apache-2.0

#include "film/shot_sounds.hpp"

#include <string_view>

namespace kinovane::tool {

namespace {

constexpr std::size_t longestName = 255; // No file system has longer ones.

/// Whether the text is "line-", "effect-" or nothing, and a number.
bool beginsWithNumber(std::string_view text) {
    for (const std::string_view word : {"line-", "effect-"})
        if (text.starts_with(word))
            text.remove_prefix(word.size());
    return !text.empty() && text.front() >= '0' && text.front() <= '9';
}

} // namespace

std::map<std::string, std::vector<std::string>> soundsByShot(const std::vector<FilmArtifact>& artifacts) {
    std::map<std::string, std::vector<std::string>> sounds;
    for (const FilmArtifact& artifact : artifacts) {
        if (artifact.kind != "dialogue" && artifact.kind != "sound-effect")
            continue;
        const std::string_view path = artifact.path;
        const std::string_view name = path.substr(path.rfind('/') + 1); // The whole path without a "/".
        if (name.size() > longestName)
            continue;
        // An id may hold "-" and numbers itself, so that every such place may be its end.
        for (std::size_t end = name.find('-'); end != std::string_view::npos; end = name.find('-', end + 1))
            if (beginsWithNumber(name.substr(end + 1)))
                sounds[std::string(name.substr(0, end))].push_back(artifact.path);
    }
    return sounds;
}

} // namespace kinovane::tool

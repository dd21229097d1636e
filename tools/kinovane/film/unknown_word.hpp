// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <kinovane/workspace.hpp>

#include "session/failure.hpp"

namespace kinovane::tool {

/// The ids of all shots: of the plan, then of the project.
std::vector<std::string> shotIds(const FilmWorkspaceSnapshot& film);

/// The error for a word that the film does not have: "… is not a shot of “Title”. Did you mean "shot-01"?".
/// `what` is such as "a shot".
UsageError unknownWord(const std::string& word, std::string_view what, const FilmWorkspaceSnapshot& film,
                       const std::vector<std::string>& known);

/// Throws `unknownWord` unless the film has the shot.
void expectShot(const std::string& id, const FilmWorkspaceSnapshot& film);

/// Whether a folder holds a film, or the path is that of a run manifest.
bool isFilm(const std::filesystem::path& path);

/// If `word` is the only argument, it may be the path of a film instead: it is then moved to `film`. A word
/// that `isKnown` of the film in the current folder is not a path.
template <class IsKnown>
void moveFilmArgument(std::optional<std::string>& word, std::filesystem::path& film, IsKnown isKnown) {
    if (word && film == "." && isFilm(*word) && !(isFilm(".") && isKnown(*word))) {
        film = *word;
        word.reset();
    }
}

} // namespace kinovane::tool

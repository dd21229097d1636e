// SPDX-License-Identifier: Apache-2.0

#include "film/unknown_word.hpp"

#include <algorithm>
#include <system_error>

#include "arguments/suggestion.hpp"
#include "film/film_location.hpp"
#include "terminal/display_width.hpp"
#include "terminal/shown_text.hpp"

namespace kinovane::tool {

namespace {

constexpr std::size_t mostColumns = 60;

std::string inQuotes(const std::string& text) { return "\"" + fitted(shown(text), mostColumns) + "\""; }

} // namespace

std::vector<std::string> shotIds(const FilmWorkspaceSnapshot& film) {
    std::vector<std::string> ids;
    if (film.productionPlan)
        for (const FilmProductionShot& shot : film.productionPlan->shots)
            ids.push_back(shot.id);
    for (const FilmShotState& shot : film.project.shots)
        ids.push_back(shot.id);
    return ids;
}

UsageError unknownWord(const std::string& word, std::string_view what, const FilmWorkspaceSnapshot& film,
                       const std::vector<std::string>& known) {
    std::string message =
        inQuotes(word) + " is not " + std::string(what) + " of " + inQuotes(film.project.title);
    if (const std::optional<std::string> similar = similarWord(word, known))
        message += ". Did you mean " + inQuotes(*similar) + "?";
    return UsageError(message);
}

void expectShot(const std::string& id, const FilmWorkspaceSnapshot& film) {
    const std::vector<std::string> ids = shotIds(film);
    if (std::ranges::find(ids, id) == ids.end())
        throw unknownWord(id, "a shot", film, ids);
}

bool isFilm(const std::filesystem::path& path) {
    std::error_code notFound;
    const std::filesystem::path manifest = runManifestAt(path);
    return manifest.filename() == FilmWorkspaceDocument::runManifest &&
           std::filesystem::exists(manifest, notFound);
}

} // namespace kinovane::tool

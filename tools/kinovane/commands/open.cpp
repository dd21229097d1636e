// SPDX-License-Identifier: Apache-2.0

#include "commands/open.hpp"

#include <algorithm>
#include <string>
#include <system_error>
#include <vector>

#include <boost/json.hpp>

#include <kinovane/film_shots.hpp>

#include "film/film_location.hpp"
#include "film/film_tree.hpp"
#include "film/opener.hpp"
#include "film/unknown_word.hpp"
#include "session/failure.hpp"
#include "terminal/shown_text.hpp"

namespace kinovane::tool {

namespace fs = std::filesystem;
namespace json = boost::json;

namespace {

constexpr const char* poster = "poster";

std::vector<std::string> knownWords(const FilmWorkspaceSnapshot& film) {
    std::vector<std::string> words = shotIds(film);
    words.emplace_back(poster);
    return words;
}

bool isKnown(const std::string& word, const FilmWorkspaceSnapshot& film) {
    const std::vector<std::string> words = knownWords(film);
    return std::ranges::find(words, word) != words.end();
}

/// The clip of the first planned shot with this id.
std::optional<FilmArtifact> clipOf(const std::string& id, const FilmWorkspaceSnapshot& film) {
    for (const FilmShot& shot : shots(film))
        if (shot.planned.id == id)
            return shot.clip;
    return std::nullopt;
}

fs::path locationOf(const std::optional<std::string>& what, const FilmWorkspaceSnapshot& film) {
    if (!what) {
        if (const std::optional<fs::path> cut = film.playableCutURL())
            return *cut;
        throw CommandError(ExitStatus::handoff, "the film has no cut that can be played yet");
    }
    if (!isKnown(*what, film))
        throw unknownWord(*what, "a shot", film, knownWords(film));
    // A shot may have the id "poster".
    if (const std::optional<FilmArtifact> clip = clipOf(*what, film))
        return film.artifactURL(*clip);
    if (*what != poster)
        throw CommandError(ExitStatus::handoff, "the shot \"" + shown(*what) + "\" has no clip yet");
    if (const std::optional<FilmArtifact> picture = film.latestArtifact(poster))
        return film.artifactURL(*picture);
    throw CommandError(ExitStatus::handoff, "the film has no poster yet");
}

CommandError misplaced(const fs::path& file, const std::string& reason) {
    return {ExitStatus::handoff, shownPath(file.string()) + " is not opened: " + reason};
}

/// The path of the file with all links followed. Throws unless it is a regular file in the film's folder.
fs::path fileInside(const FilmWorkspaceSnapshot& film, const fs::path& file) {
    if (!file.is_absolute() || file.native().find('\0') != std::string::npos)
        throw misplaced(file, "its path is not valid");
    std::error_code error;
    const fs::path target = fs::canonical(file, error);
    if (error)
        throw CommandError(error == std::errc::no_such_file_or_directory ? ExitStatus::handoff
                                                                         : ExitStatus::fileSystem,
                           shownPath(file.string()) + ": " + error.message());
    const fs::path root = fs::canonical(film.root);
    if (!isInsideLexically(target, root))
        throw misplaced(file, target == file
                                  ? "it lies outside the film's folder"
                                  : "it leads out of the film's folder, to " + shownPath(target.string()));
    if (!fs::is_regular_file(target))
        throw misplaced(file, "it is not a regular file");
    return target;
}

} // namespace

ExitStatus open(const OpenRequest& request, const Session& session) {
    std::optional<std::string> what = request.what;
    fs::path location = request.film;
    moveFilmArgument(what, location, [](const std::string& word) { return isKnown(word, loadFilm(".")); });
    const FilmWorkspaceSnapshot film = loadFilm(location);
    const fs::path file = locationOf(what, film);
    const fs::path target = fileInside(film, file);
    const Console& console = session.console;
    if (!request.print)
        openWithSystem(target, session.stop);
    if (console.options().json)
        console.result(
            json::value(json::object{{"version", 1}, {"path", file.string()}, {"opened", !request.print}}));
    else if (request.print)
        console.result(shownPath(file.string()) + "\n");
    else
        console.step("Opened " + shownPath(file.string()) + "\n");
    return ExitStatus::success;
}

} // namespace kinovane::tool

// SPDX-License-Identifier: Apache-2.0

#include "commands/copy.hpp"

#include <filesystem>
#include <string>

#include <kinovane/workspace.hpp>

#include "commands/film_copy.hpp"
#include "film/film_location.hpp"
#include "film/film_tree.hpp"
#include "json/json_output.hpp"
#include "session/failure.hpp"
#include "terminal/shown_text.hpp"

namespace kinovane::tool {

namespace fs = std::filesystem;
namespace json = boost::json;

namespace {

void requireApart(const FilmWorkspaceSnapshot& film, const fs::path& target) {
    const auto refuse = [&](const std::string& reason) {
        throw CommandError(ExitStatus::usage, shownPath(target.string()) + ": " + reason +
                                                  ". Next: name a folder beside the film");
    };
    if (isInside(target, film.root))
        refuse("the copy would lie in the film's own folder");
    if (isInside(film.root, target))
        refuse("the film lies in this folder");
}

} // namespace

ExitStatus copy(const CopyRequest& request, const Session& session) {
    const FilmWorkspaceSnapshot film = loadFilm(request.film);
    requireApart(film, request.target);
    FilmCopy copy(film, request, session);
    try {
        copy.run();
    } catch (const fs::filesystem_error&) {
        const Failure failure = currentFailure();
        throw CommandError(failure.status, failure.message +
                                               "\nThe copy is not complete. Next: remove the cause, then " +
                                               copy.continuation());
    }
    const Console& console = session.console;
    if (console.options().json)
        console.result(json::value(json::object{{"version", 1}, {"films", json::array{copy.json()}}}));
    else
        console.result(copy.summary());
    return copy.status();
}

} // namespace kinovane::tool

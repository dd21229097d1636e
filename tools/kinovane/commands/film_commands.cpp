// SPDX-License-Identifier: Apache-2.0

#include "commands/film_commands.hpp"

#include <string>
#include <utility>
#include <vector>

#include <boost/json.hpp>

#include "commands/film_run.hpp"
#include "film/film_location.hpp"
#include "film/gates.hpp"
#include "film/next_step_text.hpp"
#include "film/unknown_word.hpp"
#include "film/user_name.hpp"
#include "session/failure.hpp"
#include "terminal/shown_text.hpp"
#include "terminal/style.hpp"

namespace kinovane::tool {

namespace fs = std::filesystem;
namespace json = boost::json;

namespace {

std::vector<std::string> gateNames(const FilmWorkspaceSnapshot& film) {
    std::vector<std::string> names;
    for (const Gate& gate : gatesInOrder(film.project))
        names.push_back(gate.name);
    return names;
}

/// The gate that the user named, or the one that the film waits for.
std::string gateOf(const std::optional<std::string>& name, const FilmWorkspaceSnapshot& film) {
    if (!name) {
        if (std::optional<std::string> waiting = waitingGate(film.project))
            return *std::move(waiting);
        throw UsageError("no gate waits for approval");
    }
    if (!film.project.approvals.contains(*name))
        throw unknownWord(*name, "a gate", film, gateNames(film));
    return *name;
}

/// The path as it is written in a command that is typed in the current folder.
fs::path shortPath(const fs::path& path) {
    std::error_code error;
    const fs::path here = fs::current_path(error);
    const fs::path relative = error ? path : path.lexically_proximate(here);
    return relative.empty() || *relative.begin() == ".." ? path : relative;
}

/// The model of the agent; FilmToolClient::plan has no parameters for it.
void setModel(RunOptions& options, const FilmToolArguments& tool) {
    if (tool.provider)
        options.environment["QUEX_FILM_TOOLS_PI_PROVIDER"] = *tool.provider;
    if (tool.model)
        options.environment["QUEX_FILM_TOOLS_PI_MODEL"] = *tool.model;
}

void printPlanned(const fs::path& runManifest, const Console& console) {
    const FilmCommand command{"Next", "status"};
    const fs::path folder = shortPath(runManifest.parent_path());
    const std::vector<std::string> words = commandLine(command, folder);
    // The inner array is a value: clang takes a list of one array for a copy of that array.
    if (console.options().json)
        console.result(json::value(json::object{
            {"version", 1},
            {"outcome", "done"},
            {"runManifest", runManifest.string()},
            {"next",
             {{"reason", "The film is planned."},
              {"commands", json::array{json::value(json::array(words.begin(), words.end()))}}}}}));
    else
        console.result(shownPath(runManifest.string()) +
                       "\nNext: " + styled(Style::heading, shellLine(words)) + "\n");
}

} // namespace

ExitStatus plan(const PlanRequest& request, const Session& session) {
    fs::path runManifest;
    FilmOperation operation{"Planning the film", request.tool, false};
    operation.run = [&](const FilmToolClient& client, RunOptions options) {
        setModel(options, request.tool);
        runManifest = client
                          .plan(request.idea, request.title, request.durationSeconds, request.folder,
                                request.tool.pi, std::move(options))
                          .get();
    };
    const Ending ending = runFilmTool(operation, session);
    if (ending.outcome == Outcome::done)
        printPlanned(runManifest, session.console);
    return ending.status;
}

ExitStatus approve(const ApproveRequest& request, const Session& session) {
    std::optional<std::string> named = request.gate;
    fs::path location = request.film;
    moveFilmArgument(named, location,
                     [](const std::string& word) { return loadFilm(".").project.approvals.contains(word); });
    const FilmWorkspaceSnapshot film = loadFilm(location);
    const std::string gate = gateOf(named, film);
    const std::string approvedBy = request.approvedBy ? *request.approvedBy : userName();
    FilmOperation operation{"Approving \"" + shown(gate) + "\"", request.tool};
    operation.run = [&](const FilmToolClient& client, RunOptions options) {
        client.approve(film.runManifest, gate, request.note, approvedBy, std::move(options)).get();
    };
    return changeFilm(operation, film, location, session);
}

ExitStatus advance(const AdvanceRequest& request, const Session& session) {
    const FilmWorkspaceSnapshot film = loadFilm(request.film);
    const FilmToolArguments& tool = request.tool;
    FilmOperation operation{"Continuing the production", tool};
    operation.run = [&](const FilmToolClient& client, RunOptions options) {
        client.advance(film.runManifest, tool.pi, tool.provider, tool.model, std::move(options)).get();
    };
    return changeFilm(operation, film, request.film, session);
}

ExitStatus reroll(const RerollRequest& request, const Session& session) {
    const FilmWorkspaceSnapshot film = loadFilm(request.film);
    expectShot(request.shot, film);
    FilmOperation operation{"Requesting another take of \"" + shown(request.shot) + "\"", request.tool};
    operation.run = [&](const FilmToolClient& client, RunOptions options) {
        client.reroll(film.runManifest, request.shot, request.note, std::move(options)).get();
    };
    return changeFilm(operation, film, request.film, session);
}

ExitStatus review(const ReviewRequest& request, const Session& session) {
    const FilmWorkspaceSnapshot film = loadFilm(request.film);
    const FilmToolArguments& tool = request.tool;
    FilmOperation operation{"Reviewing the film", tool};
    operation.run = [&](const FilmToolClient& client, RunOptions options) {
        client.review(film.runManifest, tool.pi, tool.provider, tool.model, std::move(options)).get();
    };
    return changeFilm(operation, film, request.film, session);
}

ExitStatus recover(const RecoverRequest& request, const Session& session) {
    const FilmWorkspaceSnapshot film = loadFilm(request.film);
    FilmOperation operation{"Recovering the film", request.tool};
    operation.run = [&](const FilmToolClient& client, RunOptions options) {
        client.recover(film.runManifest, std::move(options)).get();
    };
    return changeFilm(operation, film, request.film, session);
}

} // namespace kinovane::tool

// SPDX-License-Identifier: Apache-2.0

#include "commands/film_run.hpp"

#include <exception>
#include <optional>
#include <utility>
#include <variant>

#include <boost/json.hpp>

#include <kinovane/film_changes.hpp>
#include <kinovane/user_message.hpp>

#include "film/changes_text.hpp"
#include "film/film_location.hpp"
#include "film/next_step.hpp"
#include "film/next_step_text.hpp"
#include "film/tool_output.hpp"
#include "session/failure.hpp"
#include "terminal/shown_text.hpp"

namespace kinovane::tool {

namespace fs = std::filesystem;
namespace json = boost::json;

namespace {

std::string withoutEnd(std::string text) {
    text.erase(text.find_last_not_of(" \t\r\n") + 1);
    return text;
}

/// The error with the name of the program. What the program wrote to its standard error is left out if the
/// user has seen it already.
CommandError describe(const FilmToolError& error, const std::string& program, bool hasShownErrors) {
    std::string text = withoutEnd(userMessage(error));
    const auto* failed = std::get_if<FilmToolError::commandFailed>(&error.value());
    const std::string words = failed == nullptr ? std::string() : withoutEnd(failed->result.stderr);
    if (!words.empty() && text.ends_with(words)) {
        if (!hasShownErrors)
            text = text == words ? program + ": " + text : text;
        else if (text == words)
            text = program + " exited " + std::to_string(failed->result.exitCode) + ".";
        else // "film was ended by signal 9 (Killed): ", and the words.
            text = text.substr(0, text.size() - words.size() - 2) + ".";
    }
    return {ExitStatus::program, text};
}

/// The next step; after a stop also the way to undo a step that the tool did not finish.
NextStep nextStepAfter(Outcome outcome, const FilmWorkspaceSnapshot& film) {
    NextStep next = nextStep(film);
    const bool recovers = next.commands.front().name == "recover";
    if (outcome == Outcome::stopped && !recovers) {
        next.reason += " If the film tool left a step unfinished, recover the film first.";
        next.commands.push_back({"Or", "recover"});
    }
    return next;
}

/// The film after the run; none, with a report, when it cannot be loaded any more.
std::optional<FilmWorkspaceSnapshot> loadAgain(const fs::path& location, Ending& ending,
                                               const Console& console) {
    try {
        return loadFilm(location);
    } catch (const std::exception&) {
        const ExitStatus status = reportCurrentException(console);
        if (ending.outcome == Outcome::done)
            ending = {Outcome::failed, status};
        return std::nullopt;
    }
}

} // namespace

const char* nameOf(Outcome outcome) {
    switch (outcome) {
    case Outcome::done:
        return "done";
    case Outcome::stopped:
        return "stopped";
    case Outcome::failed:
        return "failed";
    }
    return "";
}

Ending runFilmTool(const FilmOperation& operation, const Session& session) {
    const Console& console = session.console;
    const std::string program = fs::path(operation.tool.program).filename().string();
    console.step(operation.description + " with " + shownPath(operation.tool.program) + "\n");
    ToolOutput output(console, program, !console.options().json && !console.options().quiet, session.stop);
    RunOptions options;
    options.standardInput = StandardInput::empty;
    options.stop = session.stop;
    options.onOutput = [&](OutputStream stream, std::string_view chunk) {
        if (operation.showsReply || stream == OutputStream::standardError)
            output.show(stream, chunk);
    };
    try {
        try {
            operation.run(FilmToolClient(operation.tool.program), options);
            return {};
        } catch (const FilmToolError& error) {
            throw describe(error, program, output.hasShownErrors());
        }
    } catch (const RunStopped&) {
        output.finish();
        return {Outcome::stopped, reportCurrentException(console)};
    } catch (const CommandError&) {
        output.finish();
        return {Outcome::failed, reportCurrentException(console)};
    }
}

ExitStatus changeFilm(const FilmOperation& operation, const FilmWorkspaceSnapshot& before,
                      const fs::path& location, const Session& session) {
    const Console& console = session.console;
    Ending ending = runFilmTool(operation, session);
    const std::optional<FilmWorkspaceSnapshot> after = loadAgain(location, ending, console);
    if (!after)
        return ending.status;
    const FilmChanges changed = changes(before, *after);
    const NextStep next = nextStepAfter(ending.outcome, *after);
    if (console.options().json)
        console.result(json::value(json::object{{"version", 1},
                                                {"outcome", nameOf(ending.outcome)},
                                                {"changes", changesJSON(changed)},
                                                {"next", nextStepJSON(next, location)}}));
    else
        console.result(changesText(changed, console.columns()) + "\n" +
                       nextStepText(next, location, console.columns()));
    return ending.status;
}

} // namespace kinovane::tool

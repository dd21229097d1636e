// SPDX-License-Identifier: Apache-2.0

#include <string>
#include <utility>

#include <boost/json.hpp>

#include <kinovane/json.hpp>

#include "commands/film_commands.hpp"
#include "commands/film_run.hpp"
#include "film/film_location.hpp"
#include "film/next_step.hpp"
#include "film/next_step_text.hpp"
#include "film/own_files.hpp"
#include "json/json_output.hpp"
#include "session/failure.hpp"
#include "terminal/human_text.hpp"
#include "terminal/shown_text.hpp"
#include "terminal/text_table.hpp"

namespace kinovane::tool {

namespace json = boost::json;

namespace {

std::string humanText(const FilmVistrelExportReceipt& receipt, const Console& console) {
    using enum TextTable::Alignment;
    TextTable table({left, left});
    table.addUnwrapped({"Manifest", shownPath(receipt.manifest)});
    table.add({"Shots", std::to_string(receipt.shots)});
    table.add({"Files", std::to_string(receipt.assets) + ", " + sizeText(receipt.bytes)});
    if (console.options().verbose)
        table.addUnwrapped({"Digest", shown(receipt.manifestSha256)});
    return table.text(console.columns());
}

void print(const FilmVistrelExportReceipt& receipt, const FilmWorkspaceSnapshot& film,
           const std::filesystem::path& location, const Console& console) {
    const NextStep next = nextStep(film);
    if (console.options().json)
        console.result(json::value(json::object{{"version", 1},
                                                {"outcome", "done"},
                                                {"receipt", parsedJSON(encodeJSON(receipt))},
                                                {"next", nextStepJSON(next, location)}}));
    else
        console.result(humanText(receipt, console) + "\n" + nextStepText(next, location, console.columns()));
}

} // namespace

ExitStatus exportFilm(const ExportRequest& request, const Session& session) {
    const FilmWorkspaceSnapshot film = loadFilm(request.film);
    if (request.output && isOwnFile(film, *request.output))
        throw UsageError(shownPath(request.output->string()) +
                         " is one of the film's own files, and is not replaced");
    FilmVistrelExportReceipt receipt;
    FilmOperation operation{"Exporting the film", request.tool, false};
    operation.run = [&](const FilmToolClient& client, RunOptions options) {
        receipt = client.exportVistrel(film.runManifest, request.output, std::move(options)).get();
    };
    const Ending ending = runFilmTool(operation, session);
    if (ending.outcome != Outcome::done)
        return ending.status;
    if (!receipt.ok)
        throw CommandError(ExitStatus::program,
                           shown(request.tool.program) + ": the tool refused to export the film");
    print(receipt, loadFilm(request.film), request.film, session.console);
    return ExitStatus::success;
}

} // namespace kinovane::tool

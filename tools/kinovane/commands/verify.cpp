// SPDX-License-Identifier: Apache-2.0

#include "commands/verify.hpp"

#include <optional>
#include <string>
#include <vector>

#include <kinovane/workspace.hpp>

#include "commands/film_verification.hpp"
#include "film/checksum_list.hpp"
#include "film/film_location.hpp"
#include "film/own_files.hpp"
#include "json/json_output.hpp"
#include "session/failure.hpp"
#include "terminal/shown_text.hpp"
#include "terminal/style.hpp"

namespace kinovane::tool {

namespace fs = std::filesystem;
namespace json = boost::json;

namespace {

void requireValid(const VerifyRequest& request, const Session& session) {
    if (request.films.size() > 1 && (request.checksums || request.writeChecksums))
        throw UsageError("a list of checksums belongs to one film; name only one");
    if (session.console.options().json && isStandardOutput(request.writeChecksums))
        throw UsageError("--json and --write-checksums - cannot both use standard output");
}

void requireReplaceable(const FilmWorkspaceSnapshot& film, const VerifyRequest& request) {
    const std::optional<fs::path>& file = request.writeChecksums;
    if (!file || isStandardOutput(file))
        return;
    if (isOwnFile(film, *file) || isSameFile(film.root / "vistrel-handoff.json", *file))
        throw CommandError(
            ExitStatus::usage,
            shownPath(file->string()) +
                ": this is one of the film's own files, and is not replaced. Next: name another file");
    if (request.checksums && isSameFile(*request.checksums, *file))
        throw CommandError(ExitStatus::usage, shownPath(file->string()) +
                                                  ": the list to compare with would be replaced. Next: name "
                                                  "another file");
}

/// Other failures are more urgent than files that could not be read.
ExitStatus combined(ExitStatus left, ExitStatus right) {
    if (left == ExitStatus::success || (left == ExitStatus::fileSystem && right != ExitStatus::success))
        return right;
    return left;
}

} // namespace

ExitStatus verify(const VerifyRequest& request, const Session& session) {
    const Console& console = session.console;
    requireValid(request, session);
    const std::vector<Checksum> list =
        request.checksums ? readChecksumList(*request.checksums) : std::vector<Checksum>();
    const bool isSingle = request.films.size() == 1;
    json::array films;
    ExitStatus status = ExitStatus::success;
    std::string separator;
    for (const fs::path& location : request.films) {
        FilmWorkspaceSnapshot film;
        try {
            film = loadFilm(location);
        } catch (const CommandError& error) {
            if (isSingle)
                throw;
            status = combined(status, reportCurrentException(console));
            films.push_back(json::object{{"film", location.string()}, {"error", error.what()}});
            continue;
        }
        requireReplaceable(film, request);
        if (!isSingle && !console.options().json)
            console.result(separator + styled(Style::heading, shownPath(film.root.string())) + "\n");
        separator = "\n";
        const VerificationReport report = verifyFilm(film, location, request, list, session);
        films.push_back(report.json(console.options().verbose));
        status = report.isInterrupted ? report.status() : combined(status, report.status());
        if (report.isInterrupted)
            break;
    }
    if (console.options().json)
        console.result(json::value(json::object{{"version", 1}, {"films", films}}));
    return status;
}

} // namespace kinovane::tool

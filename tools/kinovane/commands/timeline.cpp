// SPDX-License-Identifier: Apache-2.0

#include "commands/timeline.hpp"

#include <optional>

#include <unistd.h>

#include <boost/json.hpp>

#include <kinovane/workspace.hpp>

#include "film/film_location.hpp"
#include "film/output_file.hpp"
#include "film/staged_file.hpp"
#include "session/failure.hpp"
#include "terminal/shown_text.hpp"
#include "timeline/edit_builder.hpp"
#include "timeline/media_files.hpp"
#include "timeline/timeline_format.hpp"
#include "timeline/timeline_report.hpp"

namespace kinovane::tool {

namespace fs = std::filesystem;

namespace {

/// Nothing for standard output.
std::optional<fs::path> targetOf(const TimelineRequest& request, const TimelineFormat& format,
                                 const FilmWorkspaceSnapshot& film) {
    if (request.output == "-")
        return std::nullopt;
    fs::path target = outputPath(request.output, format.output);
    requireReplaceable(target, "--output", &film, request.force, format.output);
    return target;
}

/// The folder from which relative references lead.
std::optional<fs::path> referenceFolder(const TimelineRequest& request,
                                        const std::optional<fs::path>& target) {
    if (request.references != "relative")
        return std::nullopt;
    if (!target)
        throw UsageError(
            "--references relative needs a file as --output: references are relative to its folder");
    return folderOf(*target);
}

std::optional<FrameRate> rateOf(const TimelineRequest& request) {
    return request.frameRate.empty() ? std::nullopt : frameRateOf(request.frameRate);
}

} // namespace

ExitStatus timeline(const TimelineRequest& request, const Session& session) {
    const Console& console = session.console;
    const TimelineFormat& format = timelineFormat(request.format);
    const FilmWorkspaceSnapshot film = loadFilm(request.film);
    const std::optional<fs::path> target = targetOf(request, format, film);
    MediaFiles files(film, referenceFolder(request, target), session.stop);
    const Edit edit = editOf(film, rateOf(request), files);
    const std::string document = format.document(edit);
    const TimelineReport report{edit, files.remarks()};
    console.step(report.text(terminalColumns(STDERR_FILENO, anyColumns)));
    if (!target) {
        console.bytes(document);
        return ExitStatus::success;
    }
    writeFile(*target, document);
    if (console.options().json)
        console.result(report.json(request.format, *target));
    else
        console.result(shownPath(target->string()) + "\n");
    return ExitStatus::success;
}

} // namespace kinovane::tool

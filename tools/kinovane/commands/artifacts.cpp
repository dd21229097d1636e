// SPDX-License-Identifier: Apache-2.0

#include "commands/artifacts.hpp"

#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include <boost/json.hpp>

#include <kinovane/film_shots.hpp>

#include "arguments/suggestion.hpp"
#include "film/film_location.hpp"
#include "film/unknown_word.hpp"
#include "terminal/human_text.hpp"
#include "terminal/shown_text.hpp"
#include "terminal/style.hpp"
#include "terminal/text_table.hpp"

namespace kinovane::tool {

namespace json = boost::json;

namespace {

/// The key frame and the clip of a shot, in this order. A shot that is not planned has none.
std::vector<FilmArtifact> filesOfShot(const FilmWorkspaceSnapshot& film, const std::string& id) {
    expectShot(id, film);
    std::vector<FilmArtifact> files;
    const std::vector<FilmShot> planned = shots(film);
    const auto shot =
        std::ranges::find_if(planned, [&](const FilmShot& each) { return each.planned.id == id; });
    if (shot != planned.end())
        for (const std::optional<FilmArtifact>& file : {shot->keyframe, shot->clip})
            if (file)
                files.push_back(*file);
    return files;
}

std::vector<FilmArtifact> selected(const FilmWorkspaceSnapshot& film, const ArtifactsRequest& request) {
    std::vector<FilmArtifact> files =
        request.shot ? filesOfShot(film, *request.shot) : film.project.artifacts;
    if (request.kind)
        std::erase_if(files, [&](const FilmArtifact& file) { return file.kind != *request.kind; });
    return files;
}

std::string nothingText(const FilmWorkspaceSnapshot& film, const ArtifactsRequest& request) {
    std::set<std::string> kinds;
    for (const FilmArtifact& file : film.project.artifacts)
        kinds.insert(file.kind);
    std::string text = "No such file is recorded.";
    if (request.kind && !kinds.contains(*request.kind))
        if (const auto similar = similarWord(*request.kind, {kinds.begin(), kinds.end()}))
            text += " Did you mean --kind " + shown(*similar) + "?";
    return text + "\n";
}

std::string tableText(const std::vector<FilmArtifact>& files, const Console& console) {
    using enum TextTable::Alignment;
    const bool verbose = console.options().verbose;
    TextTable table(verbose ? std::vector{left, right, left, left} : std::vector{left, right, left});
    const auto add = [&](std::string kind, std::string size, std::string digest, std::string path) {
        if (verbose)
            table.addUnwrapped({std::move(kind), std::move(size), std::move(digest), std::move(path)});
        else
            table.addUnwrapped({std::move(kind), std::move(size), std::move(path)});
    };
    add(styled(Style::dim, "kind"), styled(Style::dim, "size"), styled(Style::dim, "digest"),
        styled(Style::dim, "path"));
    for (const FilmArtifact& file : files)
        add(shown(file.kind), sizeText(file.bytes), shown(file.sha256), shownPath(file.path));
    return table.text(console.columns());
}

void printPaths(const FilmWorkspaceSnapshot& film, const std::vector<FilmArtifact>& files, bool nul,
                const Console& console) {
    std::string text;
    for (const FilmArtifact& file : files) {
        const std::string path = film.artifactURL(file).string();
        // A NUL byte would make two paths of it.
        if (nul && path.find('\0') != std::string::npos)
            console.message("kinovane: left out, because it holds a NUL byte: " + shownPath(path) + "\n");
        else
            text += nul ? path + '\0' : shownPath(path) + "\n";
    }
    if (nul)
        console.bytes(text);
    else
        console.result(text);
}

json::array listJSON(const FilmWorkspaceSnapshot& film, const std::vector<FilmArtifact>& files) {
    json::array list;
    for (const FilmArtifact& file : files)
        list.push_back({{"kind", file.kind},
                        {"path", file.path},
                        {"location", film.artifactURL(file).string()},
                        {"bytes", file.bytes},
                        {"contentType", file.contentType},
                        {"sha256", file.sha256},
                        {"createdAt", file.createdAt},
                        {"source", file.source}});
    return list;
}

} // namespace

ExitStatus artifacts(const ArtifactsRequest& request, const Session& session) {
    const Console& console = session.console;
    const FilmWorkspaceSnapshot film = loadFilm(request.film);
    const std::vector<FilmArtifact> files = selected(film, request);
    if (console.options().json) {
        console.result(json::value(json::object{
            {"version", 1}, {"film", film.root.string()}, {"artifacts", listJSON(film, files)}}));
        return ExitStatus::success;
    }
    if (files.empty())
        console.step(nothingText(film, request));
    else if (request.paths || request.nul)
        printPaths(film, files, request.nul, console);
    else
        console.result(tableText(files, console));
    return ExitStatus::success;
}

} // namespace kinovane::tool

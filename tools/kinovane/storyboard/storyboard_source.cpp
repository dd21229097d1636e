// SPDX-License-Identifier: Apache-2.0

#include "storyboard/storyboard_source.hpp"

#include <string>
#include <system_error>
#include <utility>

#include "film/file_content.hpp"
#include "film/film_location.hpp"
#include "film/handoff_file.hpp"
#include "film/output_file.hpp"
#include "film/own_files.hpp"
#include "session/failure.hpp"
#include "storyboard/page.hpp"
#include "storyboard/storyboard.hpp"
#include "terminal/shown_text.hpp"

namespace kinovane::tool {

namespace fs = std::filesystem;

namespace {

CommandError unreadable(const fs::path& file, const std::string& reason) {
    return {ExitStatus::workspace, shownPath(fs::absolute(file).lexically_normal().string()) + ": " + reason};
}

VistrelHandoff readHandoff(const fs::path& file) {
    std::error_code error;
    const std::string text = contentOf(file, error, largestManifest);
    if (error == std::errc::file_too_large)
        throw unreadable(file, "it is too large for a handoff manifest");
    if (error)
        throw unreadable(file, error.message());
    try {
        return decodeJSON<VistrelHandoff>(text);
    } catch (const JSONDecodingError& invalid) {
        throw unreadable(file, shown(invalid.what()));
    }
}

/// The film of this project in a folder. Any other content of the folder is ignored.
std::optional<FilmWorkspaceSnapshot> filmOf(const std::string& projectId, const fs::path& folder) {
    try {
        FilmWorkspaceSnapshot film = FilmProjectLoader::load(folder / FilmWorkspaceDocument::runManifest);
        if (film.project.projectId == projectId)
            return film;
    } catch (const FilmProjectError&) { // NOLINT(bugprone-empty-catch): the manifest does without the film
    }
    return std::nullopt;
}

constexpr OutputKind pageKind{"storyboard", "storyboard page", "storyboard.html", isStoryboardPage};

/// The film with the handoff manifest and the files that only the handoff records, so that they count as the
/// film's own files.
std::optional<FilmWorkspaceSnapshot> withHandedOverFiles(const StoryboardSource& source) {
    std::optional<FilmWorkspaceSnapshot> film = source.film;
    if (!film)
        return film;
    if (source.handoff)
        for (FilmArtifact& artifact : artifactsOf(*source.handoff))
            film->project.artifacts.push_back(std::move(artifact));
    film->project.artifacts.emplace_back().path = manifestName;
    return film;
}

} // namespace

StoryboardSource loadStoryboardSource(const fs::path& location) {
    StoryboardSource source;
    std::error_code error;
    if (!fs::is_regular_file(location, error) || location.filename() == FilmWorkspaceDocument::runManifest) {
        source.film = loadFilm(location);
        return source;
    }
    source.manifest = fs::absolute(location);
    source.handoff = readHandoff(location);
    const std::string& projectId = source.handoff->source.projectId;
    source.film = filmOf(projectId, source.manifest.parent_path());
    const std::string& recorded = source.handoff->source.projectRoot;
    if (!source.film && recorded.starts_with('/') && recorded.find('\0') == std::string::npos)
        source.film = filmOf(projectId, recorded);
    return source;
}

fs::path pageTarget(const StoryboardSource& source, const fs::path& output, bool force) {
    fs::path target = outputPath(output, pageKind);
    if (source.handoff && isSameFile(source.manifest, target))
        throw UsageError("--output would replace the manifest: " + shownPath(target.string()));
    const std::optional<FilmWorkspaceSnapshot> film = withHandedOverFiles(source);
    requireReplaceable(target, "--output", film ? &*film : nullptr, force, pageKind);
    requireWritable(target, folderOf(target), "page");
    return target;
}

} // namespace kinovane::tool

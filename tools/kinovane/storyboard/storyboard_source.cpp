// SPDX-License-Identifier: Apache-2.0

#include "storyboard/storyboard_source.hpp"

#include <cerrno>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <string>
#include <system_error>

#include <unistd.h>

#include "film/film_location.hpp"
#include "film/own_files.hpp"
#include "session/failure.hpp"
#include "storyboard/storyboard.hpp"
#include "terminal/shown_text.hpp"

namespace kinovane::tool {

namespace fs = std::filesystem;

namespace {

constexpr std::uintmax_t largestManifest = std::uintmax_t{256} << 20U; // The importer reads no larger one.
constexpr const char* manifestName = "vistrel-handoff.json";

CommandError unreadable(const fs::path& file, const std::string& reason) {
    return {ExitStatus::workspace, shownPath(fs::absolute(file).lexically_normal().string()) + ": " + reason};
}

VistrelHandoff readHandoff(const fs::path& file) {
    std::error_code error;
    if (fs::file_size(file, error) > largestManifest && !error)
        throw unreadable(file, "it is too large for a handoff manifest");
    errno = 0;
    std::ifstream stream(file, std::ios::binary);
    if (!stream)
        throw unreadable(file, std::generic_category().message(errno));
    const std::string text{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
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

void requireReplaceable(const StoryboardSource& source, const fs::path& output) {
    const std::string shownOutput = shownPath(fs::absolute(output).string());
    if (source.handoff && isSameFile(source.manifest, output))
        throw UsageError("--output would replace the manifest: " + shownOutput);
    if (source.film) {
        FilmWorkspaceSnapshot film = *source.film;
        if (source.handoff)
            for (FilmArtifact& artifact : artifactsOf(*source.handoff))
                film.project.artifacts.push_back(std::move(artifact));
        if (isOwnFile(film, output) || isSameFile(film.root / manifestName, output))
            throw UsageError("--output would replace one of the film's own files: " + shownOutput);
    }
    std::error_code error;
    const bool isFolder = !output.has_filename() || fs::is_directory(output, error);
    if (isFolder)
        throw UsageError("--output is a folder: " + shownOutput + "\nNext: --output " +
                         shownPath((output / "storyboard.html").string()));
    const fs::path folder = fs::absolute(output).parent_path();
    if (!fs::exists(folder, error))
        throw CommandError(ExitStatus::fileSystem,
                           "the folder of the page does not exist: " + shownPath(folder.string()) +
                               "\nNext: mkdir -p " + shownPath(folder.string()));
    if (::access(folder.c_str(), W_OK) != 0)
        throw fs::filesystem_error("cannot write", folder, std::error_code(errno, std::generic_category()));
}

} // namespace kinovane::tool

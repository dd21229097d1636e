// SPDX-License-Identifier: Apache-2.0

#include "film/film_location.hpp"

#include <charconv>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <variant>

#include <boost/json/parse.hpp>
#include <boost/json/value.hpp>

#include <kinovane/user_message.hpp>

#include "film/file_content.hpp"
#include "session/failure.hpp"
#include "terminal/shown_text.hpp"

namespace kinovane::tool {

namespace fs = std::filesystem;

namespace {

/// The number N of the first "artifacts[N]" in the text.
std::optional<std::size_t> artifactNumber(std::string_view text) {
    constexpr std::string_view list = "artifacts[";
    const std::size_t found = text.find(list);
    if (found == std::string_view::npos)
        return std::nullopt;
    text.remove_prefix(found + list.size());
    std::size_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() ? std::optional(number) : std::nullopt;
}

/// The path that the project document records for an artifact. The document has been refused by the loader,
/// so nothing else in it is relied on.
std::optional<std::string> recordedPath(const fs::path& project, std::size_t artifact) {
    std::error_code ignored; // An empty text is no document.
    boost::system::error_code error;
    const boost::json::value document = boost::json::parse(contentOf(project, ignored), error);
    const boost::json::value* path =
        error ? nullptr : document.find_pointer("/artifacts/" + std::to_string(artifact) + "/path", error);
    return path != nullptr && path->is_string() ? std::optional(std::string(path->get_string()))
                                                : std::nullopt;
}

/// "/films/ferry/film-project.json: artifacts[3].bytes is missing (clips/shot-03.mp4)".
std::string describe(const FilmProjectError& error, const fs::path& folder) {
    if (const auto* unsupported = std::get_if<FilmProjectError::unsupportedContract>(&error.value()))
        return shownPath((folder / FilmWorkspaceDocument::project).string()) + ": its contract is \"" +
               shown(unsupported->identifier) + "\", which this version of kinovane cannot read";
    const auto* invalid = std::get_if<FilmProjectError::invalidProject>(&error.value());
    if (invalid == nullptr)
        return shown(userMessage(error));
    std::string text = shownPath((folder / "").string()) + shown(invalid->description);
    if (!invalid->description.starts_with(FilmWorkspaceDocument::project))
        return text;
    if (const std::optional<std::size_t> number = artifactNumber(invalid->description))
        if (const std::optional<std::string> path =
                recordedPath(folder / FilmWorkspaceDocument::project, *number))
            text += " (" + shownPath(*path) + ")";
    return text;
}

} // namespace

fs::path runManifestAt(const fs::path& film) {
    std::error_code ignored; // The loader reports the error.
    // A folder named "run.json" is treated as the manifest itself, as in the loader.
    if (film.filename() != FilmWorkspaceDocument::runManifest && fs::is_directory(film, ignored))
        return film / FilmWorkspaceDocument::runManifest;
    return film;
}

FilmWorkspaceSnapshot loadFilm(const fs::path& film) {
    const fs::path runManifest = runManifestAt(film);
    try {
        return FilmProjectLoader::load(runManifest);
    } catch (const FilmProjectError& error) {
        std::error_code ignored;
        const fs::path absolute = fs::absolute(runManifest, ignored).lexically_normal();
        throw CommandError(ExitStatus::workspace, describe(error, absolute.parent_path()));
    }
}

} // namespace kinovane::tool

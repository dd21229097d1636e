// SPDX-License-Identifier: Apache-2.0

#include "film/unrecorded_files.hpp"

#include <set>
#include <string_view>
#include <system_error>
#include <utility>

#include <sys/stat.h>

#include "film/film_tree.hpp"
#include "terminal/shown_text.hpp"

namespace kinovane::tool {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view handoffManifest = "vistrel-handoff.json";

using Inode = std::pair<dev_t, ino_t>;

/// What the project records: paths below the film's folder, and what they lead to.
struct RecordedFiles {
    explicit RecordedFiles(const FilmWorkspaceSnapshot& film)
        : paths{film.runManifest.filename().string(), std::string(FilmWorkspaceDocument::project),
                std::string(FilmWorkspaceDocument::productionPlan),
                std::string(FilmWorkspaceDocument::treatment), std::string(handoffManifest)} {
        for (const FilmArtifact& artifact : film.project.artifacts) {
            paths.insert(fs::path(artifact.path).lexically_normal().string());
            struct stat status{};
            if (artifact.path.find('\0') == std::string::npos &&
                ::stat(film.artifactURL(artifact).c_str(), &status) == 0)
                inodes.insert({status.st_dev, status.st_ino});
        }
    }

    bool contain(const TreeEntry& entry) const {
        return paths.contains(entry.path.string()) ||
               inodes.contains({entry.status.st_dev, entry.status.st_ino});
    }

    std::set<std::string> paths;
    std::set<Inode> inodes;
};

std::string remarkOn(const TreeEntry& entry, const fs::path& root) {
    if (entry.failure)
        return "a folder that cannot be listed: " + shown(entry.failure.message());
    if (entry.isLink()) {
        std::error_code ignored;
        return "a link to " + shownPath(fs::read_symlink(root / entry.path, ignored).string());
    }
    return S_ISFIFO(entry.status.st_mode)   ? "a named pipe"
           : S_ISSOCK(entry.status.st_mode) ? "a socket"
                                            : "a device";
}

} // namespace

std::vector<UnrecordedFile> unrecordedFiles(const FilmWorkspaceSnapshot& film) {
    const RecordedFiles recorded(film);
    std::vector<UnrecordedFile> files;
    for (const TreeEntry& entry : treeBelow(film.root))
        if (entry.failure)
            files.push_back({(entry.path / "").string(), std::nullopt, remarkOn(entry, film.root)});
        else if (entry.isFolder() || recorded.contain(entry))
            continue;
        else if (entry.isFile())
            files.push_back({entry.path.string(), static_cast<std::uint64_t>(entry.status.st_size), ""});
        else
            files.push_back({entry.path.string(), std::nullopt, remarkOn(entry, film.root)});
    return files;
}

} // namespace kinovane::tool

// SPDX-License-Identifier: Apache-2.0

#include "film/own_files.hpp"

#include <algorithm>
#include <optional>
#include <string>
#include <system_error>
#include <utility>

#include <sys/stat.h>

namespace kinovane::tool {

namespace fs = std::filesystem;

namespace {

/// As many as Linux follows.
constexpr int mostLinks = 40;

/// What identifies a file: its device and inode if it exists, otherwise its resolved path.
class FileIdentity {
  public:
    explicit FileIdentity(const fs::path& path) {
        struct stat status{};
        if (path.native().find('\0') == std::string::npos && ::stat(path.c_str(), &status) == 0)
            inode_ = {status.st_dev, status.st_ino};
        else
            location_ = resolved(path);
    }

    bool operator==(const FileIdentity&) const = default;

  private:
    /// Follows a last component that is a link to nothing as well, because a file is created through it.
    static fs::path resolved(fs::path path) {
        std::error_code error;
        for (int links = 0; links < mostLinks; ++links) {
            const fs::path target = fs::read_symlink(path, error);
            if (error)
                break;
            path = path.parent_path() / target;
        }
        const fs::path absolute = fs::absolute(path, error);
        const fs::path location = fs::weakly_canonical(absolute, error);
        return error ? absolute.lexically_normal() : location;
    }

    std::optional<std::pair<dev_t, ino_t>> inode_;
    fs::path location_;
};

} // namespace

bool isSameFile(const fs::path& left, const fs::path& right) {
    return FileIdentity(left) == FileIdentity(right);
}

bool isOwnFile(const FilmWorkspaceSnapshot& film, const fs::path& path) {
    const FileIdentity file(path);
    if (file == FileIdentity(film.runManifest))
        return true;
    for (const std::string_view document :
         {FilmWorkspaceDocument::project, FilmWorkspaceDocument::productionPlan,
          FilmWorkspaceDocument::treatment})
        if (file == FileIdentity(film.root / document))
            return true;
    return std::ranges::any_of(film.project.artifacts, [&](const FilmArtifact& artifact) {
        return file == FileIdentity(film.artifactURL(artifact));
    });
}

} // namespace kinovane::tool

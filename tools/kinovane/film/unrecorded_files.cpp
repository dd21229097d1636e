// SPDX-License-Identifier: Apache-2.0

#include "film/unrecorded_files.hpp"

#include <algorithm>
#include <set>
#include <string_view>
#include <system_error>
#include <utility>

#include <sys/stat.h>

#include "terminal/shown_text.hpp"

namespace kinovane::tool {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view handoffManifest = "vistrel-handoff.json";

using Inode = std::pair<dev_t, ino_t>;

class Search {
  public:
    explicit Search(const FilmWorkspaceSnapshot& film) : root_(film.root) {
        known_ = {film.runManifest.filename().string(), std::string(FilmWorkspaceDocument::project),
                  std::string(FilmWorkspaceDocument::productionPlan),
                  std::string(FilmWorkspaceDocument::treatment), std::string(handoffManifest)};
        for (const FilmArtifact& artifact : film.project.artifacts) {
            known_.insert(fs::path(artifact.path).lexically_normal().string());
            struct stat status{};
            if (artifact.path.find('\0') == std::string::npos &&
                ::stat(film.artifactURL(artifact).c_str(), &status) == 0)
                inodes_.insert({status.st_dev, status.st_ino});
        }
    }

    std::vector<UnrecordedFile> files() {
        std::vector<fs::path> folders{fs::path()};
        while (!folders.empty()) {
            const fs::path folder = std::move(folders.back());
            folders.pop_back();
            list(folder, folders);
        }
        std::ranges::sort(found_, {}, &UnrecordedFile::path);
        return std::move(found_);
    }

  private:
    void list(const fs::path& folder, std::vector<fs::path>& folders) {
        std::error_code error;
        fs::directory_iterator entry(root_ / folder, error);
        for (; !error && entry != fs::directory_iterator(); entry.increment(error))
            examine(folder / entry->path().filename(), folders);
        if (error)
            found_.push_back({(folder / "").string(), std::nullopt,
                              "a folder that cannot be listed: " + shown(error.message())});
    }

    void examine(const fs::path& path, std::vector<fs::path>& folders) {
        struct stat status{};
        if (::lstat((root_ / path).c_str(), &status) != 0)
            return; // It was removed meanwhile.
        if (S_ISDIR(status.st_mode))
            folders.push_back(path);
        else if (!known_.contains(path.string()) && !inodes_.contains({status.st_dev, status.st_ino}))
            found_.push_back(described(path, status));
    }

    UnrecordedFile described(const fs::path& path, const struct stat& status) const {
        if (S_ISREG(status.st_mode))
            return {path.string(), static_cast<std::uint64_t>(status.st_size), ""};
        if (!S_ISLNK(status.st_mode))
            return {path.string(), std::nullopt,
                    S_ISFIFO(status.st_mode)   ? "a named pipe"
                    : S_ISSOCK(status.st_mode) ? "a socket"
                                               : "a device"};
        std::error_code ignored;
        return {path.string(), std::nullopt,
                "a link to " + shownPath(fs::read_symlink(root_ / path, ignored).string())};
    }

    const fs::path& root_;
    std::set<std::string> known_; ///< Paths relative to the root.
    std::set<Inode> inodes_;      ///< Of the recorded files.
    std::vector<UnrecordedFile> found_;
};

} // namespace

std::vector<UnrecordedFile> unrecordedFiles(const FilmWorkspaceSnapshot& film) {
    return Search(film).files();
}

} // namespace kinovane::tool

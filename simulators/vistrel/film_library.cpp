// SPDX-License-Identifier: Apache-2.0

#include "film_library.hpp"

#include <cstdlib>

#include "common/refusal.hpp"
#include "storyboard.hpp"

namespace simulator::vistrel {
namespace {

namespace fs = std::filesystem;

/// The folders of one project. The names that begin with a dot exist only during an import or after one that
/// was stopped; the lock ensures that nobody else uses them.
struct ProjectPaths {
    fs::path project, fresh, replaced, lock;

    ProjectPaths(const fs::path& library, const std::string& projectId)
        : project(library / projectId), fresh(library / ("." + projectId + ".fresh")),
          replaced(library / ("." + projectId + ".replaced")), lock(library / ("." + projectId + ".lock")) {}
};

/// Removes the folder at the end of the import, also after a failure.
class Cleanup {
  public:
    explicit Cleanup(fs::path folder) : folder_(std::move(folder)) {}
    Cleanup(const Cleanup&) = delete;
    Cleanup& operator=(const Cleanup&) = delete;
    ~Cleanup() {
        std::error_code ignored; // the next import of the film removes what remains
        fs::remove_all(folder_, ignored);
    }

  private:
    fs::path folder_;
};

void moveTo(const fs::path& from, const fs::path& to) {
    std::error_code error;
    fs::rename(from, to, error);
    if (error)
        refuseForSystem("put the project in its place", to, error);
}

/// Undoes what a stopped import left.
void tidyUp(const ProjectPaths& paths) {
    if (!fs::exists(paths.project) && fs::exists(paths.replaced))
        moveTo(paths.replaced, paths.project);
    fs::remove_all(paths.replaced);
    fs::remove_all(paths.fresh);
}

void build(const fs::path& folder, const json::object& manifest, std::string_view manifestText,
           AssetFiles& files) {
    fs::create_directory(folder);
    for (const json::value& asset : listOf(manifest, "assets"))
        files.copy(asRecord(asset), folder / storedPath(asRecord(asset)));
    writeWholeFile(folder / "manifest.json", manifestText);
    writeWholeFile(folder / "storyboard.json", pretty(storyboardOf(manifest)));
}

void publish(const ProjectPaths& paths) {
    if (!fs::exists(paths.project)) {
        moveTo(paths.fresh, paths.project);
        return;
    }
    if (!fs::is_directory(fs::symlink_status(paths.project)))
        throw Refusal(jsonQuoted(paths.project.native()) + " is in the way: it is not a project folder");
    // After a stop between the two calls, the next import restores the project.
    moveTo(paths.project, paths.replaced);
    moveTo(paths.fresh, paths.project);
    fs::remove_all(paths.replaced);
}

} // namespace

FilmLibrary FilmLibrary::fromEnvironment() {
    const char* folder = std::getenv("VISTREL_LIBRARY");
    if (folder == nullptr || *folder == '\0')
        throw Refusal("VISTREL_LIBRARY is not set: it names the folder that films are imported into");
    if (*folder != '/')
        throw Refusal("VISTREL_LIBRARY: " + jsonQuoted(folder) + " is not an absolute path");
    return FilmLibrary(folder);
}

void FilmLibrary::import(const json::object& manifest, std::string_view manifestText,
                         AssetFiles& files) const {
    fs::create_directories(folder_);
    const ProjectPaths paths(fs::canonical(folder_), projectIdFor(manifest));
    if (files.root() == paths.project || isInside(files.root(), paths.project)) {
        throw Refusal("source.projectRoot: " + jsonQuoted(files.root().native()) +
                      " is the film's own folder in the library, which an import replaces");
    }
    File lock = File::create(paths.lock);
    lock.lock();
    tidyUp(paths);
    const Cleanup cleanup(paths.fresh);
    build(paths.fresh, manifest, manifestText, files);
    publish(paths);
}

} // namespace simulator::vistrel

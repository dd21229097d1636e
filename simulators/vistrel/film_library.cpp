// SPDX-License-Identifier: Apache-2.0

#include "film_library.hpp"

#include <cerrno>
#include <cstdlib>

#include <fcntl.h>
#include <stdio.h> // renameat2 and renamex_np

#include "common/json_text.hpp"
#include "common/refusal.hpp"
#include "receipt.hpp"
#include "storyboard.hpp"

namespace vistrel {
namespace {

using simulator::File;
using simulator::jsonQuoted;
using simulator::lastSystemError;
using simulator::Refusal;
using simulator::refuseForSystem;
using simulator::writeWholeFile;

namespace fs = std::filesystem;

/// The three folders of one project. The names beginning with a dot are only there during an import, or after
/// one that was stopped; the lock makes sure that nobody else is using them.
struct Places {
    fs::path project, fresh, replaced, lock;

    Places(const fs::path& library, const std::string& projectId)
        : project(library / projectId), fresh(library / ("." + projectId + ".fresh")),
          replaced(library / ("." + projectId + ".replaced")), lock(library / ("." + projectId + ".lock")) {}
};

/// Removes the folder when the import ends, whichever way it ends.
class Cleanup {
  public:
    explicit Cleanup(fs::path folder) : folder_(std::move(folder)) {}
    Cleanup(const Cleanup&) = delete;
    Cleanup& operator=(const Cleanup&) = delete;
    ~Cleanup() {
        std::error_code ignored; // what stays behind is removed by the next import of the film
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

/// Lets two folders change their names in one step; false where the file system cannot do that.
bool swapNames(const fs::path& one, const fs::path& other) {
#if defined(__APPLE__)
    const int result = ::renamex_np(one.c_str(), other.c_str(), RENAME_SWAP);
#elif defined(RENAME_EXCHANGE)
    const int result = ::renameat2(AT_FDCWD, one.c_str(), AT_FDCWD, other.c_str(), RENAME_EXCHANGE);
#else
    const int result = -1;
    errno = ENOSYS;
#endif
    if (result != 0 && errno != EINVAL && errno != ENOSYS && errno != ENOTSUP)
        refuseForSystem("put the project in its place", other, lastSystemError());
    return result == 0;
}

/// Undoes what a stopped import left behind.
void tidyUp(const Places& places) {
    if (!fs::exists(places.project) && fs::exists(places.replaced))
        moveTo(places.replaced, places.project);
    fs::remove_all(places.replaced);
    fs::remove_all(places.fresh);
}

void putInPlace(const Places& places) {
    if (!fs::exists(places.project)) {
        moveTo(places.fresh, places.project);
        return;
    }
    if (!fs::is_directory(fs::symlink_status(places.project)))
        throw Refusal(jsonQuoted(places.project.native()) + " is in the way: it is not a project folder");
    if (swapNames(places.fresh, places.project))
        return; // the earlier import now carries the name of the fresh folder and goes with it
    // Between the two steps the project is missing, never half there; tidyUp brings it back.
    moveTo(places.project, places.replaced);
    moveTo(places.fresh, places.project);
    fs::remove_all(places.replaced);
}

void build(const fs::path& folder, const Manifest& manifest, std::string_view manifestText,
           AssetFiles& files) {
    fs::create_directory(folder);
    for (const Asset& asset : manifest.assets)
        files.copy(asset, folder / storedPath(asset));
    writeWholeFile(folder / "manifest.json", manifestText);
    writeWholeFile(folder / "storyboard.json", storyboardOf(manifest));
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

void FilmLibrary::import(const Manifest& manifest, std::string_view manifestText, AssetFiles& files) const {
    fs::create_directories(folder_);
    const fs::path library = fs::canonical(folder_);
    const Places places(library, projectIdFor(manifest));
    if (files.root() == places.project || isInside(files.root(), places.project)) {
        throw Refusal("source.projectRoot: " + jsonQuoted(files.root().native()) +
                      " is the film's own place in the library, which an import replaces");
    }
    File lock = File::create(places.lock);
    lock.lock();
    tidyUp(places);
    const Cleanup cleanup(places.fresh);
    build(places.fresh, manifest, manifestText, files);
    putInPlace(places);
}

} // namespace vistrel

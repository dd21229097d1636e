// SPDX-License-Identifier: Apache-2.0

// Folders, files and links are exchanged while the way to a file leads through them.

#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "races/exchange.hpp"
#include "support/besieged_film.hpp"

namespace kinovane::test {
namespace {

namespace fs = std::filesystem;

struct ExchangeRow {
    const char* sentence;
    std::string path; ///< Of the artifact.
    void (*prepare)(const TemporaryDirectory& area);
    std::string one; ///< Lies on the way, and leads to the file inside.
    std::string other;
    bool isRefused = true; ///< Whether the other one leads out when it lies there.
};

/// A folder whose link "up" climbs to the file in the folder two above, wherever the folder itself lies.
void makeClimbing(const TemporaryDirectory& area, const std::string& folder) {
    fs::create_directories(area / (folder + "/q"));
    fs::create_symlink("../../secret.bin", area / (folder + "/q/up"));
}

void prepareMove(const TemporaryDirectory& area) {
    area.write("film/secret.bin", "inside");
    makeClimbing(area, "film/p");
    makeClimbing(area, "outside/p");
}

/// A folder in which a link climbs so far that the folders in between are not kept open: out of the folder,
/// to a file beside it.
void makeFarClimbing(const TemporaryDirectory& area, const std::string& folder) {
    const std::string depth = "/d/d/d/d/d/d/d/d/d/d/d/d/d/d/d/d/d/d/d/d";
    fs::create_directories(area / (folder + depth));
    fs::create_symlink("../../../../../../../../../../../../../../../../../../../../../secret.bin",
                       area / (folder + depth + "/up"));
}

void prepareFarMove(const TemporaryDirectory& area) {
    area.write("film/m/secret.bin", "inside");
    makeFarClimbing(area, "film/m/p");
    makeFarClimbing(area, "outside/p");
}

void makeWayOutAndIn(const TemporaryDirectory& area) {
    fs::create_symlink("../outside", area / "film/way");
    fs::create_symlink("../outside", area / "film/out");
}

const ExchangeRow rows[] = {
    {"a folder and a link that leads out", "sub/secret.bin",
     [](const TemporaryDirectory& area) { fs::create_symlink("../outside", area / "film/out"); }, "film/sub",
     "film/out"},
    {"a folder far above the file", "a/b/c/d/e/secret.bin",
     [](const TemporaryDirectory& area) {
         area.write("film/a/b/c/d/e/secret.bin", "inside");
         area.write("outside/b/c/d/e/secret.bin", "outside");
         fs::create_symlink("../outside", area / "film/out");
     },
     "film/a", "film/out"},
    {"a file and a link to the secret", "sub/secret.bin",
     [](const TemporaryDirectory& area) {
         fs::create_symlink("../../outside/secret.bin", area / "film/sub/out");
     },
     "film/sub/secret.bin", "film/sub/out"},
    {"a folder above and another one, in which the way goes on outside", "p/q/secret.bin",
     [](const TemporaryDirectory& area) {
         area.write("film/p/q/secret.bin", "inside");
         fs::create_directory(area / "film/other");
         fs::create_symlink("../../outside", area / "film/other/q");
     },
     "film/p", "film/other"},
    {"the last of three links", "one",
     [](const TemporaryDirectory& area) {
         fs::create_symlink("sub/two", area / "film/one");
         fs::create_symlink("../three", area / "film/sub/two");
         fs::create_symlink("inside.bin", area / "film/three");
         fs::create_symlink("../outside/secret.bin", area / "film/out");
     },
     "film/three", "film/out"},
    {"two absolute links", "l/secret.bin",
     [](const TemporaryDirectory& area) {
         fs::create_symlink(area / "film/sub", area / "film/l");
         fs::create_symlink(area / "outside", area / "film/out");
     },
     "film/l", "film/out"},
    {"a folder, behind a link that leads out and back in", "way/back/sub/secret.bin", makeWayOutAndIn,
     "film/sub", "film/out"},
    {"a file, behind a link that leads out and back in", "way/back/sub/secret.bin",
     [](const TemporaryDirectory& area) {
         makeWayOutAndIn(area);
         fs::create_symlink("../../outside/secret.bin", area / "film/sub/out");
     },
     "film/sub/secret.bin", "film/sub/out"},
    // At every moment the link leads to the file inside; only who stands in the folder when it is moved can
    // climb out of it at the wrong place.
    {"a folder that moves out of the film under a link that climbs", "p/q/up", prepareMove, "film/p",
     "outside/p", false},
    {"such a folder, behind a link that leads out and back in", "way/back/p/q/up",
     [](const TemporaryDirectory& area) {
         makeWayOutAndIn(area);
         prepareMove(area);
     },
     "film/p", "outside/p", false},
    {"a folder that moves out under a link that climbs far", "m/p/d/d/d/d/d/d/d/d/d/d/d/d/d/d/d/d/d/d/d/d/up",
     prepareFarMove, "film/m/p", "outside/p", false},
    {"such a folder, behind a link that leads out and back in",
     "way/back/m/p/d/d/d/d/d/d/d/d/d/d/d/d/d/d/d/d/d/d/d/d/up",
     [](const TemporaryDirectory& area) {
         makeWayOutAndIn(area);
         prepareFarMove(area);
     },
     "film/m/p", "outside/p", false},
};

TEST(FolderRace, NothingOutsideIsRead) {
    for (const ExchangeRow& row : rows) {
        SCOPED_TRACE(row.sentence);
        const BesiegedFilm film(row.path);
        row.prepare(film.area);
        const fs::path one = film.area / row.one;
        const fs::path other = film.area / row.other;
        film.besiege([&](std::size_t /*turn*/) { exchange(one, other); }, row.isRefused);
    }
}

} // namespace
} // namespace kinovane::test

// SPDX-License-Identifier: Apache-2.0

// Directories, files and links on the path of an artifact are exchanged while it is verified.

#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "races/exchange.hpp"
#include "support/path_race.hpp"

namespace kinovane::test {
namespace {

namespace fs = std::filesystem;

struct ExchangeRow {
    const char* sentence;
    std::string path; ///< Of the artifact.
    void (*prepare)(const TemporaryDirectory& area);
    std::string one;          ///< On the path of the artifact; leads to the file inside.
    std::string other;        ///< Exchanged with `one`.
    bool leadsOutside = true; ///< Whether the path leads outside after the exchange.
};

/// Makes a directory whose link "q/up" leads to the file beside the directory, wherever that is moved.
void makeParentLink(const TemporaryDirectory& area, const std::string& folder) {
    fs::create_directories(area / (folder + "/q"));
    fs::create_symlink("../../secret.bin", area / (folder + "/q/up"));
}

void prepareMove(const TemporaryDirectory& area) {
    area.write("film/secret.bin", "inside");
    makeParentLink(area, "film/p");
    makeParentLink(area, "outside/p");
}

/// The same with so many directories in between that they are not all kept open.
void makeDistantParentLink(const TemporaryDirectory& area, const std::string& folder) {
    const std::string depth = "/d/d/d/d/d/d/d/d/d/d/d/d/d/d/d/d/d/d/d/d";
    fs::create_directories(area / (folder + depth));
    fs::create_symlink("../../../../../../../../../../../../../../../../../../../../../secret.bin",
                       area / (folder + depth + "/up"));
}

void prepareDistantMove(const TemporaryDirectory& area) {
    area.write("film/m/secret.bin", "inside");
    makeDistantParentLink(area, "film/m/p");
    makeDistantParentLink(area, "outside/p");
}

void makeLinksOut(const TemporaryDirectory& area) {
    fs::create_symlink("../outside", area / "film/via");
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
    {"a folder above and another one that holds a link that leads out", "p/q/secret.bin",
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
    {"a folder, behind a link that leads out and back in", "via/back/sub/secret.bin", makeLinksOut,
     "film/sub", "film/out"},
    {"a file, behind a link that leads out and back in", "via/back/sub/secret.bin",
     [](const TemporaryDirectory& area) {
         makeLinksOut(area);
         fs::create_symlink("../../outside/secret.bin", area / "film/sub/out");
     },
     "film/sub/secret.bin", "film/sub/out"},
    // The link leads to the file inside at every moment. Only a resolution that has entered the folder before
    // it is moved could resolve ".." to a folder outside.
    {"a folder that moves out of the film and holds a link with \"..\"", "p/q/up", prepareMove, "film/p",
     "outside/p", false},
    {"such a folder, behind a link that leads out and back in", "via/back/p/q/up",
     [](const TemporaryDirectory& area) {
         makeLinksOut(area);
         prepareMove(area);
     },
     "film/p", "outside/p", false},
    {"a folder that moves out and holds a link with many \"..\"",
     "m/p/d/d/d/d/d/d/d/d/d/d/d/d/d/d/d/d/d/d/d/d/up", prepareDistantMove, "film/m/p", "outside/p", false},
    {"such a folder, behind a link that leads out and back in",
     "via/back/m/p/d/d/d/d/d/d/d/d/d/d/d/d/d/d/d/d/d/d/d/d/up",
     [](const TemporaryDirectory& area) {
         makeLinksOut(area);
         prepareDistantMove(area);
     },
     "film/m/p", "outside/p", false},
};

TEST(FolderRace, AcceptsNoFileOutside) {
    for (const ExchangeRow& row : rows) {
        SCOPED_TRACE(row.sentence);
        const PathRace race(row.path);
        row.prepare(race.area);
        const fs::path one = race.area / row.one;
        const fs::path other = race.area / row.other;
        race.run([&](std::size_t /*turn*/) { exchange(one, other); }, row.leadsOutside);
    }
}

} // namespace
} // namespace kinovane::test

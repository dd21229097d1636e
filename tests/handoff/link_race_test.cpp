// SPDX-License-Identifier: Apache-2.0

#include <filesystem>
#include <functional>

#include <gtest/gtest.h>

#include "support/besieged_film.hpp"

namespace kinovane::test {
namespace {

namespace fs = std::filesystem;

/// Replaces what lies at a place again and again; the place is never empty. `prepare` makes, under the given
/// name, what is to be put there; it is told which of the two is wanted.
void besiege(const BesiegedFilm& film, const fs::path& name,
             const std::function<void(const fs::path&, bool outside)>& prepare) {
    const fs::path place = film.area / name.string();
    const fs::path next = film.area / (name.string() + ".next");
    prepare(place, false);
    const BesiegedFilm::Tally tally = film.besiege([&](std::size_t turn) {
        prepare(next, turn % 2 == 0);
        fs::rename(next, place);
    });
    testing::Test::RecordProperty("unsafe", tally.unsafe);
    testing::Test::RecordProperty("inside", tally.inside);
    testing::Test::RecordProperty("other", tally.other);
}

TEST(LinkRace, ALinkToAFile) {
    besiege(BesiegedFilm("l"), "film/l", [](const fs::path& name, bool outside) {
        fs::create_symlink(outside ? "../outside/secret.bin" : "inside.bin", name);
    });
}

TEST(LinkRace, ALinkToAFolder) {
    besiege(BesiegedFilm("l/secret.bin"), "film/l", [](const fs::path& name, bool outside) {
        fs::create_symlink(outside ? "../outside" : "sub", name);
    });
}

TEST(LinkRace, AFileThatBecomesALink) {
    besiege(BesiegedFilm("l"), "film/l", [](const fs::path& name, bool outside) {
        if (outside)
            fs::create_symlink("../outside/secret.bin", name);
        else
            fs::copy_file(name.parent_path() / "inside.bin", name);
    });
}

TEST(LinkRace, ALinkBehindOneThatLeadsOutAndBackIn) {
    const BesiegedFilm film("way/back/l");
    fs::create_symlink("../outside", film.area / "film/way");
    besiege(film, "film/l", [](const fs::path& name, bool outside) {
        fs::create_symlink(outside ? "../outside/secret.bin" : "inside.bin", name);
    });
}

TEST(LinkRace, AFolderBehindALinkThatLeadsOutAndBackIn) {
    const BesiegedFilm film("way/back/l/secret.bin");
    fs::create_symlink("../outside", film.area / "film/way");
    besiege(film, "film/l", [](const fs::path& name, bool outside) {
        fs::create_symlink(outside ? "../outside" : "sub", name);
    });
}

} // namespace
} // namespace kinovane::test

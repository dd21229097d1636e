// SPDX-License-Identifier: Apache-2.0

// A link on the path of an artifact is replaced again and again while the artifact is verified.

#include <filesystem>
#include <functional>

#include <gtest/gtest.h>

#include "support/path_race.hpp"

namespace kinovane::test {
namespace {

namespace fs = std::filesystem;

/// Replaces `entry` by renaming, so that it always exists. `make` creates the replacement under the given
/// name; it leads out of the project or not, in turn.
void replaceDuring(const PathRace& race, const fs::path& entry,
                   const std::function<void(const fs::path& name, bool leadsOutside)>& make) {
    const fs::path location = race.area / entry.string();
    const fs::path replacement = race.area / (entry.string() + ".next");
    make(location, false);
    const PathRace::Counts counts = race.run([&](std::size_t turn) {
        make(replacement, turn % 2 == 0);
        fs::rename(replacement, location);
    });
    testing::Test::RecordProperty("unsafe", counts.unsafe);
    testing::Test::RecordProperty("inside", counts.inside);
    testing::Test::RecordProperty("other", counts.other);
}

TEST(LinkRace, AcceptsNoFileOutsideThroughALinkToAFile) {
    replaceDuring(PathRace("l"), "film/l", [](const fs::path& name, bool leadsOutside) {
        fs::create_symlink(leadsOutside ? "../outside/secret.bin" : "inside.bin", name);
    });
}

TEST(LinkRace, AcceptsNoFileOutsideThroughALinkToADirectory) {
    replaceDuring(PathRace("l/secret.bin"), "film/l", [](const fs::path& name, bool leadsOutside) {
        fs::create_symlink(leadsOutside ? "../outside" : "sub", name);
    });
}

TEST(LinkRace, AcceptsNoFileOutsideWhenAFileBecomesALink) {
    replaceDuring(PathRace("l"), "film/l", [](const fs::path& name, bool leadsOutside) {
        if (leadsOutside)
            fs::create_symlink("../outside/secret.bin", name);
        else
            fs::copy_file(name.parent_path() / "inside.bin", name);
    });
}

TEST(LinkRace, AcceptsNoFileOutsideThroughALinkAfterAPathOutAndBackIn) {
    const PathRace race("out/back/l");
    fs::create_symlink("../outside", race.area / "film/out");
    replaceDuring(race, "film/l", [](const fs::path& name, bool leadsOutside) {
        fs::create_symlink(leadsOutside ? "../outside/secret.bin" : "inside.bin", name);
    });
}

TEST(LinkRace, AcceptsNoFileOutsideThroughADirectoryAfterAPathOutAndBackIn) {
    const PathRace race("out/back/l/secret.bin");
    fs::create_symlink("../outside", race.area / "film/out");
    replaceDuring(race, "film/l", [](const fs::path& name, bool leadsOutside) {
        fs::create_symlink(leadsOutside ? "../outside" : "sub", name);
    });
}

} // namespace
} // namespace kinovane::test

// SPDX-License-Identifier: Apache-2.0

// A project that has several names, because it is mounted twice. A file system that ignores case gives a
// directory several names as well.

#include <filesystem>
#include <iostream>
#include <string>

#include <sys/mount.h>

#include <gtest/gtest.h>

#include <kinovane/handoff.hpp>

#include "handoff/containment_layouts.hpp"
#include "support/forked_process.hpp"
#include "support/mount_namespace.hpp"

namespace kinovane::test {
namespace {

namespace fs = std::filesystem;

struct NameRow {
    const char* sentence;
    std::string root;   ///< The project's directory, below the area.
    std::string target; ///< Of the link "film/l"; "AREA" stands for the path of the area.
    std::string expected;
};

const NameRow rows[] = {
    {"a file by the other name of the project", "film", "AREA/again/a.png", "accepted"},
    {"the same by a relative link", "film", "../again/a.png", "accepted"},
    {"a file by the first name, when the project is given by the other one", "again", "AREA/film/a.png",
     "accepted"},
    {"a file by another name of the parent directory", "film", "AREA/whole/film/a.png", "accepted"},
    {"back in, by two other names", "film", "AREA/whole/outside/../film/../../again/a.png", "accepted"},
    {"a missing file by the other name", "film", "AREA/again/nothing", "missing"},
    {"the project itself by its other name", "film", "AREA/again", "unsafe"},
    {"a file outside, through the other name", "film", "AREA/again/../outside/a.png", "unsafe"},
    {"a missing file outside, through the other name", "film", "AREA/again/../nothing", "unsafe"},
    {"a file outside by another name of the parent directory", "film", "AREA/whole/outside/a.png", "unsafe"},
    {"a file by another name of a directory in the project", "film", "AREA/part/a.png", "unsafe"},
    {"a file outside that is mounted in the project", "film", "mounted/a.png", "accepted"},
    {"a file outside, through the parent of a mounted directory", "film", "mounted/../../outside/a.png",
     "unsafe"},
};

bool bind(const fs::path& directory, const fs::path& name) {
    fs::create_directory(name);
    return ::mount(directory.c_str(), name.c_str(), nullptr, MS_BIND, nullptr) == 0;
}

std::string outcomeOf(const fs::path& root) {
    FilmWorkspaceSnapshot snapshot;
    snapshot.root = root;
    snapshot.project.artifacts = {{7, "image/png", "c", "poster", "l", std::string(layoutDigest), "s"}};
    const ArtifactOutcome outcome = VistrelHandoffBuilder::audit(snapshot).at(0);
    if (outcome.sound())
        return "accepted";
    if (outcome.refusal == VistrelHandoffError(VistrelHandoffError::unsafeArtifactPath{"l"}))
        return "unsafe";
    if (outcome.refusal == VistrelHandoffError(VistrelHandoffError::missingArtifact{"l"}))
        return "missing";
    return outcome.description();
}

TEST(MountedRoot, IsRecognisedByAnyOfItsNames) {
    const std::string refused = "mounting a directory is not permitted";
    for (const NameRow& row : rows) {
        SCOPED_TRACE(row.sentence);
        const LayoutFiles files;
        files.file("film/sub/a.png");
        const fs::path area = files.area.path();
        std::string target = row.target;
        if (target.starts_with("AREA"))
            target.replace(0, 4, area.native());
        files.link("film/l", target);
        const std::string outcome = inForkedProcess([&] {
            if (!unshareMounts() || !bind(area, area / "whole") || !bind(area / "film", area / "again") ||
                !bind(area / "film/sub", area / "part") || !bind(area / "outside", area / "film/mounted"))
                return refused;
            return outcomeOf(area / row.root);
        });
        if (outcome == refused) {
            // The layouts with links through parent directories cover the same code.
            RecordProperty("mounted_root", refused);
            std::cout << "[ MOUNTS   ] " << refused << std::endl;
            return;
        }
        EXPECT_EQ(outcome, row.expected);
    }
}

} // namespace
} // namespace kinovane::test

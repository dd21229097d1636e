// SPDX-License-Identifier: Apache-2.0

#include <string>
#include <vector>

#include <sys/stat.h>

#include <gtest/gtest.h>

#include <kinovane/workspace.hpp>

#include "support/ordinary_user.hpp"
#include "support/sample_film.hpp"

namespace kinovane::test {
namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;

struct LocationRow {
    const char* sentence;
    std::string path;
    std::string location;
};

TEST(FilmWorkspaceSnapshot, ResolvesARelativeArtifactPathAgainstTheRoot) {
    FilmWorkspaceSnapshot snapshot;
    snapshot.root = "/films/ferry";
    const LocationRow rows[] = {
        {"a name", "film.mp4", "/films/ferry/film.mp4"},
        {"several components", "renders/film.mp4", "/films/ferry/renders/film.mp4"},
        {"an absolute path", "/elsewhere/film.mp4", "/elsewhere/film.mp4"},
        {"the root directory of the file system", "/", "/"},
        {"a directory", "renders/", "/films/ferry/renders/"},
        {"dots stay", "../other/./film.mp4", "/films/ferry/../other/./film.mp4"},
        {"an absolute path with dots", "/a/../b", "/a/../b"},
        {"a home directory is only a name", "~/film.mp4", "/films/ferry/~/film.mp4"},
        {"odd characters", "a b/é%20?.mp4", "/films/ferry/a b/é%20?.mp4"},
        {"a NUL byte", "a\0b"s, "/films/ferry/a\0b"s},
    };
    for (const LocationRow& row : rows) {
        SCOPED_TRACE(row.sentence);
        FilmArtifact artifact;
        artifact.path = row.path;
        EXPECT_EQ(snapshot.artifactURL(artifact).native(), row.location);
    }
}

TEST(FilmWorkspaceSnapshot, FindsTheLastListedArtifactOfAKind) {
    WorkspaceMaker workspace;
    workspace.list("shot-clip", "one").createdAt = "2026-12-31";
    workspace.list("poster", "two");
    workspace.list("shot-clip", "three").createdAt = "2026-01-01";
    workspace.list("Shot-Clip", "four");
    workspace.list("shot-clip ", "five");
    const FilmWorkspaceSnapshot& snapshot = workspace.snapshot;
    EXPECT_EQ(snapshot.latestArtifact("shot-clip"), snapshot.project.artifacts[2]);
    EXPECT_EQ(snapshot.latestArtifact("poster"), snapshot.project.artifacts[1]);
    EXPECT_EQ(snapshot.latestArtifact("score"), std::nullopt);
    EXPECT_EQ(snapshot.latestArtifact(""), std::nullopt);
    EXPECT_EQ(snapshot.latestArtifact("shot"), std::nullopt);
    EXPECT_EQ(WorkspaceMaker().snapshot.latestArtifact("poster"), std::nullopt);
}

struct ListedArtifact {
    const char* kind;
    const char* path;
    bool exists;
};

struct CutRow {
    const char* sentence;
    std::vector<ListedArtifact> artifacts;
    const char* cut; ///< Relative; null when there is none.
};

TEST(FilmWorkspaceSnapshot, ChoosesTheBestCutThatExists) {
    const CutRow rows[] = {
        {"no artifacts", {}, nullptr},
        {"only other kinds", {{"shot-clip", "a", true}, {"poster", "b", true}}, nullptr},
        {"all three",
         {{"rough-cut", "r", true}, {"delivery-master", "d", true}, {"final-master", "f", true}},
         "d"},
        {"no delivery", {{"final-master", "f", true}, {"rough-cut", "r", true}}, "f"},
        {"only a rough cut", {{"rough-cut", "r", true}}, "r"},
        {"the delivery is gone", {{"rough-cut", "r", true}, {"delivery-master", "d", false}}, "r"},
        {"delivery and master are gone",
         {{"delivery-master", "d", false}, {"final-master", "f", false}, {"rough-cut", "r", true}},
         "r"},
        {"all are gone",
         {{"delivery-master", "d", false}, {"final-master", "f", false}, {"rough-cut", "r", false}},
         nullptr},
        {"an older final master is not chosen",
         {{"final-master", "old", true}, {"final-master", "new", false}},
         nullptr},
        {"a final master is preferred to an older delivery",
         {{"delivery-master", "old", true}, {"delivery-master", "new", false}, {"final-master", "f", true}},
         "f"},
        {"the later of two", {{"final-master", "old", true}, {"final-master", "new", true}}, "new"},
        {"in a directory", {{"delivery-master", "delivery/film.mp4", true}}, "delivery/film.mp4"},
    };
    for (const CutRow& row : rows) {
        SCOPED_TRACE(row.sentence);
        WorkspaceMaker workspace;
        for (const ListedArtifact& each : row.artifacts) {
            workspace.list(each.kind, each.path);
            if (each.exists)
                workspace.directory.write(each.path, "film");
        }
        const std::optional<fs::path> cut = workspace.snapshot.playableCutURL();
        ASSERT_EQ(cut.has_value(), row.cut != nullptr);
        if (cut)
            EXPECT_EQ(*cut, workspace.directory / row.cut);
    }
}

struct RootRow {
    const char* sentence;
    fs::path root;
    std::string path; ///< Of the delivery.
    std::optional<fs::path> cut;
};

TEST(FilmWorkspaceSnapshot, LooksForCutsOnlyBelowTheRoot) {
    WorkspaceMaker workspace;
    const fs::path film = workspace.directory.write("film/d.mp4", "film");
    const fs::path root = film.parent_path();
    const RootRow rows[] = {
        {"a root", root, "d.mp4", film},
        {"a relative root", ".", "d.mp4", fs::path("./d.mp4")},
        {"no root is not the working directory", "", "d.mp4", std::nullopt},
        {"no root and a directory", "", "./", std::nullopt},
        {"no root and an absolute path", "", film.native(), film},
        {"a root with a NUL byte", root.native() + "\0/other"s, "d.mp4", std::nullopt},
        {"a path with a NUL byte", root, "d.mp4\0.mov"s, std::nullopt},
        {"an absolute path with a NUL byte", root, film.native() + "\0"s, std::nullopt},
    };
    const fs::path before = fs::current_path();
    fs::current_path(root);
    for (const RootRow& row : rows) {
        SCOPED_TRACE(row.sentence);
        FilmWorkspaceSnapshot snapshot = workspace.snapshot;
        snapshot.root = row.root;
        snapshot.project.artifacts = {{4, "video/mp4", "c", "delivery-master", row.path, "none", "s"}};
        EXPECT_EQ(snapshot.playableCutURL(), row.cut);
    }
    fs::current_path(before);
}

struct PermissionRow {
    const char* sentence;
    void (*change)(const fs::path& root); ///< Changes the delivery "locked/d.mp4" or its directory.
    const char* cut;
};

TEST(FilmWorkspaceSnapshot, SkipsACutThatIsNotKnownToExist) {
    const PermissionRow rows[] = {
        {"a file that may not be read",
         [](const fs::path& root) { ASSERT_EQ(::chmod((root / "locked/d.mp4").c_str(), 0), 0); },
         "locked/d.mp4"},
        {"a directory that may be searched but not listed",
         [](const fs::path& root) { ASSERT_EQ(::chmod((root / "locked").c_str(), 0111), 0); },
         "locked/d.mp4"},
        {"a directory that may be listed but not searched",
         [](const fs::path& root) { ASSERT_EQ(::chmod((root / "locked").c_str(), 0444), 0); }, "r.mp4"},
        {"a directory without any rights",
         [](const fs::path& root) { ASSERT_EQ(::chmod((root / "locked").c_str(), 0), 0); }, "r.mp4"},
        {"a link into a directory that may not be searched",
         [](const fs::path& root) {
             fs::rename(root / "locked", root / "other");
             fs::create_symlink("other", root / "locked");
             ASSERT_EQ(::chmod((root / "other").c_str(), 0), 0);
         },
         "r.mp4"},
        {"a name that is too long",
         [](const fs::path& root) {
             fs::remove_all(root / "locked");
             fs::create_symlink(std::string(300, 'n'), root / "locked");
         },
         "r.mp4"},
    };
    for (const PermissionRow& row : rows) {
        SCOPED_TRACE(row.sentence);
        WorkspaceMaker workspace;
        workspace.add("rough-cut", "r.mp4", "film");
        workspace.add("delivery-master", "locked/d.mp4", "film");
        ASSERT_EQ(::chmod(workspace.directory.path().c_str(), 0755), 0);
        row.change(workspace.directory.path());
        EXPECT_EQ(
            asOrdinaryUser([&] { return workspace.snapshot.playableCutURL().value_or("none").string(); }),
            (workspace.directory / row.cut).string());
    }
}

TEST(FilmWorkspaceSnapshot, LooksForCutsAtEachCall) {
    WorkspaceMaker workspace;
    workspace.add("final-master", "f.mp4", "film");
    const fs::path other = workspace.directory.write("elsewhere/d.mp4", "film");
    workspace.list("delivery-master", "link.mp4");
    EXPECT_EQ(workspace.snapshot.playableCutURL(), workspace.directory / "f.mp4");
    fs::create_symlink(other, workspace.directory / "link.mp4");
    EXPECT_EQ(workspace.snapshot.playableCutURL(), workspace.directory / "link.mp4");
    fs::remove(other);
    EXPECT_EQ(workspace.snapshot.playableCutURL(), workspace.directory / "f.mp4");
    fs::remove(workspace.directory / "f.mp4");
    EXPECT_EQ(workspace.snapshot.playableCutURL(), std::nullopt);
    fs::create_directory(workspace.directory / "f.mp4");
    EXPECT_EQ(workspace.snapshot.playableCutURL(), workspace.directory / "f.mp4");
}

TEST(FilmWorkspaceSnapshot, IsEqualOnlyWhenAllMembersAre) {
    const WorkspaceMaker workspace;
    const FilmWorkspaceSnapshot& snapshot = workspace.snapshot;
    EXPECT_TRUE(snapshot == FilmWorkspaceSnapshot(snapshot));
    void (*changes[])(FilmWorkspaceSnapshot&) = {
        [](FilmWorkspaceSnapshot& other) { other.root = "/other"; },
        [](FilmWorkspaceSnapshot& other) { other.runManifest = "/other/run.json"; },
        [](FilmWorkspaceSnapshot& other) { other.project.title = "other"; },
        [](FilmWorkspaceSnapshot& other) { other.productionPlan.reset(); },
        [](FilmWorkspaceSnapshot& other) { other.treatment = FilmTreatment{}; },
    };
    for (const auto change : changes) {
        FilmWorkspaceSnapshot other = snapshot;
        change(other);
        EXPECT_FALSE(other == snapshot);
    }
}

} // namespace
} // namespace kinovane::test

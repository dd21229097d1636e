// SPDX-License-Identifier: Apache-2.0

// What a project's directory that cannot be opened means for its artifacts.

#include <filesystem>
#include <functional>
#include <string>
#include <system_error>
#include <typeinfo>
#include <vector>

#include <gtest/gtest.h>

#include <kinovane/handoff.hpp>

#include "handoff/containment_layouts.hpp"
#include "handoff/ordinary_user.hpp"
#include "support/child_counts.hpp"

namespace kinovane::test {
namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;

/// While it lives, another directory is the working directory.
class WorkingDirectory {
  public:
    explicit WorkingDirectory(const fs::path& directory) : before_(fs::current_path()) {
        fs::current_path(directory);
    }
    WorkingDirectory(const WorkingDirectory&) = delete;
    WorkingDirectory& operator=(const WorkingDirectory&) = delete;
    ~WorkingDirectory() { fs::current_path(before_); }

  private:
    fs::path before_;
};

struct RootRow {
    const char* sentence;
    std::function<void(LayoutPlace&)> make;
    std::errc code; ///< Why it cannot be opened.
};

const std::vector<RootRow>& rootRows() {
    static const std::vector<RootRow> rows{
        {"below a directory that may not be searched",
         [](LayoutPlace& place) {
             place.file("locked/film/a.png"), place.allow("locked", 0);
             place.root = place.area / "locked/film";
         },
         std::errc::permission_denied},
        {"behind a link into a directory that may not be searched",
         [](LayoutPlace& place) {
             place.file("locked/film/a.png"), place.allow("locked", 0);
             place.link("given", "locked/film"), place.root = place.area / "given";
         },
         std::errc::permission_denied},
        {"with a NUL byte, where the system would cut it",
         [](LayoutPlace& place) { place.root = (place.area / "film").native() + "\0/other"s; },
         std::errc::invalid_argument},
        {"with a NUL byte at its end",
         [](LayoutPlace& place) { place.root = (place.area / "film").native() + "\0"s; },
         std::errc::invalid_argument},
        {"a NUL byte only", [](LayoutPlace& place) { place.root = "\0"s; }, std::errc::invalid_argument},
        {"empty, which is not the working directory", [](LayoutPlace& place) { place.root = ""; },
         std::errc::invalid_argument},
    };
    return rows;
}

/// The paths of a project's artifacts, and what examining them gives when its directory cannot be opened.
struct ArtifactsRow {
    const char* sentence;
    std::vector<std::string> paths;
    std::string built;   ///< "root" where the error of the directory comes out.
    std::string audited; ///< One text for each artifact.
};

const std::vector<ArtifactsRow>& artifactsRows() {
    static const std::string unsafe = "The handoff contains an unsafe artifact path: ";
    static const std::vector<ArtifactsRow> rows{
        {"no artifact", {}, "built", ""},
        {"one artifact", {"a.png"}, "root", "root"},
        {"one artifact that does not exist", {"b.png"}, "root", "root"},
        {"a path that climbs", {"../a.png"}, unsafe + "../a.png", unsafe + "../a.png\n"},
        {"an absolute path", {"/a.png"}, unsafe + "/a.png", unsafe + "/a.png\n"},
        {"the directory itself", {"./."}, unsafe + "./.", unsafe + "./.\n"},
        {"two unsafe paths", {"..", "/"}, unsafe + "..", unsafe + "..\n" + unsafe + "/\n"},
        {"an unsafe path before an artifact", {"../a.png", "a.png"}, unsafe + "../a.png", "root"},
        {"an unsafe path behind an artifact", {"a.png", "../a.png"}, "root", "root"},
        {"many artifacts, and an unsafe path among them",
         {"a.png", "b.png", "c.png", "../a.png", "d.png"},
         "root",
         "root"},
    };
    return rows;
}

FilmWorkspaceSnapshot snapshotOf(const LayoutPlace& place, const std::vector<std::string>& paths) {
    FilmWorkspaceSnapshot snapshot;
    snapshot.root = place.root;
    snapshot.productionPlan.emplace();
    snapshot.project.artifacts = {{7, "image/png", "c", "prompt-log", "../log", "none", "s"}};
    for (const std::string& path : paths)
        snapshot.project.artifacts.push_back(
            {7, "image/png", "c", "poster", path, std::string(layoutDigest), "s"});
    return snapshot;
}

/// What an examination gives; "root" when it fails as the directory does.
std::string outcomeOf(const std::function<std::string()>& examine, const fs::path& root, std::errc code) {
    try {
        return examine();
    } catch (const VistrelHandoffError& error) {
        return error.what();
    } catch (const fs::filesystem_error& error) {
        EXPECT_EQ(error.path1(), root);
        EXPECT_EQ(error.code(), code);
        EXPECT_EQ(typeid(error), typeid(fs::filesystem_error));
        return "root";
    }
}

std::string built(const FilmWorkspaceSnapshot& snapshot, unsigned workers) {
    static_cast<void>(VistrelHandoffBuilder::build(snapshot, "/r", "now", {workers, {}, {}}));
    return "built";
}

std::string audited(const FilmWorkspaceSnapshot& snapshot, unsigned workers) {
    std::string text;
    for (const ArtifactOutcome& outcome : VistrelHandoffBuilder::audit(snapshot, {workers, {}, {}}))
        text += outcome.description() + "\n";
    return text;
}

TEST(ProjectRoot, IsOpenedWhenAFileHasToBe) {
    for (const RootRow& root : rootRows()) {
        LayoutPlace place;
        root.make(place);
        const WorkingDirectory film(place.area / "film");
        const ProcessCounts before = countProcess();
        for (const ArtifactsRow& artifacts : artifactsRows())
            for (const unsigned workers : {1U, 4U}) {
                SCOPED_TRACE(testing::Message()
                             << root.sentence << ": " << artifacts.sentence << ", workers: " << workers);
                const FilmWorkspaceSnapshot snapshot = snapshotOf(place, artifacts.paths);
                const OrdinaryUser user;
                EXPECT_EQ(outcomeOf([&] { return built(snapshot, workers); }, place.root, root.code),
                          artifacts.built);
                EXPECT_EQ(outcomeOf([&] { return audited(snapshot, workers); }, place.root, root.code),
                          artifacts.audited);
            }
        EXPECT_EQ(settledCounts(before), before);
    }
}

} // namespace
} // namespace kinovane::test

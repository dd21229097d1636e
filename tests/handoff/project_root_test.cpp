// SPDX-License-Identifier: Apache-2.0

// A project's directory that cannot be opened.

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

/// Changes the working directory for its lifetime.
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
    std::function<void(LayoutFiles&)> make;
    std::errc code; ///< The error of opening it.
};

const std::vector<RootRow>& rootRows() {
    static const std::vector<RootRow> rows{
        {"below a directory that may not be searched",
         [](LayoutFiles& files) {
             files.file("locked/film/a.png");
             files.allow("locked", 0);
             files.root = files.area / "locked/film";
         },
         std::errc::permission_denied},
        {"a link into a directory that may not be searched",
         [](LayoutFiles& files) {
             files.file("locked/film/a.png");
             files.allow("locked", 0);
             files.link("given", "locked/film");
             files.root = files.area / "given";
         },
         std::errc::permission_denied},
        {"with a NUL byte, where the system would cut it",
         [](LayoutFiles& files) { files.root = (files.area / "film").native() + "\0/other"s; },
         std::errc::invalid_argument},
        {"with a NUL byte at its end",
         [](LayoutFiles& files) { files.root = (files.area / "film").native() + "\0"s; },
         std::errc::invalid_argument},
        {"a NUL byte only", [](LayoutFiles& files) { files.root = "\0"s; }, std::errc::invalid_argument},
        {"empty, which is not the working directory", [](LayoutFiles& files) { files.root = ""; },
         std::errc::invalid_argument},
    };
    return rows;
}

/// The paths of a project's artifacts, and the results of examining them when its directory cannot be opened.
struct ArtifactsRow {
    const char* sentence;
    std::vector<std::string> paths;
    std::string built;   ///< "root" when the error of the directory is thrown.
    std::string audited; ///< One text for each artifact.
};

const std::vector<ArtifactsRow>& artifactsRows() {
    static const std::string unsafe = "The handoff contains an unsafe artifact path: ";
    static const std::vector<ArtifactsRow> rows{
        {"no artifact", {}, "built", ""},
        {"one artifact", {"a.png"}, "root", "root"},
        {"one artifact that does not exist", {"b.png"}, "root", "root"},
        {"a path with \"..\"", {"../a.png"}, unsafe + "../a.png", unsafe + "../a.png\n"},
        {"an absolute path", {"/a.png"}, unsafe + "/a.png", unsafe + "/a.png\n"},
        {"the directory itself", {"./."}, unsafe + "./.", unsafe + "./.\n"},
        {"two unsafe paths", {"..", "/"}, unsafe + "..", unsafe + "..\n" + unsafe + "/\n"},
        {"an unsafe path before an artifact", {"../a.png", "a.png"}, unsafe + "../a.png", "root"},
        {"an unsafe path after an artifact", {"a.png", "../a.png"}, "root", "root"},
        {"many artifacts, and an unsafe path among them",
         {"a.png", "b.png", "c.png", "../a.png", "d.png"},
         "root",
         "root"},
    };
    return rows;
}

FilmWorkspaceSnapshot snapshotOf(const LayoutFiles& files, const std::vector<std::string>& paths) {
    FilmWorkspaceSnapshot snapshot;
    snapshot.root = files.root;
    snapshot.productionPlan.emplace();
    snapshot.project.artifacts = {{7, "image/png", "c", "prompt-log", "../log", "none", "s"}};
    for (const std::string& path : paths)
        snapshot.project.artifacts.push_back(
            {7, "image/png", "c", "poster", path, std::string(layoutDigest), "s"});
    return snapshot;
}

/// The result of an examination; "root" for the error of opening the directory.
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

TEST(ProjectRoot, IsOpenedOnlyWhenAFileHasToBe) {
    for (const RootRow& root : rootRows()) {
        LayoutFiles files;
        root.make(files);
        const WorkingDirectory film(files.area / "film");
        const ProcessCounts before = countProcess();
        for (const ArtifactsRow& artifacts : artifactsRows())
            for (const unsigned workers : {1U, 4U}) {
                SCOPED_TRACE(testing::Message()
                             << root.sentence << ": " << artifacts.sentence << ", workers: " << workers);
                const FilmWorkspaceSnapshot snapshot = snapshotOf(files, artifacts.paths);
                const OrdinaryUser user;
                EXPECT_EQ(outcomeOf([&] { return built(snapshot, workers); }, files.root, root.code),
                          artifacts.built);
                EXPECT_EQ(outcomeOf([&] { return audited(snapshot, workers); }, files.root, root.code),
                          artifacts.audited);
            }
        EXPECT_EQ(settledCounts(before), before);
    }
}

} // namespace
} // namespace kinovane::test

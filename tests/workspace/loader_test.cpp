// SPDX-License-Identifier: Apache-2.0

#include <functional>
#include <string>

#include <gtest/gtest.h>

#include <kinovane/workspace.hpp>

#include "support/child_counts.hpp"
#include "support/sample_film.hpp"

namespace kinovane::test {
namespace {

namespace fs = std::filesystem;

FilmProductionPlan plan() {
    FilmProductionPlan plan;
    plan.title = "t";
    plan.shots.push_back(shotOf("s1", 1.5));
    return plan;
}

FilmTreatment treatment() { return {"t", "l", "s", "th", {"b"}, "v", "so"}; }

class Loader : public testing::Test {
  protected:
    void SetUp() override {
        directory_.write("run.json", "");
        directory_.write("film-project.json", smallestProject());
    }

    FilmWorkspaceSnapshot load() const { return FilmProjectLoader::load(directory_ / "run.json"); }

    TemporaryDirectory directory_;
};

TEST_F(Loader, AcceptsAWorkspaceWithoutPlanAndTreatment) {
    const FilmWorkspaceSnapshot snapshot = load();
    EXPECT_EQ(snapshot.root, directory_.path());
    EXPECT_EQ(snapshot.runManifest, directory_ / "run.json");
    EXPECT_TRUE(snapshot.project == decodeJSON<FilmProject>(smallestProject()));
    EXPECT_FALSE(snapshot.productionPlan);
    EXPECT_FALSE(snapshot.treatment);
}

TEST_F(Loader, ReadsEveryDocument) {
    directory_.write("production-plan.json", encodeJSON(plan()));
    EXPECT_TRUE(load().productionPlan == plan());
    EXPECT_FALSE(load().treatment);
    directory_.write("treatment.json", "\xEF\xBB\xBF" + encodeJSON(treatment(), JSONFormat::pretty) + "\n");
    EXPECT_TRUE(load().treatment == treatment());
    EXPECT_TRUE(load() == load());
    fs::remove(directory_ / "production-plan.json");
    EXPECT_FALSE(load().productionPlan);
}

// Documents are read in chunks whose sizes are powers of two, so that a document may end with a chunk.
TEST_F(Loader, ReadsADocumentOfAnyLength) {
    for (const std::size_t chunk : {4096U, 65536U, 131072U, 1048576U})
        for (const std::size_t size : {chunk - 1, chunk, chunk + 1}) {
            SCOPED_TRACE(size);
            const std::string padding(size - smallestProject().size(), ' ');
            directory_.write("film-project.json", padding + smallestProject());
            EXPECT_TRUE(load().project == decodeJSON<FilmProject>(smallestProject()));
            directory_.write("film-project.json", smallestProject() + padding);
            EXPECT_TRUE(load().project == decodeJSON<FilmProject>(smallestProject()));
        }
}

TEST_F(Loader, AcceptsAnyContractOfThePlan) {
    FilmProductionPlan foreign = plan();
    foreign.contractVersion = "another/plan.v9";
    directory_.write("production-plan.json", encodeJSON(foreign));
    EXPECT_EQ(load().productionPlan->contractVersion, "another/plan.v9");
}

TEST_F(Loader, NeverOpensTheManifest) {
    const fs::path manifest = directory_ / "run.json";
    const std::pair<const char*, std::function<void()>> rows[] = {
        {"an empty file", [&] { directory_.write("run.json", ""); }},
        {"no JSON", [&] { directory_.write("run.json", "\xFF{"); }},
        {"a directory", [&] { fs::create_directory(manifest); }},
        {"a device without end", [&] { fs::create_symlink("/dev/zero", manifest); }},
        {"a link to a directory", [&] { fs::create_directory_symlink(".", manifest); }},
    };
    for (const auto& [sentence, make] : rows) {
        SCOPED_TRACE(sentence);
        fs::remove(manifest);
        make();
        EXPECT_EQ(load().root, directory_.path());
        EXPECT_EQ(load().runManifest, manifest);
    }
}

TEST_F(Loader, AcceptsAnyNameOfTheManifest) {
    directory_.write("other.json", "");
    EXPECT_EQ(FilmProjectLoader::load(directory_ / "other.json").runManifest, directory_ / "other.json");
}

struct LocationRow {
    const char* sentence;
    fs::path given;
    fs::path manifest;
};

TEST_F(Loader, StandardizesTheLocationOfTheManifest) {
    const fs::path top = directory_.path();
    directory_.write("films/ferry/run.json", "");
    directory_.write("films/ferry/film-project.json", smallestProject());
    fs::create_directories(top / "films/ferry/takes/one");
    fs::create_directory_symlink("films/ferry/takes", top / "takes");
    fs::create_directory_symlink("films/ferry", top / "ferry");
    const LocationRow rows[] = {
        {"single dots", top / "./films/./ferry/run.json", top / "films/ferry/run.json"},
        {"double dots", top / "films/../films/ferry/run.json", top / "films/ferry/run.json"},
        {"double dots after a missing directory", top / "films/nothing/../ferry/run.json",
         top / "films/ferry/run.json"},
        {"double slashes", top.string() + "//films//ferry//run.json", top / "films/ferry/run.json"},
        {"a slash at the end", top.string() + "/films/ferry/run.json/", top / "films/ferry/run.json"},
        {"a link in the middle", top / "ferry/run.json", top / "ferry/run.json"},
        {"two dots after a link", top / "takes/../run.json", top / "films/ferry/run.json"},
        {"two dots back to a link", top / "takes/one/../../run.json", top / "films/ferry/run.json"},
    };
    for (const LocationRow& row : rows) {
        SCOPED_TRACE(row.sentence);
        const FilmWorkspaceSnapshot snapshot = FilmProjectLoader::load(row.given);
        EXPECT_EQ(snapshot.runManifest.native(), row.manifest.native());
        EXPECT_EQ(snapshot.root.native(), row.manifest.parent_path().native());
    }
}

TEST_F(Loader, ResolvesARelativeLocationAgainstTheWorkingDirectory) {
    const fs::path before = fs::current_path();
    fs::create_directory(directory_ / "films");
    fs::current_path(directory_ / "films");
    const FilmWorkspaceSnapshot snapshot = FilmProjectLoader::load("../run.json");
    fs::current_path(directory_.path());
    const FilmWorkspaceSnapshot plain = FilmProjectLoader::load("run.json");
    fs::current_path(before);
    EXPECT_EQ(snapshot.runManifest.native(), (directory_ / "run.json").native());
    EXPECT_TRUE(snapshot == plain);
}

// Also when the working directory is a workspace.
TEST_F(Loader, DoesNotTakeAnEmptyLocationForTheWorkingDirectory) {
    const fs::path before = fs::current_path();
    fs::current_path(directory_.path());
    std::string text;
    try {
        static_cast<void>(FilmProjectLoader::load(""));
    } catch (const FilmProjectError& error) {
        EXPECT_TRUE(error == FilmProjectError(FilmProjectError::missingRunManifest{""}));
        text = error.errorDescription();
    }
    fs::current_path(before);
    EXPECT_EQ(text, "No run.json exists at .");
}

TEST_F(Loader, LeavesNothingOpen) {
    directory_.write("treatment.json", "{");
    const ProcessCounts before = countProcess();
    EXPECT_THROW(load(), FilmProjectError);
    directory_.write("treatment.json", encodeJSON(treatment()));
    static_cast<void>(load());
    EXPECT_EQ(countProcess(), before);
}

} // namespace
} // namespace kinovane::test

// SPDX-License-Identifier: Apache-2.0

// Loading a workspace when system calls fail.

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <kinovane/workspace.hpp>

#include "faults/fault_sweep.hpp"
#include "support/sample_film.hpp"
#include "support/temporary_directory.hpp"

namespace kinovane::test {

namespace fs = std::filesystem;

namespace {

class LoadFaults : public testing::Test {
  protected:
    TemporaryDirectory directory;

    LoadFaults() {
        for (const char* name : {"run.json", "film-project.json", "production-plan.json", "treatment.json"})
            directory.write("film/" + std::string(name), contentOf(sampleFilm() / name));
    }

    /// Loads the workspace with a fault at each call. Every success has to give the same workspace.
    void sweep(const std::string& name, const fs::path& runManifest, std::vector<Call> moreCalls = {}) {
        std::optional<FilmWorkspaceSnapshot> expected;
        std::vector<Call> calls{Call::open, Call::fstat, Call::read, Call::close, Call::stat};
        calls.insert(calls.end(), moreCalls.begin(), moreCalls.end());
        FaultSweep{
            .name = name,
            .operation =
                [&] {
                    FilmWorkspaceSnapshot snapshot = FilmProjectLoader::load(runManifest);
                    if (!expected)
                        expected = snapshot;
                    // When a component of the path cannot be examined, the location stays as given.
                    if (snapshot.runManifest == runManifest && snapshot.root == runManifest.parent_path()) {
                        snapshot.root = expected->root;
                        snapshot.runManifest = expected->runManifest;
                    }
                    return snapshot == expected
                               ? std::string("the workspace")
                               : "another one: " + snapshot.root.string() + ", " + snapshot.project.title;
                },
            .expectedCalls = calls,
            .check = checkNamed,
            .moreFaults = {{Call::read, 0, Fault::Kind::shortened, 0, forever},
                           {Call::read, 0, Fault::Kind::refused, EIO, forever},
                           {Call::open, 0, Fault::Kind::refused, EMFILE, forever}}}
            .run();
    }

    /// An error names the document and the reason of the system.
    static void checkNamed(const Fault& fault, const Outcome& outcome) {
        if (outcome.kind == Outcome::Kind::result)
            return;
        EXPECT_EQ(outcome.kind, Outcome::Kind::projectError);
        const std::string why = ".json: " + std::generic_category().message(fault.error);
        EXPECT_NE(outcome.text.find(why), std::string::npos) << outcome.text;
        const std::vector<std::string> documents{"film-project", "production-plan", "treatment"};
        EXPECT_TRUE(std::any_of(documents.begin(), documents.end(), [&](const std::string& document) {
            return outcome.text.find(document + ".json: ") != std::string::npos;
        })) << outcome.text;
    }
};

TEST_F(LoadFaults, AreReportedForAWorkspace) { sweep("loading a workspace", directory / "film/run.json"); }

TEST_F(LoadFaults, AreReportedForARelativeLocation) {
    const fs::path before = fs::current_path();
    fs::current_path(directory / "film");
    sweep("loading from a relative location", "run.json", {Call::getcwd});
    fs::current_path(before);
}

// Without resolving the link, ".." would lead to another film.
TEST_F(LoadFaults, AreReportedBehindALink) {
    directory.write("elsewhere/run.json", "");
    directory.write("elsewhere/film-project.json", smallestProject());
    fs::create_directory(directory / "film/cuts");
    fs::create_directory_symlink(directory / "film/cuts", directory / "elsewhere/link");
    sweep("loading through a link", directory / "elsewhere/link/../run.json", {Call::lstat});
}

TEST_F(LoadFaults, IncludeDocumentsThatChangeWhileTheyAreRead) {
    struct Row {
        const char* sentence;
        std::size_t firstStatus; ///< The first `fstat` that reports another time; each read makes two.
        std::size_t statuses;
        std::string outcome;
        std::size_t opened;
    };
    const Row rows[] = {
        {"the project changes once", 1, 1, "", 4},
        {"the plan changes twice", 3, 3, "", 5},
        {"the treatment changes seven times", 4, 14, "", 10},
        {"the project changes each time", 0, forever,
         "The film project could not be read: film-project.json: it changes while it is read", 8},
        {"the treatment changes each time", 4, forever,
         "The film project could not be read: treatment.json: it changes while it is read", 10},
    };
    const FilmWorkspaceSnapshot expected = FilmProjectLoader::load(directory / "film/run.json");
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        const FaultPlan plan({{Call::fstat, row.firstStatus, Fault::Kind::changed, 0, row.statuses}});
        std::string outcome;
        try {
            EXPECT_EQ(FilmProjectLoader::load(directory / "film/run.json"), expected);
        } catch (const FilmProjectError& error) {
            outcome = error.what();
        }
        EXPECT_EQ(outcome, row.outcome);
        EXPECT_EQ(plan.counts()[static_cast<std::size_t>(Call::open)], row.opened);
    }
}

// Whatever fails, an invalid document is never accepted.
TEST_F(LoadFaults, NeverHideAnInvalidDocument) {
    directory.write("film/production-plan.json", R"({"title":)");
    FaultSweep{.name = "loading an invalid document",
               .operation =
                   [&] {
                       (void)FilmProjectLoader::load(directory / "film/run.json");
                       return std::string("loaded");
                   },
               .expectedCalls = {Call::open, Call::read, Call::close},
               .check =
                   [](const Fault& fault, const Outcome& outcome) {
                       EXPECT_EQ(outcome.kind, Outcome::Kind::projectError);
                       const bool broken = outcome.text.find("production-plan.json: line 1, column 10: the "
                                                             "document ends too early") != std::string::npos;
                       if (!broken)
                           checkNamed(fault, outcome);
                   }}
        .run();
}

} // namespace

} // namespace kinovane::test

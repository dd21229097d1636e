// SPDX-License-Identifier: Apache-2.0

#include <fstream>
#include <functional>
#include <string>

#include <gtest/gtest.h>

#include <kinovane/workspace.hpp>

#include "support/child_counts.hpp"
#include "support/sample_film.hpp"

namespace kinovane::test {
namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;

/// The smallest project with one piece of its text replaced.
std::string projectWith(std::string_view piece, std::string_view replacement) {
    std::string text = smallestProject();
    const std::size_t position = text.find(piece);
    if (position == std::string::npos)
        throw std::logic_error("no such piece");
    return text.replace(position, piece.size(), replacement);
}

std::string projectOfContract(std::string_view identifier) {
    return projectWith("quexrun/film-project.v1", identifier);
}

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

TEST_F(Loader, ThePlanAndTheTreatmentMayBeAbsent) {
    const FilmWorkspaceSnapshot snapshot = load();
    EXPECT_EQ(snapshot.root, directory_.path());
    EXPECT_EQ(snapshot.runManifest, directory_ / "run.json");
    EXPECT_TRUE(snapshot.project == decodeJSON<FilmProject>(smallestProject()));
    EXPECT_FALSE(snapshot.productionPlan);
    EXPECT_FALSE(snapshot.treatment);
}

TEST_F(Loader, EveryDocumentIsRead) {
    directory_.write("production-plan.json", encodeJSON(plan()));
    EXPECT_TRUE(load().productionPlan == plan());
    EXPECT_FALSE(load().treatment);
    directory_.write("treatment.json", "\xEF\xBB\xBF" + encodeJSON(treatment(), JSONFormat::pretty) + "\n");
    EXPECT_TRUE(load().treatment == treatment());
    EXPECT_TRUE(load() == load());
    fs::remove(directory_ / "production-plan.json");
    EXPECT_FALSE(load().productionPlan);
}

// Documents are read in pieces of a power of two; their end may be the end of a piece.
TEST_F(Loader, ADocumentOfAnyLengthIsRead) {
    for (const std::size_t piece : {4096U, 65536U, 131072U, 1048576U})
        for (const std::size_t size : {piece - 1, piece, piece + 1}) {
            SCOPED_TRACE(size);
            const std::string padding(size - smallestProject().size(), ' ');
            directory_.write("film-project.json", padding + smallestProject());
            EXPECT_TRUE(load().project == decodeJSON<FilmProject>(smallestProject()));
            directory_.write("film-project.json", smallestProject() + padding);
            EXPECT_TRUE(load().project == decodeJSON<FilmProject>(smallestProject()));
        }
}

TEST_F(Loader, ThePlansContractIsKeptAndNotCompared) {
    FilmProductionPlan foreign = plan();
    foreign.contractVersion = "another/plan.v9";
    directory_.write("production-plan.json", encodeJSON(foreign));
    EXPECT_EQ(load().productionPlan->contractVersion, "another/plan.v9");
}

TEST_F(Loader, TheManifestIsNeverOpened) {
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

TEST_F(Loader, AnyNameServesAsManifest) {
    directory_.write("other.json", "");
    EXPECT_EQ(FilmProjectLoader::load(directory_ / "other.json").runManifest, directory_ / "other.json");
}

struct LocationRow {
    const char* sentence;
    fs::path given;
    fs::path manifest;
};

TEST_F(Loader, TheManifestsLocationIsStandardized) {
    const fs::path top = directory_.path();
    directory_.write("films/ferry/run.json", "");
    directory_.write("films/ferry/film-project.json", smallestProject());
    fs::create_directories(top / "films/ferry/takes/one");
    fs::create_directory_symlink("films/ferry/takes", top / "takes");
    fs::create_directory_symlink("films/ferry", top / "ferry");
    const LocationRow rows[] = {
        {"single dots", top / "./films/./ferry/run.json", top / "films/ferry/run.json"},
        {"double dots", top / "films/../films/ferry/run.json", top / "films/ferry/run.json"},
        {"double dots behind nothing", top / "films/nothing/../ferry/run.json", top / "films/ferry/run.json"},
        {"double slashes", top.string() + "//films//ferry//run.json", top / "films/ferry/run.json"},
        {"a slash at the end", top.string() + "/films/ferry/run.json/", top / "films/ferry/run.json"},
        {"a link in the middle", top / "ferry/run.json", top / "ferry/run.json"},
        {"back behind a link", top / "takes/../run.json", top / "films/ferry/run.json"},
        {"back to a link", top / "takes/one/../../run.json", top / "films/ferry/run.json"},
    };
    for (const LocationRow& row : rows) {
        SCOPED_TRACE(row.sentence);
        const FilmWorkspaceSnapshot snapshot = FilmProjectLoader::load(row.given);
        EXPECT_EQ(snapshot.runManifest.native(), row.manifest.native());
        EXPECT_EQ(snapshot.root.native(), row.manifest.parent_path().native());
    }
}

TEST_F(Loader, ARelativeLocationIsBelowTheWorkingDirectory) {
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

// An empty location names nothing, also where a workspace is the working directory.
TEST_F(Loader, AnEmptyLocationIsNotTheWorkingDirectory) {
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

struct ErrorRow {
    const char* sentence;
    fs::path given;
    FilmProjectError error;
    std::string text;
};

TEST_F(Loader, WhatIsNotThereIsNamed) {
    const std::string top = directory_.path().string();
    fs::create_directory(directory_ / "empty");
    directory_.write("bare/run.json", "");
    directory_.write("dangling/run.json", "");
    fs::create_symlink("nowhere.json", directory_ / "dangling/film-project.json");
    fs::create_symlink("nowhere.json", directory_ / "broken.json");
    const auto noManifest = [](const fs::path& location) {
        return FilmProjectError::missingRunManifest{location};
    };
    const auto noProject = [](const fs::path& location) {
        return FilmProjectError::missingProject{location};
    };
    const ErrorRow rows[] = {
        {"no manifest", top + "/empty/run.json", noManifest(top + "/empty/run.json"),
         "No run.json exists at " + top + "/empty/run.json."},
        {"no manifest, with dots", top + "/empty/./x/../run.json", noManifest(top + "/empty/run.json"),
         "No run.json exists at " + top + "/empty/run.json."},
        {"no directory", top + "/no/run.json", noManifest(top + "/no/run.json"),
         "No run.json exists at " + top + "/no/run.json."},
        {"a link that leads nowhere", top + "/broken.json", noManifest(top + "/broken.json"),
         "No run.json exists at " + top + "/broken.json."},
        {"a file as a directory", top + "/run.json/run.json", noManifest(top + "/run.json/run.json"),
         "No run.json exists at " + top + "/run.json/run.json."},
        {"a NUL byte", top + "/run.json\0x"s, noManifest(top + "/run.json\0x"s),
         "No run.json exists at " + top + "/run.json\0x."s},
        {"no location", "", noManifest(""), "No run.json exists at ."},
        {"no project", top + "/bare/run.json", noProject(top + "/bare/film-project.json"),
         "No film-project.json exists at " + top + "/bare/film-project.json."},
        {"no project, with dots", top + "/x/.././bare/run.json", noProject(top + "/bare/film-project.json"),
         "No film-project.json exists at " + top + "/bare/film-project.json."},
        {"the project is a link that leads nowhere", top + "/dangling/run.json",
         noProject(top + "/dangling/film-project.json"),
         "No film-project.json exists at " + top + "/dangling/film-project.json."},
    };
    for (const ErrorRow& row : rows) {
        SCOPED_TRACE(row.sentence);
        try {
            static_cast<void>(FilmProjectLoader::load(row.given));
            ADD_FAILURE() << "was loaded";
        } catch (const FilmProjectError& error) {
            EXPECT_TRUE(error == row.error);
            EXPECT_EQ(error.errorDescription(), row.text);
        }
    }
}

struct ContractRow {
    const char* sentence;
    std::string project;
    std::string text;
};

TEST_F(Loader, TheContractIsComparedCharacterForCharacter) {
    const ContractRow rows[] = {
        {"a later version", projectOfContract("quexrun/film-project.v2"),
         "Unsupported film contract: quexrun/film-project.v2."},
        {"a longer version", projectOfContract("quexrun/film-project.v10"),
         "Unsupported film contract: quexrun/film-project.v10."},
        {"other letters", projectOfContract("Quexrun/film-project.v1"),
         "Unsupported film contract: Quexrun/film-project.v1."},
        {"a blank at the end", projectOfContract("quexrun/film-project.v1 "),
         "Unsupported film contract: quexrun/film-project.v1 ."},
        {"nothing", projectOfContract(""), "Unsupported film contract: ."},
        {"a NUL character at the end", projectOfContract(R"(quexrun/film-project.v1\u0000)"),
         "Unsupported film contract: quexrun/film-project.v1\0."s},
        {"another contract and a missing key", R"({"contractVersion":"quexrun/film-project.v2"})",
         "The film project could not be read: film-project.json: projectId is missing"},
    };
    // The plan and the treatment come after the contract.
    directory_.write("production-plan.json", "broken");
    fs::create_directory(directory_ / "treatment.json");
    for (const ContractRow& row : rows) {
        SCOPED_TRACE(row.sentence);
        directory_.write("film-project.json", row.project);
        try {
            static_cast<void>(load());
            ADD_FAILURE() << "was loaded";
        } catch (const FilmProjectError& error) {
            EXPECT_EQ(error.errorDescription(), row.text);
        }
    }
}

TEST_F(Loader, NothingStaysOpen) {
    directory_.write("treatment.json", "{");
    const ProcessCounts before = countProcess();
    EXPECT_THROW(load(), FilmProjectError);
    directory_.write("treatment.json", encodeJSON(treatment()));
    static_cast<void>(load());
    EXPECT_EQ(countProcess(), before);
}

} // namespace
} // namespace kinovane::test

// SPDX-License-Identifier: Apache-2.0

#include <string>

#include <gtest/gtest.h>

#include <kinovane/workspace.hpp>

#include "support/sample_film.hpp"
#include "workspace/project_text.hpp"

namespace kinovane::test {
namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;

std::string projectOfContract(std::string_view identifier) {
    return projectWith("quexrun/film-project.v1", identifier);
}

struct ErrorRow {
    const char* sentence;
    fs::path given;
    FilmProjectError error;
    std::string text;
};

TEST(LoaderFailure, ReportsWhichFileIsMissing) {
    const TemporaryDirectory directory;
    directory.write("run.json", "");
    const std::string top = directory.path().string();
    fs::create_directory(directory / "empty");
    directory.write("bare/run.json", "");
    directory.write("dangling/run.json", "");
    fs::create_symlink("nowhere.json", directory / "dangling/film-project.json");
    fs::create_symlink("nowhere.json", directory / "broken.json");
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
        {"a broken link", top + "/broken.json", noManifest(top + "/broken.json"),
         "No run.json exists at " + top + "/broken.json."},
        {"a file as a directory", top + "/run.json/run.json", noManifest(top + "/run.json/run.json"),
         "No run.json exists at " + top + "/run.json/run.json."},
        {"a NUL byte", top + "/run.json\0x"s, noManifest(top + "/run.json\0x"s),
         "No run.json exists at " + top + "/run.json\0x."s},
        {"an empty location", "", noManifest(""), "No run.json exists at ."},
        {"no project", top + "/bare/run.json", noProject(top + "/bare/film-project.json"),
         "No film-project.json exists at " + top + "/bare/film-project.json."},
        {"no project, with dots", top + "/x/.././bare/run.json", noProject(top + "/bare/film-project.json"),
         "No film-project.json exists at " + top + "/bare/film-project.json."},
        {"the project is a broken link", top + "/dangling/run.json",
         noProject(top + "/dangling/film-project.json"),
         "No film-project.json exists at " + top + "/dangling/film-project.json."},
    };
    for (const ErrorRow& row : rows) {
        SCOPED_TRACE(row.sentence);
        try {
            static_cast<void>(FilmProjectLoader::load(row.given));
            ADD_FAILURE() << "the workspace was loaded";
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

TEST(LoaderFailure, ComparesTheContractCharacterForCharacter) {
    const TemporaryDirectory directory;
    directory.write("run.json", "");
    const ContractRow rows[] = {
        {"a later version", projectOfContract("quexrun/film-project.v2"),
         "Unsupported film contract: quexrun/film-project.v2."},
        {"a longer version", projectOfContract("quexrun/film-project.v10"),
         "Unsupported film contract: quexrun/film-project.v10."},
        {"other letters", projectOfContract("Quexrun/film-project.v1"),
         "Unsupported film contract: Quexrun/film-project.v1."},
        {"a blank at the end", projectOfContract("quexrun/film-project.v1 "),
         "Unsupported film contract: quexrun/film-project.v1 ."},
        {"an empty contract", projectOfContract(""), "Unsupported film contract: ."},
        {"a NUL character at the end", projectOfContract(R"(quexrun/film-project.v1\u0000)"),
         "Unsupported film contract: quexrun/film-project.v1\0."s},
        {"another contract and a missing key", R"({"contractVersion":"quexrun/film-project.v2"})",
         "The film project could not be read: film-project.json: projectId is missing"},
    };
    // The plan and the treatment are read after the contract was checked.
    directory.write("production-plan.json", "broken");
    fs::create_directory(directory / "treatment.json");
    for (const ContractRow& row : rows) {
        SCOPED_TRACE(row.sentence);
        directory.write("film-project.json", row.project);
        try {
            static_cast<void>(FilmProjectLoader::load(directory / "run.json"));
            ADD_FAILURE() << "the workspace was loaded";
        } catch (const FilmProjectError& error) {
            EXPECT_EQ(error.errorDescription(), row.text);
        }
    }
}

} // namespace
} // namespace kinovane::test

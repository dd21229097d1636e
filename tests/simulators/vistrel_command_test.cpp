// SPDX-License-Identifier: Apache-2.0

#include <gtest/gtest.h>

#include "simulators/vistrel_film.hpp"

namespace kinovane::test {
namespace {

const std::string usage = "usage: vistrel production import-film <manifest> --dry-run --output json\n"
                          "       vistrel production import-film <manifest> --output json\n"
                          "A manifest whose name begins with \"-\" is written as \"./-name\".\n";

TEST(VistrelCommand, AcceptsOnlyTheFormsOfItsUsage) {
    const VistrelFilm film;
    const std::string file = film.manifest;
    struct Row {
        std::string_view sentence;
        std::vector<std::string> arguments;
    };
    const std::vector<Row> rows{
        {"nothing", {}},
        {"one word", {"production"}},
        {"no manifest", {"production", "import-film"}},
        {"no options", {"production", "import-film", file}},
        {"an empty manifest", {"production", "import-film", "", "--output", "json"}},
        {"a forgotten manifest", {"production", "import-film", "--dry-run", "--output", "json"}},
        {"a manifest that begins like an option",
         {"production", "import-film", "-m.json", "--output", "json"}},
        {"another first word", {"productions", "import-film", file, "--output", "json"}},
        {"another second word", {"production", "import", file, "--output", "json"}},
        {"words in capitals", {"Production", "Import-Film", file, "--output", "json"}},
        {"no output", {"production", "import-film", file, "--dry-run"}},
        {"another output", {"production", "import-film", file, "--output", "text"}},
        {"half an output", {"production", "import-film", file, "--output"}},
        {"an output in one word", {"production", "import-film", file, "--output=json"}},
        {"the dry run at the end", {"production", "import-film", file, "--output", "json", "--dry-run"}},
        {"the dry run in front", {"production", "import-film", "--dry-run", file, "--output", "json"}},
        {"the dry run twice",
         {"production", "import-film", file, "--dry-run", "--dry-run", "--output", "json"}},
        {"another spelling of the dry run",
         {"production", "import-film", file, "--dryrun", "--output", "json"}},
        {"one argument more", {"production", "import-film", file, "--output", "json", ""}},
        {"two manifests", {"production", "import-film", file, file, "--output", "json"}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        const ProcessResult result = film.run(row.arguments);
        EXPECT_EQ(result.exitCode, 2);
        EXPECT_EQ(result.stderr, usage);
        EXPECT_EQ(result.stdout, "");
    }
    EXPECT_FALSE(std::filesystem::exists(film.library));
}

TEST(VistrelCommand, ReportsAnUnknownMisbehaviour) {
    const VistrelFilm film;
    try {
        FilmToolClient(programPath("vistrel"))
            .run({"production", "import-film", film.manifest, "--output", "json"},
                 {{"VISTREL_MISBEHAVE", "nap"}})
            .get();
        FAIL() << "it succeeded";
    } catch (const FilmToolError& error) {
        EXPECT_EQ(error.errorDescription(),
                  "VISTREL_MISBEHAVE: \"nap\" is unknown; known are not-json missing-key wrong-type "
                  "camel-case not-ok noise flood exit-3 complain refuse-import slow stubborn killed\n");
        EXPECT_EQ(std::get<FilmToolError::commandFailed>(error.value()).result.exitCode, 2);
    }
}

TEST(VistrelCommand, IgnoresAnEmptyMisbehaviour) {
    const VistrelFilm film;
    const ProcessResult result =
        FilmToolClient(programPath("vistrel"))
            .run({"production", "import-film", film.manifest, "--dry-run", "--output", "json"},
                 {{"VISTREL_MISBEHAVE", ""}})
            .get();
    EXPECT_TRUE(decodeJSON<VistrelImportReceipt>(result.stdout).ok);
}

TEST(VistrelCommand, RequiresALibraryForAnImport) {
    const VistrelFilm film;
    struct Row {
        std::string library;
        std::string expected;
    };
    const std::vector<Row> rows{
        {"", "VISTREL_LIBRARY is not set: it names the folder that films are imported into\n"},
        {"library", "VISTREL_LIBRARY: \"library\" is not an absolute path\n"},
    };
    const auto run = [&](std::vector<std::string> arguments, const std::string& library) {
        return FilmToolClient(programPath("vistrel"))
            .run(std::move(arguments), {{"VISTREL_LIBRARY", library}})
            .get();
    };
    for (const Row& row : rows) {
        try {
            run({"production", "import-film", film.manifest, "--output", "json"}, row.library);
            ADD_FAILURE() << "it was imported";
        } catch (const FilmToolError& error) {
            EXPECT_EQ(error.errorDescription(), row.expected);
        }
        const ProcessResult checked =
            run({"production", "import-film", film.manifest, "--dry-run", "--output", "json"}, row.library);
        EXPECT_TRUE(checked.succeeded());
    }
}

} // namespace
} // namespace kinovane::test

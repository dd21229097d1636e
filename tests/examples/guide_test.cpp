// SPDX-License-Identifier: Apache-2.0

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include <sys/stat.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <kinovane/handoff.hpp>
#include <kinovane/tooling.hpp>

#include "examples/guide_page.hpp"
#include "support/sample_film.hpp"
#include "support/variable.hpp"

namespace kinovane::test {
namespace {

using Arguments = std::vector<std::string>;

void expectResult(const std::string& program, const Arguments& arguments, std::int32_t exitCode,
                  const std::string& output, const std::string& errors) {
    SCOPED_TRACE(program);
    ProcessResult result;
    try {
        result = FilmToolClient(programPath(program)).run(arguments).get();
    } catch (const FilmToolError& error) {
        result = std::get<FilmToolError::commandFailed>(error.value()).result;
    }
    EXPECT_EQ(result, (ProcessResult{programPath(program), arguments, exitCode, output, errors}));
}

/// Expects that the program succeeds, and prints what the page shows.
void expectAsOnPage(const char* page, const std::string& program, const Arguments& arguments) {
    const std::string shown = GuidePage(page).printedBy(program);
    EXPECT_NE(shown, "") << page;
    expectResult(program, arguments, 0, shown, "");
}

const std::string sampleRun = sampleFilm() / "run.json";

/// A film of the simulator whose plan was approved.
struct ApprovedFilm {
    TemporaryDirectory directory;
    Variable misbehaviour{"FILM_MISBEHAVE", std::nullopt};
    FilmToolClient film{programPath("film")};
    std::string run = film.plan("A lamp is borrowed", "Lamp", 6, directory / "film").get();

    ApprovedFilm() { film.approve(run, "plan", "looks right", "director").get(); }
};

TEST(FirstProgram, PrintsTheStateOfTheSampleFilm) {
    expectResult(
        "guide_first_program", {sampleRun}, 0,
        "A Lamp for the Late Ferry\nphase: delivered\nfiles: 64\n[x] creation\n[x] clips\n[x] assembly\n"
        "[x] dialogue\n[x] sound\n[x] captions\n[x] inspection\n[x] review\n[x] humanReview\n"
        "[x] delivery\n",
        "");
}

TEST(Guide, ShowsWhatItsProgramsPrint) {
    expectAsOnPage("showing-a-workspace.md", "guide_workspace", {sampleRun});
    const ApprovedFilm approved;
    expectAsOnPage("showing-a-workspace.md", "guide_changes", {programPath("film"), approved.run});
    expectAsOnPage("driving-a-production.md", "guide_production",
                   {programPath("film"), approved.directory / "another"});
    const Variable library("VISTREL_LIBRARY", approved.directory / "library");
    const Variable misbehaviour("VISTREL_MISBEHAVE", std::nullopt);
    expectAsOnPage("publishing.md", "guide_publishing",
                   {sampleRun, programPath("vistrel"), approved.directory / "handoff.json"});
    expectAsOnPage("errors.md", "guide_errors", {});
}

TEST(Guide, ListsTheExportedKinds) {
    std::vector<std::string> listed = GuidePage("publishing.md").codeIn("kinds");
    const auto exported = VistrelHandoffBuilder::exportedKinds();
    EXPECT_THAT(listed, testing::UnorderedElementsAreArray(exported));
}

TEST(BackgroundProgram, BuildsAndStopsABuild) {
    const std::string digest = VistrelHandoffBuilder::sha256(std::filesystem::path(sampleRun));
    expectResult("guide_background", {sampleRun}, 0,
                 "verified 59 files\nbuilt a handoff of 7 shots and 59 files\nA Lamp for the Late Ferry, " +
                     digest.substr(0, 15) + "…\nStopped on request.\n",
                 "");
}

TEST(StoppingProgram, StopsABusyFilmToolInThreeWays) {
    const ApprovedFilm approved;
    const std::string release = approved.directory / "release"; // Is never opened, so the tool stays busy.
    ASSERT_EQ(::mkfifo(release.c_str(), 0600), 0);
    const Variable misbehaviour("FILM_MISBEHAVE", "slow");
    const Variable pipe("FILM_RELEASE", release);
    expectResult("guide_stopping", {programPath("film"), approved.run}, 0,
                 "The production was stopped. Offer to recover the film.\n"
                 "The production was stopped. Offer to recover the film.\n"
                 "The production took too long.\n",
                 "");
}

TEST(ProgramsOfTheGuide, ShowWhatWentWrong) {
    struct Row {
        const char* sentence;
        const char* program;
        Arguments arguments;
        const char* misbehaviour;
        std::string output, errors;
    };
    const ApprovedFilm approved;
    const std::string film = programPath("film");
    const std::string missing = approved.directory / "missing/run.json";
    const std::string noRun = "No run.json exists at " + missing + ".\n";
    const std::string noTool = approved.directory / "no tool";
    const std::string complaint = "The projector has lost a reel. Try again after the intermission.\n\n";
    const std::string leftOut = "not exported: archived-take\nnot exported: production-plan\n"
                                "not exported: prompt-log\nnot exported: treatment\n";
    const std::vector<Row> rows{
        {"no film", "guide_first_program", {missing}, "", "", noRun},
        {"no film", "guide_workspace", {missing}, "", "", noRun},
        {"no film", "guide_background", {missing}, "", noRun, ""},
        {"no film", "guide_publishing", {missing, "vistrel", "handoff.json"}, "", "", noRun},
        {"no film", "guide_changes", {film, missing}, "", "", noRun},
        {"the tool fails", "guide_changes", {film, approved.run}, "complain", "", complaint},
        {"the tool fails", "guide_production", {film, missing}, "complain", "film tool: film\n", complaint},
        {"no tool",
         "guide_production",
         {noTool, missing},
         "",
         "",
         "Required executable not found: " + noTool + "\n"},
        {"no importer",
         "guide_publishing",
         {sampleRun, noTool, "handoff.json"},
         "",
         leftOut + "step: documents\n",
         "Required executable not found: " + noTool + "\n"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        const Variable misbehaviour("FILM_MISBEHAVE", row.misbehaviour);
        expectResult(row.program, row.arguments, 1, row.output, row.errors);
    }
}

TEST(ProgramsOfTheGuide, ShowTheirUsageWhenTheNumberOfArgumentsIsWrong) {
    struct Row {
        const char* program;
        Arguments arguments;
        const char* errors;
    };
    const std::vector<Row> rows{
        {"guide_first_program", {}, "usage: first RUN_JSON\n"},
        {"guide_workspace", {}, "usage: guide_workspace RUN_JSON\n"},
        {"guide_changes", {"film"}, "usage: guide_changes FILM RUN_JSON\n"},
        {"guide_production", {"film"}, "usage: guide_production FILM DIRECTORY\n"},
        {"guide_stopping", {"film"}, "usage: guide_stopping FILM RUN_JSON\n"},
        {"guide_background", {}, "usage: guide_background RUN_JSON\n"},
        {"guide_publishing", {"run.json"}, "usage: guide_publishing RUN_JSON VISTREL MANIFEST\n"},
        {"guide_errors", {"all"}, "usage: guide_errors\n"},
    };
    for (const Row& row : rows)
        expectResult(row.program, row.arguments, 2, "", row.errors);
}

} // namespace
} // namespace kinovane::test

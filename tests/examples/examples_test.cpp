// SPDX-License-Identifier: Apache-2.0

#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <kinovane/handoff.hpp>
#include <kinovane/tooling.hpp>

#include "support/sample_film.hpp"
#include "support/variable.hpp"

namespace kinovane::test {
namespace {

namespace fs = std::filesystem;
using Arguments = std::vector<std::string>;

/// Runs an example, whatever its exit status.
ProcessResult resultOf(const std::string& example, const Arguments& arguments) {
    Task<ProcessResult> task = FilmToolClient(programPath(example)).run(arguments);
    try {
        return task.get();
    } catch (const FilmToolError& error) {
        return std::get<FilmToolError::commandFailed>(error.value()).result;
    }
}

void expectResult(const std::string& example, const Arguments& arguments, std::int32_t exitCode,
                  const std::string& output, const std::string& errors) {
    EXPECT_EQ(resultOf(example, arguments),
              (ProcessResult{programPath(example), arguments, exitCode, output, errors}));
}

/// A run of the film tool's simulator that has just been planned.
struct PlannedRun {
    TemporaryDirectory directory;
    Variable misbehaviour{"FILM_MISBEHAVE", std::nullopt};
    FilmToolClient film{programPath("film")};
    std::string manifest = film.plan("A lamp is borrowed", "Ferry & “Lamp”", 6, directory / "film").get();
};

/// The sample film, and a directory for the manifest and the import.
struct Publication {
    TemporaryDirectory directory;
    Variable library{"VISTREL_LIBRARY", directory / "library"};
    Variable misbehaviour{"VISTREL_MISBEHAVE", std::nullopt};
    std::string run = sampleFilm() / "run.json";
    std::string manifest = directory / "handoff.json";
    std::string vistrel = programPath("vistrel");
};

TEST(PublishExample, WritesAndImportsTheSampleFilm) {
    const Publication publication;
    const ProcessResult result =
        resultOf("publish", {publication.run, publication.vistrel, publication.manifest});
    const std::string digest = VistrelHandoffBuilder::sha256(fs::path(publication.manifest));
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.stdout, "wrote " + publication.manifest + ", " + digest +
                                 "\nimported as vistrel_film-lamp-for-the-late-ferry_218bdb85291f\n");
    EXPECT_TRUE(result.stderr.starts_with("checking the documents\n"
                                          "verifying the files\n"
                                          "verified 0 of 59 files\n"))
        << result.stderr;
    EXPECT_TRUE(result.stderr.ends_with("\n"
                                        "verified 59 of 59 files\n"
                                        "writing the manifest\n"
                                        "asking Vistrel\n"
                                        "importing the film\n"))
        << result.stderr;
    EXPECT_TRUE(fs::exists(publication.directory /
                           "library/vistrel_film-lamp-for-the-late-ferry_218bdb85291f/storyboard.json"));
}

TEST(PublishExample, ShowsWhatWentWrong) {
    struct Row {
        const char* sentence;
        std::string run, vistrel;
        const char* misbehaviour;
        std::string lastLine;
    };
    const Publication publication;
    const TemporaryDirectory empty;
    const std::string vistrel = publication.vistrel;
    const std::string noRun = empty / "run.json";
    const std::string noProgram = empty / "vistrel";
    const std::string noPlan = publication.directory / "film/run.json";
    fs::create_directory(publication.directory / "film");
    for (const char* document : {"run.json", "film-project.json"})
        fs::copy_file(sampleFilm() / document, publication.directory / "film" / document);
    const std::vector<Row> rows{
        {"there is no workspace", noRun, vistrel, "", "No run.json exists at " + noRun + ".\n"},
        {"there is no plan", noPlan, vistrel, "",
         "The workspace has no production plan. A film is published once its plan was accepted.\n"},
        {"Vistrel's program is missing", publication.run, noProgram, "",
         "Required executable not found: " + noProgram + "\n"},
        {"Vistrel's program fails", publication.run, vistrel, "exit-3", "vistrel: Film command exited 3.\n"},
        {"Vistrel refuses the film", publication.run, vistrel, "not-ok",
         "Vistrel refused the film in the dry run.\n"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        const Variable misbehaviour("VISTREL_MISBEHAVE", row.misbehaviour);
        const ProcessResult result = resultOf("publish", {row.run, row.vistrel, publication.manifest});
        EXPECT_EQ(result.exitCode, 1);
        // The lines before it report the steps and the progress of the verification.
        EXPECT_EQ(result.stderr.substr(result.stderr.rfind('\n', result.stderr.size() - 2) + 1),
                  row.lastLine);
    }
    EXPECT_FALSE(fs::exists(publication.directory / "library"));
}

TEST(VerifyExample, ListsEveryDamagedFile) {
    const TemporaryDirectory directory;
    fs::copy(sampleFilm(), directory / "film", fs::copy_options::recursive);
    const std::string run = directory / "film/run.json";
    expectResult("verify", {run}, 0, "0 missing, 0 changed, 0 other failures\n", "");

    fs::remove(directory / "film/frames/shot-02.png");
    const std::string recorded = VistrelHandoffBuilder::sha256(directory / "film/poster.png");
    directory.write("film/poster.png", "");
    fs::remove(directory / "film/thumbnail.png");
    fs::create_symlink("/dev/null", directory / "film/thumbnail.png");
    const ProcessResult damaged = resultOf("verify", {run});
    EXPECT_EQ(damaged.exitCode, 1);
    EXPECT_EQ(damaged.stdout, "The handoff artifact is missing: frames/shot-02.png\n"
                              "Artifact hash mismatch for poster.png. Expected " +
                                  recorded + ", got " + std::string(emptyDigest) +
                                  ".\n"
                                  "The handoff contains an unsafe artifact path: thumbnail.png\n"
                                  "1 missing, 1 changed, 1 other failures\n");
}

TEST(VerifyExample, ShowsWhyAWorkspaceCannotBeLoaded) {
    const TemporaryDirectory empty;
    const std::string run = empty / "run.json";
    expectResult("verify", {run}, 1, "", "No run.json exists at " + run + ".\n");
}

TEST(MainLoopExample, ShowsTheStatusOfARun) {
    const PlannedRun planned;
    const Arguments arguments{programPath("film"), planned.manifest};
    expectResult("main_loop", arguments, 0,
                 "Asking the film tool …\nFerry & “Lamp”: plan, 0 of 10 steps proven\n", "");
    planned.film.approve(planned.manifest, "plan", "n", "m").get();
    planned.film.advance(planned.manifest).get();
    expectResult("main_loop", arguments, 0,
                 "Asking the film tool …\nFerry & “Lamp”: frames, 1 of 10 steps proven\n", "");
}

TEST(CoroutinesExample, AdvancesARunFromGateToGate) {
    const PlannedRun planned;
    const Arguments arguments{programPath("film"), planned.manifest};
    for (const char* output :
         {"Ferry & “Lamp”: plan\napproved plan\nFerry & “Lamp”: frames, 1 of 10 steps proven\n",
          "Ferry & “Lamp”: frames\napproved frames\nFerry & “Lamp”: rough-cut, 7 of 10 steps proven\n",
          "Ferry & “Lamp”: rough-cut\napproved rough-cut\nFerry & “Lamp”: delivery, 8 of 10 steps proven\n",
          "Ferry & “Lamp”: delivery\napproved delivery\nFerry & “Lamp”: done, 10 of 10 steps proven\n",
          "Ferry & “Lamp”: done\nFerry & “Lamp”: done, 10 of 10 steps proven\n"})
        expectResult("coroutines", arguments, 0, output, "");
    const FilmApproval plan = planned.film.status(planned.manifest).get().approvals.at("plan");
    EXPECT_EQ(plan.note, "looks right");
    EXPECT_EQ(plan.approvedBy, "director");
}

TEST(MainLoopAndCoroutinesExamples, ShowTheErrorOfTheFilmTool) {
    struct Row {
        const char* sentence;
        std::string film, run;
        const char* misbehaviour;
        std::string errors;
    };
    const PlannedRun planned;
    const std::string film = programPath("film");
    const std::string noProgram = planned.directory / "no film";
    const std::string noRun = planned.directory / "run.json";
    const std::vector<Row> rows{
        {"the program is missing", noProgram, planned.manifest, "",
         "Required executable not found: " + noProgram + "\n"},
        {"the run is missing", film, noRun, "", "there is no film at \"" + noRun + "\"\n\n"},
        {"the program fails", film, planned.manifest, "complain",
         "The projector has lost a reel. Try again after the intermission.\n\n"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        const Variable misbehaviour("FILM_MISBEHAVE", row.misbehaviour);
        expectResult("main_loop", {row.film, row.run}, 1, "Asking the film tool …\n", row.errors);
        expectResult("coroutines", {row.film, row.run}, 1, "", row.errors);
    }
}

TEST(StatusLineExample, TestsWithoutProgramsAndWithTheSimulator) {
    const TemporaryDirectory directory;
    const Variable misbehaviour("FILM_MISBEHAVE", std::nullopt);
    expectResult("status_line", {programPath("film"), directory / "film"}, 0,
                 "Lamp: frames\nRequired executable not found: film\nLamp: plan\nFilm command exited 4.\n",
                 "");
    const std::string missing = directory / "film";
    expectResult("status_line", {missing, directory / "other"}, 1,
                 "Lamp: frames\nRequired executable not found: film\n",
                 "Required executable not found: " + missing + "\n");
}

TEST(Examples, ShowTheirUsageWhenTheNumberOfArgumentsIsWrong) {
    struct Row {
        const char* example;
        Arguments arguments;
        const char* errors;
    };
    const std::vector<Row> rows{
        {"publish", {}, "usage: publish RUN_JSON VISTREL MANIFEST\n"},
        {"publish", {"run.json", "vistrel"}, "usage: publish RUN_JSON VISTREL MANIFEST\n"},
        {"publish", {"run.json", "vistrel", "m", ""}, "usage: publish RUN_JSON VISTREL MANIFEST\n"},
        {"verify", {}, "usage: verify RUN_JSON\n"},
        {"verify", {"run.json", ""}, "usage: verify RUN_JSON\n"},
        {"main_loop", {"film"}, "usage: main_loop FILM RUN_JSON\n"},
        {"main_loop", {"film", "run.json", ""}, "usage: main_loop FILM RUN_JSON\n"},
        {"coroutines", {"film"}, "usage: coroutines FILM RUN_JSON\n"},
        {"coroutines", {"film", "run.json", ""}, "usage: coroutines FILM RUN_JSON\n"},
        {"status_line", {"film"}, "usage: status_line FILM_SIMULATOR DIRECTORY\n"},
        {"status_line", {"film", "films", ""}, "usage: status_line FILM_SIMULATOR DIRECTORY\n"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.errors);
        expectResult(row.example, row.arguments, 2, "", row.errors);
    }
}

} // namespace
} // namespace kinovane::test

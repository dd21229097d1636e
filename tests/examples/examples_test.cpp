// SPDX-License-Identifier: Apache-2.0

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <kinovane/tooling.hpp>

#include "support/sample_film.hpp"
#include "support/variable.hpp"

namespace kinovane::test {
namespace {

/// A film that has just been planned.
struct Planned {
    TemporaryDirectory directory;
    Variable behaviour{"FILM_MISBEHAVE", std::nullopt};
    FilmToolClient film{programPath("film")};
    std::string run = film.plan("A lamp is borrowed", "Ferry & “Lamp”", 6, directory / "film").get();
};

ProcessResult resultOf(const std::string& example, const std::vector<std::string>& arguments) {
    Task<ProcessResult> task = FilmToolClient(programPath(example)).run(arguments);
    try {
        return task.get();
    } catch (const FilmToolError& error) {
        return std::get<FilmToolError::commandFailed>(error.value()).result;
    }
}

void expectOutput(const std::string& example, const std::vector<std::string>& arguments,
                  const std::string& output) {
    EXPECT_EQ(resultOf(example, arguments), (ProcessResult{programPath(example), arguments, 0, output, ""}));
}

TEST(Examples, TheMainLoopShowsHowAFilmStands) {
    const Planned planned;
    const std::vector<std::string> arguments{programPath("film"), planned.run};
    expectOutput("main_loop", arguments,
                 "Asking the film tool …\nFerry & “Lamp”: plan, 0 of 10 steps proven\n");
    planned.film.approve(planned.run, "plan", "n", "m").get();
    planned.film.advance(planned.run).get();
    expectOutput("main_loop", arguments,
                 "Asking the film tool …\nFerry & “Lamp”: frames, 1 of 10 steps proven\n");
}

TEST(Examples, TheCoroutineTakesAFilmFromGateToGate) {
    const Planned planned;
    const std::vector<std::string> arguments{programPath("film"), planned.run};
    for (const char* output :
         {"Ferry & “Lamp”: plan\napproved plan\nFerry & “Lamp”: frames, 1 of 10 steps proven\n",
          "Ferry & “Lamp”: frames\napproved frames\nFerry & “Lamp”: rough-cut, 7 of 10 steps proven\n",
          "Ferry & “Lamp”: rough-cut\napproved rough-cut\nFerry & “Lamp”: delivery, 8 of 10 steps proven\n",
          "Ferry & “Lamp”: delivery\napproved delivery\nFerry & “Lamp”: done, 10 of 10 steps proven\n",
          "Ferry & “Lamp”: done\nFerry & “Lamp”: done, 10 of 10 steps proven\n"})
        expectOutput("coroutines", arguments, output);
    const FilmApproval plan = planned.film.status(planned.run).get().approvals.at("plan");
    EXPECT_EQ(plan.note, "looks right");
    EXPECT_EQ(plan.approvedBy, "director");
}

TEST(Examples, Failures) {
    const Planned planned;
    const std::string film = programPath("film");
    const std::string nowhere = (planned.directory / "no film").string();
    const std::string noRun = (planned.directory / "run.json").string();
    const std::string asking = "Asking the film tool …\n";
    struct Row {
        const char* sentence;
        const char* example;
        std::vector<std::string> arguments;
        std::int32_t exitCode;
        std::string output, errors;
    };
    const std::vector<Row> rows{
        {"the loop without a program",
         "main_loop",
         {nowhere, planned.run},
         1,
         asking,
         "Required executable not found: " + nowhere + "\n"},
        {"the coroutine without a program",
         "coroutines",
         {nowhere, planned.run},
         1,
         "",
         "Required executable not found: " + nowhere + "\n"},
        {"the loop without a film",
         "main_loop",
         {film, noRun},
         1,
         asking,
         "there is no film at \"" + noRun + "\"\n\n"},
        {"the coroutine without a film",
         "coroutines",
         {film, noRun},
         1,
         "",
         "there is no film at \"" + noRun + "\"\n\n"},
        {"the loop without arguments", "main_loop", {}, 2, "", "usage: main_loop FILM RUN_JSON\n"},
        {"the coroutine without arguments", "coroutines", {}, 2, "", "usage: coroutines FILM RUN_JSON\n"},
        {"the loop with an argument more",
         "main_loop",
         {film, planned.run, ""},
         2,
         "",
         "usage: main_loop FILM RUN_JSON\n"},
        {"the coroutine with an argument less",
         "coroutines",
         {film},
         2,
         "",
         "usage: coroutines FILM RUN_JSON\n"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        EXPECT_EQ(
            resultOf(row.example, row.arguments),
            (ProcessResult{programPath(row.example), row.arguments, row.exitCode, row.output, row.errors}));
    }
}

TEST(Examples, TheReasonOfATroubledToolIsShown) {
    const Planned planned;
    const Variable behaviour("FILM_MISBEHAVE", "complain");
    const std::string reason = "The projector has lost a reel. Try again after the intermission.\n";
    for (const auto& [example, output] :
         {std::pair{"main_loop", "Asking the film tool …\n"}, std::pair{"coroutines", ""}}) {
        SCOPED_TRACE(example);
        const std::vector<std::string> arguments{programPath("film"), planned.run};
        EXPECT_EQ(resultOf(example, arguments),
                  (ProcessResult{programPath(example), arguments, 1, output, reason + "\n"}));
    }
}

} // namespace
} // namespace kinovane::test

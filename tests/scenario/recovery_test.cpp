// SPDX-License-Identifier: Apache-2.0

#include <gtest/gtest.h>

#include "scenario/production.hpp"
#include "support/sample_film.hpp"
#include "support/task_failure.hpp"

namespace kinovane::test {
namespace {

namespace fs = std::filesystem;

TEST(Recovery, HasNothingToDo) {
    const Production production;
    production.pass("plan");
    const FilmWorkspaceSnapshot before = production.checked();
    const ProcessResult result = production.film.recover(production.run).get();
    EXPECT_EQ(result, (ProcessResult{programPath("film"),
                                     {"recover", production.run.string()},
                                     0,
                                     "There is nothing to recover.\n",
                                     ""}));
    EXPECT_EQ(production.checked(), before);
}

TEST(Recovery, UndoesAnInterruptedStep) {
    struct Row {
        const char* sentence;
        std::vector<std::string> passed;
        const char* approved;
        const char* step;
        const char* leftover; ///< A file of the step that no document knows.
    };
    const std::vector<Row> rows{
        {"the frames", {}, "plan", "frames", "frames/shot-03.png"},
        {"the clips", {"plan"}, "frames", "clips", "clips/shot-01.mp4"},
        {"the master", {"plan", "frames"}, "rough-cut", "delivery", "masters/final-master.mp4"},
        {"the delivery", {"plan", "frames", "rough-cut"}, "delivery", "done", "delivery/delivery.json"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        const Production whole;
        const Production production;
        for (const std::string& gate : row.passed) {
            whole.pass(gate);
            production.pass(gate);
        }
        production.approve(row.approved);
        const FilmWorkspaceSnapshot before = production.checked();
        EXPECT_FALSE(fs::exists(production.folder / row.leftover));

        production.cutOff();
        EXPECT_TRUE(fs::exists(production.folder / row.leftover));
        EXPECT_EQ(FilmProjectLoader::load(production.run), before);

        EXPECT_EQ(production.film.recover(production.run).get().stdout,
                  "The step \"" + std::string(row.step) +
                      "\" was cut off. Its loose ends are gone; the film can go on.\n");
        EXPECT_EQ(production.checked(), before);
        EXPECT_EQ(production.film.recover(production.run).get().stdout, "There is nothing to recover.\n");

        EXPECT_EQ(production.film.advance(production.run).get().stdout, whole.pass(row.approved));
        EXPECT_EQ(production.checked().project, whole.checked().project);
    }
}

TEST(Recovery, IsRequiredBeforeAnyChange) {
    const Production production;
    production.pass("plan");
    production.approve("frames");
    const FilmWorkspaceSnapshot before = production.checked();
    production.cutOff();
    const FilmToolClient& film = production.film;
    const std::string run = production.run.string();
    const std::string message = "The last step of this film was cut off. Recover the film first.\n";
    EXPECT_EQ(errorOf(film.advance(run)), production.refusal({"run", run}, message));
    EXPECT_EQ(errorOf(film.review(run)), production.refusal({"review", run}, message));
    EXPECT_EQ(errorOf(film.reroll(run, "shot-01", "n")),
              production.refusal({"reroll", run, "--shot", "shot-01", "--note", "n"}, message));
    EXPECT_EQ(errorOf(film.approve(run, "delivery", "n", "m")),
              production.refusal({"approve", run, "--gate", "delivery", "--note", "n", "--approved-by", "m"},
                                 message));

    FilmWorkspaceSnapshot shown = before;
    shown.project.issues.push_back({"interrupted-step",
                                    "The last step was cut off. Recover the film before going on.", true,
                                    std::nullopt});
    expectSame(film.status(run).get(), shown);

    film.recover(run).get();
    EXPECT_EQ(production.checked(), before);
}

TEST(Recovery, KeepsAnArchivedTake) {
    const Production production;
    production.passUpTo("frames");
    production.film.reroll(production.run, "shot-02", "Slower").get();
    const FilmWorkspaceSnapshot before = production.checked();
    production.cutOff();
    EXPECT_TRUE(fs::exists(production.folder / "frames/shot-02.png"));
    production.film.recover(production.run).get();
    EXPECT_EQ(production.checked(), before);
    EXPECT_FALSE(fs::exists(production.folder / "frames/shot-02.png"));
    EXPECT_TRUE(fs::exists(production.folder / "takes/shot-02/take-1/frame.png"));
    production.film.advance(production.run).get();
    EXPECT_EQ(production.checked().project.shots[1].take, 2);
}

} // namespace
} // namespace kinovane::test

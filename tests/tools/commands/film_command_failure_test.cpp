// SPDX-License-Identifier: Apache-2.0

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tools/command_line_tool.hpp"
#include "tools/commands/planned_film.hpp"

namespace kinovane::test {

namespace {

TEST(FilmCommandFailure, TellsWhyTheToolFailed) {
    const PlannedFilm film;
    const std::string nothing =
        "Nothing changed.\n" +
        waitingText(film, "plan",
                    "The story in three shots. The brief has an "
                    "open question:\n“Who should see this film first?” Answer in the note (--note)");
    const struct {
        const char* sentence;
        std::vector<std::string> arguments;
        const char* misbehaviour;
        std::string err;
    } rows[]{
        {"a reason",
         {"advance"},
         "complain",
         "Continuing the production with " + film.tool +
             "\nThe projector has lost a reel. Try again after the intermission.\n"
             "kinovane: film exited 4.\n"},
        {"a reason that was not shown",
         {"advance", "--quiet"},
         "complain",
         "kinovane: film: The projector has lost a reel. Try again after the intermission.\n"},
        {"no reason", {"recover", "--quiet"}, "exit-4", "kinovane: Film command exited 4.\n"},
        {"a signal", {"recover", "--quiet"}, "killed", "kinovane: film was ended by signal 9 (Killed).\n"},
        {"a refusal", {"advance", "--quiet"}, "", "kinovane: film: The gate \"plan\" is not approved.\n"},
    };
    for (const auto& [sentence, arguments, misbehaviour, err] : rows)
        EXPECT_EQ(film(arguments, misbehaviour), (Outcome{5, nothing, err})) << sentence;
    EXPECT_EQ(runCommandLineTool({"advance", film.folder, "--quiet", "--film-tool", "no-such-film"}),
              (Outcome{5, nothing, "kinovane: Required executable not found: no-such-film\n"}));
    EXPECT_EQ(
        film({"export", "--quiet"}, "not-json"),
        (Outcome{
            5, "",
            "kinovane: Film command returned invalid JSON: line 1, column 1: this is not valid JSON\n"}));
}

TEST(FilmCommandFailure, ShowsWhatChangedBefore) {
    const PlannedFilm film;
    EXPECT_EQ(film({"approve"}).status, 0);
    const Outcome outcome = film({"advance"}, "cut-off");
    EXPECT_EQ(outcome.status, 5);
    EXPECT_EQ(outcome.err, "Continuing the production with " + film.tool +
                               "\nkinovane: film was ended by signal 9 (Killed).\n");
    EXPECT_TRUE(outcome.out.starts_with("Nothing changed.\n")) << outcome;
    EXPECT_EQ(film({"advance", "--quiet"}).err,
              "kinovane: film: The last step of this film was cut off. Recover the film first.\n");
    EXPECT_EQ(film({"recover"}).status, 0);
    EXPECT_EQ(film({"advance"}).status, 0);
}

TEST(FilmCommandFailure, NamesWhatTheFilmDoesNotHave) {
    const PlannedFilm film;
    const std::string ownFile = film.folder + "/production-plan.json";
    const struct {
        std::vector<std::string> arguments;
        int status;
        std::string err;
    } rows[]{
        {{"approve", "rough-cot", film.folder},
         2,
         "\"rough-cot\" is not a gate of \"Lamp & “Light”\". Did you mean \"rough-cut\"?"},
        {{"approve", "\x1b[31m", film.folder}, 2, "\"\\x1b[31m\" is not a gate of \"Lamp & “Light”\""},
        {{"reroll", "shot-1", film.folder, "--note", "n"},
         2,
         "\"shot-1\" is not a shot of \"Lamp & “Light”\". Did you mean \"shot-01\"?"},
        {{"export", film.folder, "--output", ownFile},
         2,
         ownFile + " is one of the film's own files, and is not replaced"},
        {{"advance", film.folder + "/nowhere"}, 3, "No run.json exists at " + film.folder + "/nowhere."},
    };
    for (const auto& [arguments, status, err] : rows)
        EXPECT_EQ(film.run(arguments), (Outcome{status, "", "kinovane: " + err + "\n"}));

    EXPECT_EQ(film({"approve"}).status, 0);
    EXPECT_EQ(film({"approve"}), (Outcome{2, "", "kinovane: no gate waits for approval\n"}));
}

} // namespace

} // namespace kinovane::test

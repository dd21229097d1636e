// SPDX-License-Identifier: Apache-2.0

#include <string>

#include <gtest/gtest.h>

#include "support/sample_film.hpp"
#include "tools/command_line_tool.hpp"

namespace kinovane::test {

namespace {

TEST(Status, ShowsWhereAFilmStandsAndTheNextStep) {
    const std::string folder = sampleFilm().string();
    EXPECT_EQ(runCommandLineTool({"status", folder}),
              (Outcome{0,
                       "A Lamp for the Late Ferry\n"
                       "  Phase   delivered\n"
                       "  Status  completed\n"
                       "  Proof   10 of 10 steps\n"
                       "  Shots   7, all accepted\n"
                       "\n"
                       "The film is complete.\n"
                       "Next: kinovane verify " +
                           folder + "\nThen: kinovane publish " + folder + "\n",
                       ""}));
}

TEST(Status, ShowsAFilmThatWaits) {
    const TemporaryDirectory directory;
    directory.write("my film/film-project.json",
                    replaced(replaced(replaced(smallestProject(), R"("clips":true)", R"("clips":false)"),
                                      R"("title":"t")", R"("title":"Night\u001b[31m Shift")"),
                             R"("approvals":{})", R"("approvals":{"a; b":{"status":"requested"}})"));
    directory.write("my film/run.json", "");
    const std::string folder = (directory / "my film").string();
    EXPECT_EQ(runCommandLineTool({"status", folder}), (Outcome{0,
                                                               "Night\\x1b[31m Shift\n"
                                                               "  Phase   f\n"
                                                               "  Status  s\n"
                                                               "  Proof   8 of 10 steps; next: clips\n"
                                                               "  Shots   0\n"
                                                               "\n"
                                                               "The film waits for the approval of “a; b”.\n"
                                                               "Next: kinovane approve 'a; b' '" +
                                                                   folder + "'\n",
                                                               ""}));
    EXPECT_EQ(
        runCommandLineTool({"status", folder, "--json"}),
        (Outcome{
            0,
            R"({"version":1,"film":")" + folder +
                R"(","title":"Night\u001b[31m Shift","projectId":"p","phase":"f","status":"s","proof":{"completed":8,"total":10,"missing":["clips","captions"]},)"
                R"("shots":{"count":0,"byStatus":{},"withoutStatus":0,"planned":null,)"
                R"("plannedSeconds":null},"next":{"reason":"The film waits for the approval of )"
                R"(“a; b”.","commands":[["kinovane","approve","a; b",")" +
                folder + "\"]]}}\n",
            ""}));
}

TEST(Status, ReportsAFilmThatCannotBeLoaded) {
    const TemporaryDirectory directory;
    EXPECT_EQ(
        runCommandLineTool({"status", directory.path().string()}),
        (Outcome{3, "", "kinovane: No run.json exists at " + directory.path().string() + "/run.json.\n"}));
}

} // namespace

} // namespace kinovane::test

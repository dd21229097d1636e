// SPDX-License-Identifier: Apache-2.0

#include <string>

#include <boost/json.hpp>
#include <gtest/gtest.h>

#include "support/sample_film.hpp"
#include "tools/command_line_tool.hpp"

namespace kinovane::test {

namespace {

/// A film with two shots, one of them with a frame, a clip and a sound.
struct PlannedFilm {
    PlannedFilm() {
        FilmProductionPlan& plan = *workspace.snapshot.productionPlan;
        plan.locations = {{"quay", "The Quay", "", "", {}}};
        plan.shots = {shotOf("s1", 1.5), shotOf("s2\x1b[m", 62.25)};
        plan.shots[0].location = "quay";
        plan.shots[0].status = "accepted";
        plan.shots[0].take = 2;
        plan.shots[1].location = "nowhere";
        plan.shots[1].status = "planned";
        plan.shots[1].take = 1;
        plan.shots[1].dialogue = {{"noor", "Borrow mine?", 0, ""}, {"ana", "Yes.", 1, ""}};
        workspace.add("shot-keyframe", "frames/s1.png", "frame");
        workspace.add("shot-clip", "clips/s1.mp4", "clip");
        workspace.add("sound-effect", "effects/s1-1-waves.wav", "waves");
        workspace.add("sound-effect", "effects/s1-b-1.wav", "of another shot");
        writeDocuments(workspace);
        workspace.directory.write("run.json", "");
    }

    std::string folder() const { return workspace.directory.path().string(); }

    WorkspaceMaker workspace;
};

TEST(Shots, AreListedInFilmOrder) {
    const PlannedFilm film;
    EXPECT_EQ(
        runCommandLineTool({"shots", film.folder()}),
        (Outcome{0,
                 "  #  shot         start    length  take  status    frame  clip  sound  place     dialogue\n"
                 "  1  s1        0:00.000  0:01.500     2  accepted  yes    yes   yes    The Quay\n"
                 "  2  s2\\x1b[m  0:01.500  1:02.250     1  planned   no     no    no     nowhere   "
                 "2 lines: Borrow mi…\n",
                 ""}));
}

TEST(Shots, ArePrintedAsJSON) {
    const PlannedFilm film;
    const Outcome outcome = runCommandLineTool({"shots", film.folder(), "--json"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(boost::json::parse(outcome.out),
              boost::json::parse(R"({"version": 1, "film": ")" + film.folder() + R"(", "shots": [
        {"id": "s1", "order": 0, "startMilliseconds": 0, "durationMilliseconds": 1500, "take": 2,
         "status": "accepted", "location": "quay", "locationName": "The Quay", "dialogue": [],
         "keyframe": "frames/s1.png", "clip": "clips/s1.mp4", "sounds": ["effects/s1-1-waves.wav"]},
        {"id": "s2\u001b[m", "order": 1, "startMilliseconds": 1500, "durationMilliseconds": 62250, "take": 1,
         "status": "planned", "location": "nowhere", "locationName": null,
         "dialogue": [{"speaker": "noor", "text": "Borrow mine?"}, {"speaker": "ana", "text": "Yes."}],
         "keyframe": null, "clip": null, "sounds": []}]})"))
        << outcome;
}

TEST(Shots, AreNoneWithoutAPlan) {
    const TemporaryDirectory directory;
    directory.write("film-project.json", smallestProject());
    directory.write("run.json", "");
    EXPECT_EQ(runCommandLineTool({"shots", directory.path().string()}),
              (Outcome{0, "There is no production plan yet.\n", ""}));
    EXPECT_EQ(
        runCommandLineTool({"shots", directory.path().string(), "--json"}),
        (Outcome{0, R"({"version":1,"film":")" + directory.path().string() + "\",\"shots\":[]}\n", ""}));
}

} // namespace

} // namespace kinovane::test

// SPDX-License-Identifier: Apache-2.0

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include <boost/json.hpp>
#include <gtest/gtest.h>

#include "support/temporary_directory.hpp"
#include "tools/command_line_tool.hpp"

namespace kinovane::test {

namespace {

namespace fs = std::filesystem;

/// A film in production, with an example of everything that can be missing, waiting or failed.
void writeUnfinishedFilm(const TemporaryDirectory& directory) {
    const std::vector<std::pair<std::string, std::string>> replacements{
        {R"("title":"t")", R"("title":"Night\u001b[31m Shift")"},
        {R"("clips":true)", R"("clips":false)"},
        {R"("humanReview":true)", R"("humanReview":false)"},
        {R"("approvals":{})", R"("approvals":{"treatment":{"status":"approved","approvedBy":"Ana"},)"
                              R"("rough-cut":{"status":"requested"}})"},
        {R"("shots":[])", R"("shots":[{"id":"s1","status":"failed"},{"id":"s2","status":"accepted"},)"
                          R"({"id":"s3"},{"id":"s4","status":"accepted"}])"},
        {R"("reviewRequests":[])",
         R"("reviewRequests":[{"shotId":"s1","note":"Darker.","status":"queued","recordedAt":"2026-03-01"},)"
         R"({"shotId":"s2","note":"Longer.","status":"applied","recordedAt":"2026-03-02"},)"
         R"({"shotId":"s3","note":"Shorter.","status":"done","recordedAt":"2026-03-03","appliedAt":"2026-03-04"},)"
         R"({"shotId":"s4","note":"Why?","status":"dismissed","recordedAt":"2026-03-05"}])"},
        {R"("issues":[])",
         R"("issues":[{"code":"quiet","message":"The door is silent.","blocking":false},)"
         R"({"code":"no-key","message":"Shot s1 has no key frame, and without it no clip can be )"
         R"(made; reroll the shot or draw a frame by hand.","blocking":true}])"},
    };
    std::string project = smallestProject();
    for (const auto& [what, by] : replacements)
        project = replaced(project, what, by);
    directory.write("film-project.json", project);
    directory.write("run.json", "");
}

boost::json::value inspectedJSON(const fs::path& location) {
    const Outcome outcome = runCommandLineTool({"inspect", location.string(), "--json"});
    EXPECT_EQ(outcome.status, 0) << outcome;
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(std::ranges::count(outcome.out, '\n'), 1) << outcome.out;
    return boost::json::parse(outcome.out);
}

TEST(Inspect, ShowsTheSampleFilm) {
    const Outcome expected{0, golden("inspect.txt", sampleFilm()), ""};
    EXPECT_EQ(runCommandLineTool({"inspect", (sampleFilm() / "run.json").string()}), expected);
    EXPECT_EQ(runCommandLineTool({"inspect", sampleFilm().string()}), expected)
        << "the folder stands for its run.json";
}

TEST(Inspect, ShowsAnUnfinishedFilm) {
    const TemporaryDirectory directory;
    writeUnfinishedFilm(directory);
    EXPECT_EQ(runCommandLineTool({"inspect", (directory / "run.json").string()}),
              (Outcome{0, golden("unfinished.txt", directory.path()), ""}));
}

TEST(Inspect, ShowsThatThePlanHasAnotherNumberOfShots) {
    const WorkspaceMaker workspace;
    writeDocuments(workspace);
    const Outcome outcome = runCommandLineTool({"inspect", workspace.snapshot.runManifest.string()});
    EXPECT_NE(outcome.out.find("\n  Shots         0 (the plan has 1)\n  Running time  0:01.500 planned\n"),
              std::string::npos)
        << outcome;
}

TEST(Inspect, AcceptsAnyCharactersInAPath) {
    const TemporaryDirectory directory;
    const fs::path manifest = directory.write("a film, 'late' \"x\" [1] %s/run.json", "");
    fs::copy_file(sampleFilm() / "film-project.json", manifest.parent_path() / "film-project.json");
    const Outcome outcome = runCommandLineTool({"inspect", manifest.string()});
    EXPECT_EQ(outcome.status, 0) << outcome;
    EXPECT_TRUE(
        outcome.out.starts_with("A Lamp for the Late Ferry\n" + manifest.parent_path().string() + "\n"))
        << outcome;
}

TEST(Inspect, PrintsTheSampleFilmAsJSON) {
    const boost::json::value actual = inspectedJSON(sampleFilm() / "run.json");
    const boost::json::value expected = boost::json::parse(golden("inspect.json", sampleFilm()));
    EXPECT_EQ(actual, expected) << boost::json::serialize(actual);
}

TEST(Inspect, PrintsAnUnfinishedFilmAsJSON) {
    const TemporaryDirectory directory;
    writeUnfinishedFilm(directory);
    const boost::json::value actual = inspectedJSON(directory.path());
    const boost::json::value expected = boost::json::parse(golden("unfinished.json", directory.path()));
    EXPECT_EQ(actual, expected) << boost::json::serialize(actual);
}

} // namespace

} // namespace kinovane::test

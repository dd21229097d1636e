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
        {R"("brief":{})", R"("brief":{"openQuestions":["Who sees it first?"]})"},
        {R"("jobs":[])",
         R"("jobs":[{"id":"job-6","kind":"clip","status":"completed","shotId":"s2"},)"
         R"({"id":"job-7","kind":"clip","status":"failed","shotId":"s1","error":"There is no memory left."},)"
         R"({"id":"job-8","kind":"clip","status":"failed","shotId":"s2","error":"It was repeated."}])"},
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

TEST(Inspect, ShowsWhatInTheDocumentsPreventsTheHandoff) {
    WorkspaceMaker workspace;
    workspace.add("poster", "poster.png", "a poster");
    workspace.add("score", "poster.png", "a poster");
    writeDocuments(workspace);
    const std::string film = workspace.snapshot.runManifest.string();
    const Outcome text = runCommandLineTool({"inspect", film});
    EXPECT_EQ(text.status, 4) << text;
    const std::string finding = "The project records this file twice: poster.png";
    EXPECT_NE(text.out.find("\nPrevents the handoff\n  " + finding + "\n"), std::string::npos) << text;
    const Outcome json = runCommandLineTool({"inspect", film, "--json"});
    EXPECT_EQ(json.status, 4) << json;
    EXPECT_EQ(boost::json::parse(json.out).at("films").at(0).at("preventsHandoff"),
              boost::json::array{finding});
}

TEST(Inspect, ContinuesAfterAFilmThatCannotBeLoaded) {
    const TemporaryDirectory directory;
    writeUnfinishedFilm(directory);
    const std::string missing = (directory / "missing").string();
    const std::string unfinished = golden("unfinished.txt", directory.path());
    const std::string sample = golden("inspect.txt", sampleFilm());
    EXPECT_EQ(runCommandLineTool({"inspect", directory.path().string(), missing, sampleFilm().string()}),
              (Outcome{3, unfinished + "\n" + sample, "kinovane: No run.json exists at " + missing + ".\n"}));

    const Outcome json =
        runCommandLineTool({"inspect", "--json", missing, sampleFilm().string(), directory.path().string()});
    EXPECT_EQ(json.status, 3);
    EXPECT_EQ(
        json.err,
        "{\"version\":1,\"error\":{\"kind\":\"workspace\",\"status\":3,\"message\":\"No run.json exists at " +
            missing + ".\"}}\n");
    const boost::json::value films = boost::json::parse(json.out).at("films");
    ASSERT_EQ(films.as_array().size(), 3U);
    EXPECT_EQ(films.at(0),
              (boost::json::value{{"film", missing}, {"error", "No run.json exists at " + missing + "."}}));
    EXPECT_EQ(films.at(1).at("title"), "A Lamp for the Late Ferry");
}

TEST(Inspect, ShowsHostileDocuments) {
    const TemporaryDirectory directory;
    const std::string title = "\\u001b]0;x\\u0007\\u202e" + std::string(1'000'000, 'm');
    directory.write("film-project.json",
                    replaced(replaced(smallestProject(), R"("title":"t")", R"("title":")" + title + "\""),
                             R"("approvals":{})", R"("approvals":{"\u009b2J":{"status":"\u2028"}})"));
    directory.write("run.json", "");
    const Outcome outcome = runCommandLineTool({"inspect", directory.path().string()});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_TRUE(outcome.out.starts_with("\\x1b]0;x\\x07\\u{202e}mmm")) << outcome.out.substr(0, 200);
    EXPECT_EQ(outcome.out.find('\n'), 76U + std::string("…").size() + 23U)
        << "the title has one line of 100 columns";
    EXPECT_NE(outcome.out.find("\n  \\u{9b}2J  \\u{2028}\n"), std::string::npos) << outcome;
}

} // namespace

} // namespace kinovane::test

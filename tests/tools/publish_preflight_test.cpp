// SPDX-License-Identifier: Apache-2.0

#include <filesystem>
#include <functional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include <kinovane/preflight.hpp>

#include "film/finding_code.hpp"
#include "support/temporary_directory.hpp"
#include "tools/command_line_tool.hpp"
#include "tools/publish_film.hpp"

namespace kinovane::test {

namespace {

constexpr double tooLong = 9.3e15; // Seconds; in milliseconds more than 64 bits.

/// A workspace that cannot be published, and the findings about its documents, one in each line.
struct Row {
    std::string sentence;
    std::function<void(WorkspaceMaker&)> damage;
    std::vector<std::string> findings;
};

void recordTwice(WorkspaceMaker& workspace) {
    workspace.add("poster", "poster.png", "a poster");
    workspace.add("score", "poster.png", "a poster");
}

const std::vector<Row>& rows() {
    static const std::string twice = "The project records this file twice: poster.png";
    static const std::string duration =
        "The duration of the shot \"s1\" does not fit 64 bits of milliseconds.";
    static const std::vector<Row> all{
        {"a path recorded twice", recordTwice, {twice}},
        {"a duration out of range",
         [](auto& workspace) { workspace.snapshot.productionPlan->shots[0].durationSeconds = tooLong; },
         {duration}},
        {"a planned duration out of range",
         [](auto& workspace) { workspace.snapshot.productionPlan->plannedDurationSeconds = -tooLong; },
         {"The film's planned duration does not fit 64 bits of milliseconds."}},
        {"a timeline out of range",
         [](auto& workspace) {
             workspace.snapshot.productionPlan->shots = {shotOf("s1", 9e15), shotOf("s2", 9e15)};
         },
         {"With the shot \"s2\" the film does not fit 64 bits of milliseconds."}},
        {"a digest that no file can have",
         [](auto& workspace) { workspace.add("poster", "poster.png", "").sha256 = "sha256:0"; },
         {"The recorded digest is not \"sha256:\" and 64 lowercase digits: poster.png"}},
        {"several findings",
         [](auto& workspace) {
             recordTwice(workspace);
             workspace.list("score", "../score.m4a");
             workspace.snapshot.productionPlan->shots[0].durationSeconds = tooLong;
         },
         {twice, duration, "The path does not lead to a file in the film's folder: ../score.m4a"}},
        {"control characters in a path",
         [](auto& workspace) {
             workspace.list("score", "../a\x1b[31m\nb");
             workspace.list("score", "../c");
         },
         {"The path does not lead to a file in the film's folder: ../a\\x1b[31m\\nb",
          "The path does not lead to a file in the film's folder: ../c"}},
    };
    return all;
}

TEST(PublishPreflight, ListsWhatPreventsTheHandoff) {
    for (const Row& row : rows()) {
        SCOPED_TRACE(row.sentence);
        WorkspaceMaker workspace;
        row.damage(workspace);
        writeDocuments(workspace);
        std::string findings;
        for (const std::string& finding : row.findings)
            findings += "  " + finding + "\n";
        EXPECT_EQ(runCommandLineTool({"publish", workspace.snapshot.runManifest.string(), "--vistrel",
                                      programPath("vistrel")}),
                  (Outcome{4, "", "Loaded    t\nkinovane: The film cannot be handed over:\n" + findings}));
        EXPECT_FALSE(std::filesystem::exists(workspace.directory / "vistrel-handoff.json"));
    }
}

TEST(PublishPreflight, ListsWhatPreventsTheHandoffAsJSON) {
    WorkspaceMaker workspace;
    recordTwice(workspace);
    writeDocuments(workspace);
    EXPECT_EQ(
        runCommandLineTool(
            {"publish", workspace.directory.path().string(), "--vistrel", programPath("vistrel"), "--json"}),
        (Outcome{
            4, "",
            R"({"version":1,"error":{"kind":"handoff","status":4,"message":"The film cannot be handed over:\n  )"
            R"(The project records this file twice: poster.png","findings":[{"code":)"
            R"("pathRecordedTwice","text":"The project records this file twice: poster.png"}]}})"
            "\n"}));
}

TEST(FindingCode, HasANameOfItsOwn) {
    std::set<std::string_view> names;
    constexpr int last = static_cast<int>(PreflightCode::negativeDuration);
    for (int code = 0; code <= last; ++code)
        names.insert(tool::nameOf(static_cast<PreflightCode>(code)));
    EXPECT_EQ(names.size(), last + 1U);
    EXPECT_FALSE(names.contains("unknown"));
}

TEST(PublishPreflight, RefusesWarningsWhenAsked) {
    const PublishFilm film;
    std::string findings;
    for (const PreflightFinding& finding : VistrelHandoffBuilder::preflight(film.workspace.snapshot))
        findings += "  " + finding.text + "\n";
    EXPECT_EQ(
        film.publish({"--strict"}),
        (Outcome{4, "",
                 "Loaded    t\nkinovane: The film has warnings, which --strict refuses:\n" + findings}));
    EXPECT_FALSE(std::filesystem::exists(film.manifest()));
}

TEST(PublishPreflight, IsNeededForAPathThatTheManifestCannotCarry) {
    const TemporaryDirectory directory;
    const std::filesystem::path film = directory / "caf\xe9";
    std::filesystem::copy(sampleFilm(), film, std::filesystem::copy_options::recursive);
    EXPECT_EQ(runCommandLineTool({"publish", film.string(), "--manifest-only"}),
              (Outcome{4, "",
                       "Loaded    A Lamp for the Late Ferry\nkinovane: The film cannot be handed over:\n"
                       "  The project cannot be written: projectRoot: the text is not UTF-8\n"}));
}

// The other commands show such a workspace like any other.
TEST(PublishPreflight, IsNotNeededToInspectOrVerify) {
    for (const Row& row : rows()) {
        SCOPED_TRACE(row.sentence);
        WorkspaceMaker workspace;
        row.damage(workspace);
        writeDocuments(workspace);
        for (const char* command : {"inspect", "verify"}) {
            const Outcome outcome = runCommandLineTool({command, workspace.snapshot.runManifest.string()});
            EXPECT_EQ(outcome.err, "") << command;
            EXPECT_NE(outcome.out, "") << command;
        }
    }
}

} // namespace

} // namespace kinovane::test

// SPDX-License-Identifier: Apache-2.0

#include <filesystem>
#include <string>
#include <vector>

#include <boost/json.hpp>
#include <gtest/gtest.h>

#include <kinovane/handoff.hpp>

#include "support/temporary_directory.hpp"
#include "tools/command_line_tool.hpp"

namespace kinovane::test {

namespace {

namespace fs = std::filesystem;

/// A library to import into, and the workspace of a film with two files.
class Publish : public testing::Test {
  protected:
    Publish() {
        workspace.add("shot-clip", "clips/s1.mp4", "moving pictures");
        workspace.add("poster", "poster.png", "a poster");
        workspace.add("prompt-log", "prompts.jsonl", "stays at home");
        writeDocuments(workspace);
    }

    Outcome publish(std::vector<std::string> options) const {
        std::vector<std::string> arguments{"publish", workspace.snapshot.runManifest.string(), "--vistrel",
                                           programPath("vistrel")};
        arguments.insert(arguments.end(), options.begin(), options.end());
        return runCommandLineTool(std::move(arguments), {{"VISTREL_LIBRARY", library().string()}});
    }

    fs::path library() const { return home / "library"; }
    fs::path project() const { return library() / projectName; }
    fs::path manifest() const { return workspace.directory / "vistrel-handoff.json"; }

    /// Expects a manifest of this workspace, exported at any time.
    void expectManifest(const fs::path& file) const {
        const auto handoff = decodeJSON<VistrelHandoff>(contentOf(file));
        EXPECT_EQ(handoff, VistrelHandoffBuilder::build(
                               workspace.snapshot, workspace.directory.path().string(), handoff.exportedAt));
    }

    static std::string steps(const fs::path& manifest, const std::string& lastStep) {
        return "Loaded    t\n"
               "Verified  2 files, 23 B\n"
               "Written   " +
               manifest.string() + "\n          " + VistrelHandoffBuilder::sha256(manifest) +
               "\nChecked   Vistrel accepts 1 scene, 1 shot, 2 files\n" + lastStep;
    }

    static constexpr const char* projectName = "vistrel_p_148de9c5a7a4";
    static constexpr const char* importStep = "Imported  1 scene, 1 shot, 2 files\n"
                                              "          vistrel://projects/vistrel_p_148de9c5a7a4\n";
    static constexpr const char* dryRunStep = "Imported  nothing: this was a dry run\n";

    TemporaryDirectory home;
    WorkspaceMaker workspace;
};

TEST_F(Publish, WritesTheManifestAndImportsTheFilm) {
    const Outcome outcome = publish({});
    expectManifest(manifest());
    EXPECT_EQ(outcome, (Outcome{0, steps(manifest(), importStep), ""}));
    EXPECT_EQ(contentOf(project() / "manifest.json"), contentOf(manifest()));
    EXPECT_EQ(contentOf(project() / "assets/clips/s1.mp4"), "moving pictures");
}

TEST_F(Publish, ImportsNothingInADryRun) {
    const Outcome outcome = publish({"--dry-run"});
    expectManifest(manifest());
    EXPECT_EQ(outcome, (Outcome{0, steps(manifest(), dryRunStep), ""}));
    EXPECT_FALSE(fs::exists(library()));
}

TEST_F(Publish, WritesTheManifestToTheOutputPath) {
    struct Row {
        std::string sentence, output;
        fs::path expected;
    };
    const std::vector<Row> rows{
        {"an absolute path", (home / "a/b.json").string(), home / "a/b.json"},
        {"a path with a space", (home / "my film.json").string(), home / "my film.json"},
        {"a path relative to the working folder", fs::relative(home / "c.json").string(),
         fs::current_path() / fs::relative(home / "c.json")},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        const Outcome outcome = publish({"--output", row.output, "--dry-run"});
        expectManifest(row.expected);
        EXPECT_EQ(outcome, (Outcome{0, steps(row.expected, dryRunStep), ""}));
        EXPECT_FALSE(fs::exists(manifest()));
    }
}

TEST_F(Publish, GivesTheSameResultWithAnyNumberOfWorkers) {
    for (const char* workers : {"1", "3", "256"}) {
        const Outcome outcome = publish({"--workers", workers, "--dry-run"});
        EXPECT_EQ(outcome, (Outcome{0, steps(manifest(), dryRunStep), ""})) << workers;
    }
}

TEST_F(Publish, PrintsItsResultAsJSON) {
    const std::string receipt =
        R"({"ok":true,"project_id":"vistrel_p_148de9c5a7a4","episode_id":"vistrel_p_148de9c5a7a4_episode_1",)"
        R"("imported_scenes":1,"imported_shots":1,"imported_assets":2,)"
        R"("project_url":"vistrel://projects/vistrel_p_148de9c5a7a4"})";
    struct Row {
        std::string sentence;
        std::vector<std::string> options;
        std::string imported;
    };
    const std::vector<Row> rows{
        {"a dry run", {"--json", "--dry-run"}, "null"},
        {"an import", {"--json"}, receipt},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        const Outcome outcome = publish(row.options);
        const std::string expected =
            R"({"title":"t","verified":{"files":2,"bytes":23},"manifest":{"path":")" + manifest().string() +
            R"(","sha256":")" + VistrelHandoffBuilder::sha256(manifest()) + R"("},"checked":)" + receipt +
            R"(,"imported":)" + row.imported + "}\n";
        EXPECT_EQ(boost::json::parse(outcome.out), boost::json::parse(expected)) << outcome;
        EXPECT_EQ(outcome, (Outcome{0, expected, ""}));
    }
}

TEST_F(Publish, ShowsAReceiptWithoutCountsAndLink) {
    const Outcome outcome = runCommandLineTool({"publish", workspace.snapshot.runManifest.string(),
                                                "--vistrel", programPath("reluctant_importer"), "--dry-run"});
    EXPECT_EQ(
        outcome,
        (Outcome{0, replaced(steps(manifest(), dryRunStep), "1 scene, 1 shot, 2 files", "the film"), ""}));
}

TEST_F(Publish, PublishesTheSampleFilm) {
    const Outcome outcome =
        runCommandLineTool({"publish", (sampleFilm() / "run.json").string(), "--vistrel",
                            programPath("vistrel"), "--output", (home / "handoff.json").string()},
                           {{"VISTREL_LIBRARY", library().string()}});
    EXPECT_EQ(outcome.status, 0) << outcome;
    EXPECT_NE(outcome.out.find("Verified  59 files, 2.2 MB\n"), std::string::npos) << outcome;
    EXPECT_NE(outcome.out.find("Imported  3 scenes, 7 shots, 59 files\n"), std::string::npos) << outcome;
}

} // namespace

} // namespace kinovane::test

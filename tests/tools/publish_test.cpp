// SPDX-License-Identifier: Apache-2.0

#include <filesystem>
#include <string>
#include <vector>

#include <boost/json.hpp>
#include <gtest/gtest.h>

#include <kinovane/handoff.hpp>
#include <kinovane/preflight.hpp>

#include "support/temporary_directory.hpp"
#include "tools/command_line_tool.hpp"
#include "tools/publish_film.hpp"

namespace kinovane::test {

namespace {

namespace fs = std::filesystem;

/// Expects a manifest of this film, exported at any time.
void expectManifest(const fs::path& file, const PublishFilm& film) {
    const auto handoff = decodeJSON<VistrelHandoff>(contentOf(file));
    EXPECT_EQ(handoff, VistrelHandoffBuilder::build(film.workspace.snapshot, film.root().string(),
                                                    handoff.exportedAt));
}

/// The temporary files of the command are created in a folder of their own.
struct TemporaryFiles {
    TemporaryDirectory folder;
    std::map<std::string, std::string> environment() const { return {{"TMPDIR", folder.path().string()}}; }
};

TEST(Publish, WritesTheManifestAndImportsTheFilm) {
    const PublishFilm film;
    EXPECT_EQ(film.publish(), (Outcome{0, importResult, film.written() + checkedStep + importedStep}));
    expectManifest(film.manifest(), film);
    EXPECT_EQ(contentOf(film.project() / "manifest.json"), contentOf(film.manifest()));
    EXPECT_EQ(contentOf(film.project() / "assets/clips/s1.mp4"), "moving pictures");
}

TEST(Publish, StoresNothingInADryRun) {
    const PublishFilm film;
    const TemporaryFiles temporary;
    const std::vector<std::string> before = namesIn(film.root());
    EXPECT_EQ(film.publish({"--dry-run"}, temporary.environment()),
              (Outcome{0, dryRunResult, film.writtenInDryRun() + checkedStep}));
    EXPECT_EQ(namesIn(film.root()), before);
    EXPECT_EQ(namesIn(temporary.folder.path()), std::vector<std::string>());
    EXPECT_FALSE(fs::exists(film.library()));
}

TEST(Publish, LeavesNoTemporaryFileAfterARefusal) {
    const PublishFilm film;
    const TemporaryFiles temporary;
    auto environment = temporary.environment();
    environment.emplace("VISTREL_MISBEHAVE", "not-ok");
    EXPECT_EQ(film.publish({"--dry-run"}, environment).status, 7);
    EXPECT_EQ(namesIn(temporary.folder.path()), std::vector<std::string>());
}

TEST(Publish, WritesTheManifestToTheOutputPath) {
    const PublishFilm film;
    struct Row {
        std::string sentence, output;
        fs::path expected;
    };
    const std::vector<Row> rows{
        {"an absolute path, in a folder that is created", (film.home / "a/b.json").string(),
         film.home / "a/b.json"},
        {"a path with a space", (film.home / "my film.json").string(), film.home / "my film.json"},
        {"a path relative to the working folder", fs::relative(film.home / "c.json").string(),
         fs::current_path() / fs::relative(film.home / "c.json")},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        EXPECT_EQ(film.publish({"--output", row.output, "--dry-run"}),
                  (Outcome{0, dryRunResult, film.written(row.expected) + checkedStep}));
        expectManifest(row.expected, film);
        EXPECT_FALSE(fs::exists(film.manifest()));
    }
}

TEST(Publish, RunsNoImporterForAManifestOnly) {
    const PublishFilm film;
    EXPECT_EQ(film.publish({"--manifest-only", "--vistrel", "/nowhere/vistrel"}),
              (Outcome{0, film.manifest().string() + "\n", film.written()}));
    expectManifest(film.manifest(), film);
    EXPECT_FALSE(fs::exists(film.library()));
}

TEST(Publish, WritesOnlyTheManifestToStandardOutput) {
    const PublishFilm film;
    const Outcome outcome = film.publish({"--output", "-", "--exported-at", "today", "--vistrel", "nowhere"});
    const fs::path file = film.home / "manifest.json";
    VistrelHandoffBuilder::write(
        VistrelHandoffBuilder::build(film.workspace.snapshot, film.root().string(), "today"), file);
    EXPECT_EQ(outcome, (Outcome{0, contentOf(file), film.verified() + "Written   to standard output\n"}));
    EXPECT_EQ(film.publish({"--output", "-", "--exported-at", "today", "--json"}),
              (Outcome{0, contentOf(file), ""}));
    EXPECT_FALSE(fs::exists(film.manifest()));
}

TEST(Publish, WritesEqualManifestsOfAnUnchangedFilm) {
    const PublishFilm film;
    struct Row {
        std::string sentence;
        std::vector<std::string> options;
        std::map<std::string, std::string> environment;
        std::string exportedAt;
    };
    const std::vector<Row> rows{
        {"an option", {"--exported-at", "the 1st of March"}, {}, "the 1st of March"},
        {"a variable", {}, {{"SOURCE_DATE_EPOCH", "1772373909"}}, "2026-03-01T14:05:09Z"},
        {"both", {"--exported-at", "now"}, {{"SOURCE_DATE_EPOCH", "-"}}, "now"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        std::vector<std::string> options = row.options;
        options.insert(options.end(), {"--output", "-"});
        const Outcome first = film.publish(options, row.environment);
        EXPECT_EQ(decodeJSON<VistrelHandoff>(first.out).exportedAt, row.exportedAt);
        EXPECT_EQ(film.publish(options, row.environment), first);
    }
}

TEST(Publish, GivesTheSameResultWithAnyNumberOfWorkers) {
    const PublishFilm film;
    for (const char* workers : {"1", "3", "64"})
        EXPECT_EQ(film.publish({"--workers", workers, "--dry-run"}),
                  (Outcome{0, dryRunResult, film.writtenInDryRun() + checkedStep}))
            << workers;
}

TEST(Publish, ShowsOnlyWarningsWhenQuiet) {
    const PublishFilm film;
    EXPECT_EQ(film.publish({"--quiet", "--dry-run"}),
              (Outcome{0, dryRunResult, replaced(film.loaded(), "Loaded    t\n", "")}));
}

TEST(Publish, PrintsItsResultAsJSON) {
    const std::string receipt =
        R"({"ok":true,"project_id":"vistrel_p_148de9c5a7a4","episode_id":"vistrel_p_148de9c5a7a4_episode_1",)"
        R"("imported_scenes":1,"imported_shots":1,"imported_assets":2,)"
        R"("project_url":"vistrel://projects/vistrel_p_148de9c5a7a4"})";
    struct Row {
        std::string sentence;
        std::vector<std::string> options;
        bool hasPath;
        std::string checked, imported;
    };
    const std::vector<Row> rows{
        {"a dry run", {"--dry-run"}, false, receipt, "null"},
        {"a manifest", {"--manifest-only"}, true, "null", "null"},
        {"an import", {"--force"}, true, receipt, receipt},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        const PublishFilm film;
        std::string warnings;
        for (const PreflightFinding& finding : VistrelHandoffBuilder::preflight(film.workspace.snapshot))
            warnings += (warnings.empty() ? "" : ",") + boost::json::serialize(finding.text);
        std::vector<std::string> options = row.options;
        options.insert(options.end(), {"--json", "--exported-at", "now"});
        const Outcome outcome = film.publish(options);
        const fs::path copy = film.home / "copy.json";
        const std::string digest = VistrelHandoffBuilder::write(
            VistrelHandoffBuilder::build(film.workspace.snapshot, film.root().string(), "now"), copy);
        boost::json::value result = boost::json::parse(outcome.out);
        std::string texts;
        for (const boost::json::value& warning : result.at("warnings").as_array())
            texts += (texts.empty() ? "" : ",") + boost::json::serialize(warning.at("text"));
        EXPECT_EQ(texts, warnings);
        result.as_object().at("warnings") = nullptr;
        const std::string path =
            row.hasPath ? boost::json::serialize(film.manifest().string()) : std::string("null");
        EXPECT_EQ(boost::json::serialize(result),
                  R"({"version":1,"title":"t","verified":{"files":2,"bytes":23},"manifest":{"path":)" + path +
                      R"(,"sha256":")" + digest + R"("},"warnings":null,"checked":)" + row.checked +
                      R"(,"imported":)" + row.imported + R"(,"changes":null})");
        EXPECT_EQ(outcome.status, 0);
        EXPECT_EQ(outcome.err, "");
    }
}

TEST(Publish, ShowsAReceiptWithoutCountsAndLink) {
    const PublishFilm film;
    EXPECT_EQ(film.publish({"--vistrel", programPath("reluctant_importer"), "--dry-run"}),
              (Outcome{0, dryRunResult, film.writtenInDryRun() + "Checked   Vistrel accepts the film\n"}));
}

TEST(Publish, ShowsTheDigestWhenVerbose) {
    const PublishFilm film;
    const Outcome outcome = film.publish({"--verbose", "--manifest-only"});
    EXPECT_NE(outcome.err.find("Written   " + film.manifest().string() + "\n          " +
                               VistrelHandoffBuilder::sha256(film.manifest()) + "\n"),
              std::string::npos)
        << outcome;
}

TEST(Publish, PublishesTheSampleFilm) {
    const TemporaryDirectory home;
    const Outcome outcome =
        runCommandLineTool({"publish", sampleFilm().string(), "--vistrel", programPath("vistrel"), "--output",
                            (home / "handoff.json").string()},
                           {{"VISTREL_LIBRARY", (home / "library").string()}});
    EXPECT_EQ(outcome.status, 0) << outcome;
    EXPECT_EQ(outcome.err, "Loaded    A Lamp for the Late Ferry\n"
                           "Verified  59 files, 2.2 MB\n"
                           "Written   " +
                               (home / "handoff.json").string() +
                               "\nChecked   Vistrel accepts 3 scenes, 7 shots, 59 files\n"
                               "Imported  3 scenes, 7 shots, 59 files\n");
}

} // namespace

} // namespace kinovane::test

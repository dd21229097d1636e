// SPDX-License-Identifier: Apache-2.0

#include <string>

#include <boost/json.hpp>
#include <gtest/gtest.h>

#include "commands/manifest_changes.hpp"
#include "support/temporary_directory.hpp"
#include "tools/command_line_tool.hpp"
#include "tools/publish_film.hpp"

namespace kinovane::test {

namespace {

VistrelHandoffAsset asset(std::string path, std::string digest) {
    VistrelHandoffAsset result;
    result.relativePath = std::move(path);
    result.sha256 = std::move(digest);
    return result;
}

VistrelHandoffShot shot(std::string id, std::int64_t take = 1) {
    VistrelHandoffShot result;
    result.id = std::move(id);
    result.take = take;
    return result;
}

TEST(ManifestChanges, CountFilesAndShots) {
    struct Row {
        std::string sentence;
        std::vector<VistrelHandoffAsset> filesBefore, filesAfter;
        std::vector<VistrelHandoffShot> shotsBefore, shotsAfter;
        std::string summary;
    };
    const std::vector<Row> rows{
        {"nothing",
         {asset("a", "1")},
         {asset("a", "1")},
         {shot("s")},
         {shot("s")},
         "no file and no shot changed"},
        {"another order",
         {asset("a", "1"), asset("b", "2")},
         {asset("b", "2"), asset("a", "1")},
         {},
         {},
         "no file and no shot changed"},
        {"one changed file", {asset("a", "1")}, {asset("a", "2")}, {}, {}, "1 file changed"},
        {"files of every sort",
         {asset("a", "1"), asset("b", "1"), asset("gone", "1")},
         {asset("a", "2"), asset("b", "2"), asset("new", "1"), asset("newer", "1")},
         {},
         {},
         "2 files changed, 2 added, 1 removed"},
        {"one added shot", {}, {}, {}, {shot("s")}, "1 shot added"},
        {"both", {asset("a", "1")}, {}, {shot("s")}, {shot("s", 2)}, "1 file removed; 1 shot changed"},
        {"repeated ids",
         {},
         {},
         {shot("s"), shot("s")},
         {shot("s"), shot("s", 2), shot("s")},
         "1 shot changed, 1 added"},
    };
    for (const Row& row : rows) {
        VistrelHandoff before;
        before.assets = row.filesBefore;
        before.shots = row.shotsBefore;
        VistrelHandoff after;
        after.assets = row.filesAfter;
        after.shots = row.shotsAfter;
        EXPECT_EQ(tool::summaryText(tool::changesBetween(before, after)), row.summary) << row.sentence;
    }
}

/// Changes the clip, removes the poster and adds music.
void changeFilm(PublishFilm& film) {
    film.workspace.snapshot.project.artifacts.clear();
    film.workspace.add("shot-clip", "clips/s1.mp4", "Moving pictures");
    film.workspace.add("score", "song.m4a", "louder music");
    writeDocuments(film.workspace);
}

TEST(PublishChanges, AreToldSinceTheLastManifest) {
    PublishFilm film;
    film.publish();
    EXPECT_EQ(film.publish(),
              (Outcome{0, importResult, film.written() + nothingChanged + checkedStep + importedStep}));
    changeFilm(film);
    const std::string summary =
        "          Since the last manifest: 1 file changed, 1 added, 1 removed; 1 shot changed\n";
    const std::string verified = film.loaded() + "Verified  2 files, 27 B\n";
    EXPECT_EQ(film.publish({"--dry-run"}).err,
              verified + "Written   nothing but a temporary manifest: this is a dry run\n" + summary +
                  checkedStep);
    EXPECT_EQ(film.publish({"--output", "-"}).err, verified + "Written   to standard output\n" + summary);
    const Outcome verbose = film.publish({"--verbose", "--manifest-only"});
    EXPECT_NE(verbose.err.find(summary + "          changed  clips/s1.mp4\n"
                                         "          added    song.m4a\n"
                                         "          removed  poster.png\n"
                                         "          changed  shot s1\n"),
              std::string::npos)
        << verbose;
}

TEST(PublishChanges, AreToldInJSON) {
    PublishFilm film;
    film.publish({"--exported-at", "yesterday"});
    changeFilm(film);
    EXPECT_EQ(boost::json::serialize(boost::json::parse(film.publish({"--json"}).out).at("changes")),
              R"({"since":"yesterday","files":{"changed":["clips/s1.mp4"],"added":["song.m4a"],"removed":)"
              R"(["poster.png"]},"shots":{"changed":["s1"],"added":[],"removed":[]}})");
}

TEST(PublishChanges, AreNotToldWithoutAReadableManifestOfTheFilm) {
    const PublishFilm film;
    struct Row {
        std::string sentence, content;
    };
    film.publish();
    const std::string manifest = contentOf(film.manifest());
    const std::vector<Row> rows{
        {"a manifest that lacks everything", R"({"contractVersion":"quexrun/film-vistrel-handoff.v1"})"},
        {"a manifest of another film", replaced(manifest, R"("projectId": "p")", R"("projectId": "q")")},
    };
    for (const Row& row : rows) {
        film.workspace.directory.write("vistrel-handoff.json", row.content);
        EXPECT_EQ(film.publish(), (Outcome{0, importResult, film.written() + checkedStep + importedStep}))
            << row.sentence;
    }
}

} // namespace

} // namespace kinovane::test

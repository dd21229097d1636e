// SPDX-License-Identifier: Apache-2.0

#include <string>
#include <vector>

#include <boost/json.hpp>
#include <gtest/gtest.h>

#include "support/sample_film.hpp"
#include "tools/command_line_tool.hpp"

namespace kinovane::test {

namespace {

/// A film with two files of its shot, one of them recorded twice, and a path that a terminal must not get.
struct RecordedFilm {
    RecordedFilm() {
        workspace.add("shot-clip", "clips/s1.mp4", "clip");
        workspace.add("shot-keyframe", "frames/s1.png", std::string(2000, 'f'));
        workspace.add("poster", "po\nster.png", "poster");
        workspace.list("score", "/music/score one.wav");
        writeDocuments(workspace);
        workspace.directory.write("run.json", "");
    }

    Outcome artifacts(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), {"artifacts", workspace.directory.path().string()});
        return runCommandLineTool(std::move(arguments));
    }

    std::string path(const std::string& name) const { return (workspace.directory / name).string(); }

    WorkspaceMaker workspace;
};

TEST(Artifacts, AreListed) {
    const RecordedFilm film;
    const std::string root = film.path("");
    const struct {
        const char* sentence;
        std::vector<std::string> arguments;
        Outcome expected;
    } rows[]{
        {"all",
         {},
         {0,
          "  kind             size  path\n"
          "  shot-clip         4 B  clips/s1.mp4\n"
          "  shot-keyframe  2.0 kB  frames/s1.png\n"
          "  poster            6 B  $'po\\nster.png'\n"
          "  score             0 B  /music/score one.wav\n",
          ""}},
        {"those of a shot",
         {"--shot", "s1"},
         {0,
          "  kind             size  path\n"
          "  shot-keyframe  2.0 kB  frames/s1.png\n"
          "  shot-clip         4 B  clips/s1.mp4\n",
          ""}},
        {"those of a kind",
         {"--kind", "poster"},
         {0, "  kind    size  path\n  poster   6 B  $'po\\nster.png'\n", ""}},
        {"those of a kind and a shot",
         {"--kind", "shot-clip", "--shot", "s1", "--paths"},
         {0, root + "clips/s1.mp4\n", ""}},
        {"paths",
         {"--paths"},
         {0,
          root + "clips/s1.mp4\n" + root + "frames/s1.png\n$'" + root +
              "po\\nster.png'\n/music/score one.wav\n",
          ""}},
        {"paths for another program",
         {"--kind", "poster", "-0"},
         {0, root + "po\nster.png" + std::string(1, '\0'), ""}},
        {"digests",
         {"--kind", "score", "--verbose"},
         {0,
          "  kind   size  digest" + std::string(67, ' ') + "path\n  score   0 B  " +
              std::string(emptyDigest) + "  /music/score one.wav\n",
          ""}},
        {"none", {"--kind", "rough-cut"}, {0, "", "No such file is recorded.\n"}},
        {"a misspelt kind",
         {"--kind", "psoter"},
         {0, "", "No such file is recorded. Did you mean --kind poster?\n"}},
        {"an unknown shot",
         {"--shot", "s2"},
         {2, "", "kinovane: \"s2\" is not a shot of \"t\". Did you mean \"s1\"?\n"}},
    };
    for (const auto& [sentence, arguments, expected] : rows)
        EXPECT_EQ(film.artifacts(arguments), expected) << sentence;
}

TEST(Artifacts, LeavesOutAPathThatHoldsANULByteBetweenNULBytes) {
    RecordedFilm film;
    film.workspace.list("poster", std::string_view("a\0z", 3));
    writeDocuments(film.workspace);
    EXPECT_EQ(
        film.artifacts({"--kind", "poster", "-0"}),
        (Outcome{0, film.path("po\nster.png") + std::string(1, '\0'),
                 "kinovane: left out, because it holds a NUL byte: $'" + film.path("a\\x00z") + "'\n"}));
}

TEST(Artifacts, ArePrintedAsJSON) {
    const RecordedFilm film;
    const Outcome outcome = film.artifacts({"--kind", "score", "--json"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
    const FilmArtifact& score = film.workspace.snapshot.project.artifacts.back();
    EXPECT_EQ(boost::json::parse(outcome.out),
              (boost::json::value{
                  {"version", 1},
                  {"film", film.workspace.directory.path().string()},
                  {"artifacts", boost::json::array{boost::json::object{{"kind", "score"},
                                                                       {"path", "/music/score one.wav"},
                                                                       {"location", "/music/score one.wav"},
                                                                       {"bytes", 0},
                                                                       {"contentType", score.contentType},
                                                                       {"sha256", emptyDigest},
                                                                       {"createdAt", score.createdAt},
                                                                       {"source", score.source}}}}}));
}

} // namespace

} // namespace kinovane::test

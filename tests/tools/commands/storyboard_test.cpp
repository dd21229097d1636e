// SPDX-License-Identifier: Apache-2.0

#include <cmath>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/temporary_directory.hpp"
#include "tools/command_line_tool.hpp"
#include "tools/commands/shown_film.hpp"
#include "tools/film_copy.hpp"

namespace kinovane::test {

namespace {

namespace fs = std::filesystem;

std::string sizeOf(const fs::path& page) {
    const auto bytes = static_cast<double>(fs::file_size(page));
    const std::string text = std::to_string(std::round(bytes / 100'000) / 10);
    return text.substr(0, text.find('.') + 2) + " MB";
}

TEST(Storyboard, WritesAPage) {
    const ShownFilm film;
    const Outcome outcome = film.storyboard();
    EXPECT_EQ(outcome, (Outcome{0, film.page.string() + "\n",
                                "7 shots, 64 files. The page has " + sizeOf(film.page) +
                                    ": 19 pictures and clips are embedded, 0 linked.\n"}));
    EXPECT_EQ(namesIn(film.folder.path()), std::vector<std::string>{"page.html"});
}

TEST(Storyboard, IsTheSameForAnUnchangedFilm) {
    const ShownFilm film;
    film.storyboard();
    const std::string first = film.text();
    film.storyboard();
    EXPECT_EQ(film.text(), first);
}

TEST(Storyboard, EmbedsMediaUpToTheLimit) {
    const ShownFilm film;
    const struct {
        const char* limit;
        int embedded;
        int linked;
    } rows[]{{"0", 0, 19}, {"84 kB", 1, 18}, {"1 GB", 19, 0}};
    for (const auto& [limit, embedded, linked] : rows) {
        const Outcome outcome = film.storyboard({"--embed-limit", limit, "--json"});
        EXPECT_NE(outcome.out.find("\"embedded\":" + std::to_string(embedded) +
                                   ",\"linked\":" + std::to_string(linked)),
                  std::string::npos)
            << limit << ": " << outcome.out;
    }
}

TEST(Storyboard, PrintsJSON) {
    const ShownFilm film;
    film.copy.cut("clips/shot-03.mp4");
    const Outcome outcome = film.storyboard({"--verify", "--json"});
    EXPECT_EQ(outcome,
              (Outcome{4,
                       R"({"version":1,"film":")" + film.copy.root().string() +
                           R"(","title":"A Lamp for the Late Ferry","page":")" + film.page.string() +
                           R"(","bytes":)" + std::to_string(fs::file_size(film.page)) +
                           R"(,"shots":7,"files":64,"embedded":19,"linked":0,"verified":true,"damaged":[)"
                           R"({"path":"clips/shot-03.mp4","kind":"shot-clip","state":"changed",)"
                           R"("reason":"1.0 kB, recorded 14.7 kB: cut short"}],"opened":false})"
                           "\n",
                       ""}));
}

TEST(Storyboard, VerifiesEveryFile) {
    const struct {
        const char* sentence;
        std::function<void(const FilmCopy&)> prepare;
        int status;
        std::string expected; ///< The last line on standard error.
    } rows[]{
        {"a sound film", [](const FilmCopy&) {}, 0, "All files are sound.\n"},
        {"a damaged clip", [](const FilmCopy& film) { film.cut("clips/shot-03.mp4"); }, 4,
         "1 file is damaged or missing; the page lists them first.\n"},
        {"a file that is not handed over, and one that is missing",
         [](const FilmCopy& film) {
             film.change("logs/prompts.jsonl");
             film.remove("poster.png");
         },
         4, "2 files are damaged or missing; the page lists them first.\n"},
        {"only a file that cannot be read", [](const FilmCopy& film) { film.makePipe("score/score.m4a"); }, 6,
         "1 file is damaged or missing; the page lists them first.\n"},
    };
    for (const auto& [sentence, prepare, status, expected] : rows) {
        const ShownFilm film;
        prepare(film.copy);
        const Outcome outcome = film.storyboard({"--verify"});
        EXPECT_EQ(outcome.status, status) << sentence;
        EXPECT_TRUE(outcome.err.ends_with(".\n" + expected)) << outcome;
        EXPECT_TRUE(fs::exists(film.page)) << sentence;
    }
}

TEST(Storyboard, ShowsTheFilmOfAManifest) {
    const ShownFilm film;
    const TemporaryDirectory elsewhere;
    const struct {
        const char* sentence;
        fs::path manifest;
        std::string root;
        std::string embedded;
    } rows[]{
        {"beside the film", film.copy.root() / "vistrel-handoff.json", "/nowhere", "\"embedded\":19"},
        {"elsewhere", elsewhere / "handoff.json", "", "\"embedded\":19"},
        {"without the film", elsewhere / "handoff.json", "/nowhere", "\"embedded\":0"},
        {"with a folder of another film", elsewhere / "handoff.json", elsewhere.path().string(),
         "\"embedded\":0"},
    };
    for (const auto& [sentence, manifest, root, embedded] : rows) {
        film.writeManifest(manifest, root);
        const Outcome outcome = film.storyboard({"--json"}, manifest.string());
        EXPECT_EQ(outcome.status, 0) << sentence;
        EXPECT_NE(outcome.out.find(embedded), std::string::npos) << sentence << ": " << outcome.out;
        EXPECT_NE(outcome.out.find(R"("shots":7,"files":59)"), std::string::npos) << outcome.out;
        EXPECT_NE(film.text().find("Establish the quay, the keeper and the one dark lamp"),
                  std::string::npos);
    }
}

TEST(Storyboard, OpensThePage) {
    const ShownFilm film;
    const std::string log = (film.folder / "log").string();
    EXPECT_EQ(film.storyboard({"--open"}, "", {{"PATH", FILE_OPENER_FOLDER}, {"OPENER_LOG", log}}).status, 0);
    EXPECT_EQ(contentOf(log), film.page.string() + "\n");
    EXPECT_EQ(film.storyboard({"--open"}, "", {{"PATH", "/nonexistent"}}).status, 5);
}

} // namespace

} // namespace kinovane::test

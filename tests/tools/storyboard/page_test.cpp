// SPDX-License-Identifier: Apache-2.0

#include "storyboard/page.hpp"

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/sample_film.hpp"
#include "tools/film_copy.hpp"

namespace kinovane::tool {

namespace {

namespace fs = std::filesystem;
using test::FilmCopy;
using test::WorkspaceMaker;

std::string pageOf(const FilmWorkspaceSnapshot& film, bool verify = true, std::uint64_t limit = 0) {
    const Storyboard storyboard = storyboardOf(film);
    const std::vector<AssetFile> files = examineAssets(film.root, storyboard.assets, verify, {});
    const PageMedia media(storyboard, files, film.root, film.root / "page.html", limit);
    return storyboardPage({storyboard, files, media, verify, true});
}

std::string pageOf(const FilmCopy& film, bool verify = true, std::uint64_t limit = 0) {
    return pageOf(FilmProjectLoader::load(film.root() / "run.json"), verify, limit);
}

void expectParts(const std::string& page, const std::vector<std::string>& parts,
                 const std::string& sentence = "") {
    for (const std::string& part : parts)
        EXPECT_NE(page.find(part), std::string::npos) << sentence << ": " << part;
}

TEST(StoryboardPage, TellsEverythingAboutTheFilm) {
    const std::string page = pageOf(FilmCopy(), false);
    expectParts(
        page,
        {
            "<title>A Lamp for the Late Ferry – storyboard</title>",
            "<h1 dir=\"auto\">A Lamp for the Late Ferry</h1>",
            "On a foggy island an old lamplighter and a girl with a bicycle",
            "<dt>Duration</dt><dd dir=\"auto\">0:18.000</dd>",
            "<dt>Frames per second</dt><dd dir=\"auto\">16</dd>",
            "<dt>Size</dt><dd dir=\"auto\">480 × 270 pixels</dd>",
            "<dt>Aspect ratio</dt><dd dir=\"auto\">16:9</dd>",
            "10 of 10 steps",
            "human review<span class=\"spoken\">: complete</span>",
            // The timeline.
            "#t1{left:16.665741%;width:13.888117%}",
            ">0:05</span>",
            "<b>Noor</b> Borrow mine?",
            "A bicycle bell, two strokes",
            // A card.
            "<h3 id=\"name-4\"><span class=\"number\">5</span> <bdi>shot-05</bdi></h3>",
            "<span>0:08.626</span><span>0:03.250 long</span><span>take 2</span>"
            "<span>seed 3105</span><span><bdi>accepted</bdi></span>",
            "src=\"frames/shot-05.png\" alt=\"Key frame of shot-05: The offer\"",
            "<video controls preload=\"none\" src=\"clips/shot-05.mp4\" aria-label=\"Clip of shot-05\">",
            "<bdi>Aurélien Kerbrat</bdi>, <bdi>Noor</bdi>",
            "<dt>Location</dt><dd><bdi>Quai des Sept Lampes</bdi></dd>",
            "<dt>Transition</dt><dd dir=\"auto\">match cut on the spark</dd>",
            // Cast and locations.
            "src=\"cast/noor.png\" alt=\"Picture of Noor\"",
            "Captain Solveig Bø",
            "The fog off Brèmes",
            // Findings and files.
            "Nothing in the documents prevents a handoff.",
            "The music box’s last note still rings when the picture ends",
            "<a href=\"subtitles/film.en.srt\">subtitles/film.en.srt</a>",
            "sha256:c1522dc34f201457834d1875975cd379d473824d9183900d1e6296da993f77ea",
        });
    EXPECT_EQ(page.find("<a href=\"review/package.html\""), std::string::npos)
        << "a file that could run a script is not linked";
}

TEST(StoryboardPage, ShowsWhatIsMissing) {
    const struct {
        const char* sentence;
        std::function<void(const FilmCopy&)> prepare;
        std::vector<std::string> parts;
    } rows[]{
        {"a missing key frame",
         [](const FilmCopy& film) { film.remove("frames/shot-01.png"); },
         {"The key frame is missing<span class=\"path\"><bdi>frames/shot-01.png</bdi></span>",
          "1 file is damaged or missing", "id=\"t0\" class=\"no-frame is-damaged\""}},
        {"a missing clip",
         [](const FilmCopy& film) { film.remove("clips/shot-01.mp4"); },
         {"The clip is missing<span class=\"path\"><bdi>clips/shot-01.mp4</bdi></span>"}},
        {"a folder in place of a clip",
         [](const FilmCopy& film) { film.makeFolder("clips/shot-01.mp4"); },
         {"The clip cannot be read: is a folder, not a file"}},
    };
    for (const auto& [sentence, prepare, parts] : rows)
        for (const bool verify : {false, true}) {
            const FilmCopy film;
            prepare(film);
            expectParts(pageOf(film, verify, 1'000'000), parts, sentence);
        }
}

TEST(StoryboardPage, RefusesALinkThatLeadsOutOfTheFilm) {
    for (const bool verify : {false, true})
        for (const std::uint64_t limit : {std::uint64_t{0}, std::uint64_t{1'000'000'000}}) {
            const FilmCopy film;
            film.linkOutside("frames/shot-01.png");
            const std::string page = pageOf(film, verify, limit);
            expectParts(page, {"The key frame is refused: leads out of the film&#39;s folder, to " +
                               film.outside().string()});
            EXPECT_EQ(page.find("alt=\"Key frame of shot-01"), std::string::npos);
            EXPECT_EQ(page.find("href=\"frames/shot-01.png\""), std::string::npos);
            EXPECT_EQ(page.find("elsewhere\""), std::string::npos) << "neither is its target linked";
        }
}

TEST(StoryboardPage, ListsDamagedFilesFirst) {
    const FilmCopy film;
    film.cut("clips/shot-07.mp4");
    const std::string page = pageOf(film);
    expectParts(page,
                {"1 file is damaged or missing", "<span class=\"badge bad\">changed</span>",
                 "<span class=\"badge bad\">clip changed</span>",
                 "<span class=\"badge good\">clip sound</span>", "1.0 kB, recorded 47.0 kB: cut short"});
    const std::size_t table = page.find("<tbody");
    const std::size_t first = page.find("<tr id=\"file-", table);
    EXPECT_EQ(page.find("clips/shot-07.mp4", table), page.find("clips/", first));
    EXPECT_LT(page.find("clips/shot-07.mp4", first), page.find("<tr", first + 1));
    expectParts(pageOf(FilmCopy()), {"All 64 files were verified, and are sound."});
}

TEST(StoryboardPage, TellsWhatIsNotThereYet) {
    WorkspaceMaker film;
    expectParts(pageOf(film.snapshot),
                {"No key frame is recorded", "No clip is recorded", "No file is recorded.",
                 "<dt>Size</dt><dd dir=\"auto\">not set</dd>", "9 of 10 steps",
                 "captions<span class=\"spoken\">: not complete</span>", "No issue is open."});
    film.snapshot.productionPlan->shots.clear();
    expectParts(pageOf(film.snapshot), {"The production plan has no shots."});
    film.snapshot.productionPlan->shots = {test::shotOf("s1", 0)};
    expectParts(pageOf(film.snapshot), {"No shot has a length."});
    film.snapshot.productionPlan.reset();
    film.snapshot.project.title.clear();
    expectParts(pageOf(film.snapshot), {"There is no production plan yet.", "Untitled film",
                                        "prevents the handoff", "not planned yet"});
}

TEST(StoryboardPage, NamesWhatThePlanDoesNotHave) {
    WorkspaceMaker film;
    film.snapshot.productionPlan->shots.front().characters = {"nobody"};
    film.snapshot.productionPlan->shots.front().location = "nowhere";
    expectParts(pageOf(film.snapshot),
                {"<bdi>nobody</bdi> <span class=\"unknown\">(not in the plan)</span>",
                 "<bdi>nowhere</bdi> <span class=\"unknown\">(not in the plan)</span>"});
}

TEST(StoryboardPage, EmbedsOnlyWhatABrowserShows) {
    WorkspaceMaker film;
    film.add("shot-keyframe", "frames/s1.png", "picture");
    film.add("shot-clip", "clips/s1.mp4", "clip");
    film.add("poster", "poster.svg", "<svg/>");
    const std::string page = pageOf(film.snapshot, true, 1000);
    expectParts(page,
                {"src=\"data:image/png;base64,cGljdHVyZQ==\"", "src=\"data:video/mp4;base64,Y2xpcA==\""});
    EXPECT_EQ(page.find("Poster of"), std::string::npos);
    EXPECT_EQ(page.find("poster.svg\""), std::string::npos) << "nor is it linked";
}

} // namespace

} // namespace kinovane::tool

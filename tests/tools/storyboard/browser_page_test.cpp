// SPDX-License-Identifier: Apache-2.0

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <string>
#include <vector>

#include <boost/json.hpp>
#include <gtest/gtest.h>

#include "storyboard/timeline_layout.hpp"
#include "support/sample_film.hpp"
#include "support/temporary_directory.hpp"
#include "tools/command_line_tool.hpp"
#include "tools/storyboard/browser.hpp"

namespace kinovane::test {

namespace {

namespace fs = std::filesystem;
namespace json = boost::json;
using tool::Storyboard;
using tool::TimelineItem;
using tool::TimelineLayout;

constexpr double pixelPart = 1.0 / 32; // A browser places boxes at 64ths of a pixel.

fs::path pageOf(const fs::path& film, const TemporaryDirectory& folder,
                std::vector<std::string> options = {}) {
    const fs::path page = folder / "page.html";
    options.insert(options.begin(), {"storyboard", film.string(), "--output", page.string()});
    const Outcome outcome = runCommandLineTool(options);
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    return page;
}

/// Left edge and width of elements, in pixels from the left edge of the timeline.
std::vector<std::pair<double, double>> boxes(Browser& browser, const std::string& selector) {
    const json::value list = browser.evaluate(
        "(() => { const left = track.getBoundingClientRect().left; return [...document.querySelectorAll('" +
        selector +
        "')].map(each => { const box = each.getBoundingClientRect(); return [box.left - left, box.width] }) "
        "})()");
    return json::value_to<std::vector<std::pair<double, double>>>(list);
}

/// What key frames the browser has decoded: their widths in pixels.
std::vector<int> decodedWidths(Browser& browser) {
    return json::value_to<std::vector<int>>(browser.evaluate(
        "Promise.all([...document.querySelectorAll('.frame')].map(frame => { frame.loading = "
        "'eager'; return frame.decode().then(() => frame.naturalWidth, () => 0) }))"));
}

bool isOfThePage(const std::string& url) { return url.starts_with("file:///") || url.starts_with("data:"); }

void expectNoProblems(const Browser& browser) {
    EXPECT_TRUE(std::ranges::all_of(browser.requests(), isOfThePage));
    EXPECT_EQ(browser.problems(), std::vector<std::string>());
}

TEST(StoryboardInABrowser, ShowsTheSampleFilmToScale) {
    const TemporaryDirectory folder;
    Browser browser;
    browser.open(pageOf(sampleFilm(), folder, {"--verify"}));
    const Storyboard storyboard = tool::storyboardOf(FilmProjectLoader::load(sampleFilm() / "run.json"));
    const TimelineLayout layout(storyboard);
    const double width = browser.evaluate("track.getBoundingClientRect().width").to_number<double>();
    const auto pixels = [&](double milliseconds) { return milliseconds / layout.total * width; };

    const auto shots = boxes(browser, ".lane.shots > li");
    ASSERT_EQ(shots.size(), storyboard.shots.size());
    for (std::size_t index = 0; index < shots.size(); ++index) {
        const tool::StoryboardShot& shot = storyboard.shots[index];
        EXPECT_NEAR(shots[index].first, pixels(static_cast<double>(*shot.startMilliseconds)), pixelPart);
        EXPECT_NEAR(shots[index].second, pixels(static_cast<double>(*shot.durationMilliseconds)), pixelPart);
    }
    const auto lines = boxes(browser, ".lane.lines > li");
    ASSERT_EQ(lines.size(), 7U);
    for (std::size_t index = 0; index < lines.size(); ++index)
        EXPECT_NEAR(lines[index].first, pixels(layout.lines[index].start), pixelPart);
    const auto effects = boxes(browser, ".lane.effects .bar");
    ASSERT_EQ(effects.size(), 7U);
    for (std::size_t index = 0; index < effects.size(); ++index) {
        EXPECT_NEAR(effects[index].first, pixels(layout.effects[index].start), pixelPart);
        EXPECT_NEAR(effects[index].second, pixels(layout.effects[index].length), pixelPart);
    }
    EXPECT_EQ(decodedWidths(browser), std::vector<int>(7, 480));
    EXPECT_EQ(browser.evaluate("document.querySelectorAll('.lane.shots img').length"), 7);
    expectNoProblems(browser);

    browser.evaluate("document.querySelector('[data-zoom=in]').click()");
    const double zoomed = browser.evaluate("track.getBoundingClientRect().width").to_number<double>();
    EXPECT_NEAR(zoomed, width * 1.6, 1);
    EXPECT_NEAR(boxes(browser, "#t6").front().second,
                static_cast<double>(*storyboard.shots[6].durationMilliseconds) / layout.total * zoomed,
                pixelPart);
    // The clip of the first shot plays in place of its key frame.
    EXPECT_EQ(browser.evaluate("new Promise(done => { const video = document.querySelector('video'); "
                               "video.muted = true; video.onplaying = () => done(video.videoWidth); "
                               "video.onerror = () => done(video.error.message); "
                               "document.querySelector('.clip summary').click() })"),
              480);
    EXPECT_EQ(browser.evaluate("getComputedStyle(document.querySelector('.frame')).display"), "none");
    expectNoProblems(browser);
}

TEST(StoryboardInABrowser, FitsEveryWidth) {
    const TemporaryDirectory folder;
    const fs::path page = pageOf(sampleFilm(), folder);
    Browser browser;
    for (const int width : {320, 360, 900, 1600}) {
        browser.open(page, width);
        EXPECT_EQ(browser.evaluate("document.documentElement.scrollWidth"), width);
    }
}

TEST(StoryboardInABrowser, LoadsLinkedMediaOfTheFilm) {
    const TemporaryDirectory folder;
    fs::copy(sampleFilm(), folder / "50% of #1?", fs::copy_options::recursive);
    Browser browser;
    browser.open(pageOf(folder / "50% of #1?", folder, {"--embed-limit", "0"}));
    EXPECT_EQ(decodedWidths(browser), std::vector<int>(7, 480));
    const auto isFrame = [](const std::string& url) {
        return url.find("/50%25%20of%20%231%3F/frames/shot-0") != std::string::npos;
    };
    EXPECT_GE(std::ranges::count_if(browser.requests(), isFrame), 7);
    expectNoProblems(browser);
}

TEST(StoryboardInABrowser, RunsNothingOfAHostileFilm) {
    const std::string attack =
        R"("'></title></style></script></p><script>pwned = 1</script>)"
        R"(<img src=http://example.invalid/ onerror="pwned = 2"><svg onload="pwned = 3">)";
    WorkspaceMaker film;
    film.add("shot-keyframe", "frames/s1.png",
             "<svg xmlns='http://www.w3.org/2000/svg' onload='pwned = 4'/>");
    film.add("shot-clip", "clips/s1.mp4", "<script>pwned = 5</script>");
    film.add("poster", "review/<img src=x onerror=alert(1)>.html", "<script>pwned = 6</script>");
    film.list("javascript:pwned = 7", "javascript:pwned = 8");
    FilmProductionPlan& plan = *film.snapshot.productionPlan;
    FilmProductionShot& shot = plan.shots.front();
    shot.purpose = shot.prompt = shot.framePrompt = shot.transition = shot.status = attack;
    shot.location = attack;
    shot.characters = {attack};
    shot.dialogue = {{attack, attack, 0, attack}};
    shot.soundEffects = {{attack, 0, 1, 0, 0}};
    plan.cast = {{attack, attack, attack, attack, attack, {}}};
    plan.locations = {{attack, attack, attack, attack, {}}};
    plan.target.aspectRatio = attack;
    writeDocuments(film);
    const std::string title = json::serialize(json::value(attack));
    film.directory.write("film-project.json", replaced(contentOf(film.directory / "film-project.json"),
                                                       R"("title":"t")", R"("title":)" + title));
    const TemporaryDirectory folder;
    Browser browser;
    browser.open(pageOf(film.directory.path(), folder));
    EXPECT_EQ(browser.evaluate("document.querySelector('h1').textContent"), json::value(attack));
    EXPECT_EQ(browser.evaluate("typeof pwned"), "undefined");
    EXPECT_EQ(browser.evaluate("document.scripts.length"), 1);
    EXPECT_EQ(browser.evaluate("document.querySelectorAll('style').length"), 1);
    EXPECT_EQ(browser.evaluate("document.querySelectorAll('a[href*=\"javascript\"]').length"), 0);
    EXPECT_TRUE(std::ranges::all_of(browser.requests(), isOfThePage));
}

TEST(StoryboardInABrowser, PermitsNoOtherScriptOrRequest) {
    const TemporaryDirectory folder;
    const fs::path page = pageOf(sampleFilm(), folder);
    // A page whose text got past the escaping would still run nothing.
    folder.write("page.html", replaced(contentOf(page), "<footer>",
                                       "<script>pwned = 1</script><img src='http://example.invalid/a.png' "
                                       "onerror='pwned = 2'><style>h1 { display: none }</style><footer>"));
    Browser browser;
    browser.open(page);
    EXPECT_EQ(browser.evaluate("typeof pwned"), "undefined");
    EXPECT_EQ(browser.evaluate("getComputedStyle(document.querySelector('h1')).display"), "block");
    EXPECT_EQ(browser.problems().size(), 4U)
        << "the policy reports the script, its handler, style and picture";
}

} // namespace

} // namespace kinovane::test

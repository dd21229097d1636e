// SPDX-License-Identifier: Apache-2.0

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tools/timeline/timeline_film.hpp"

namespace kinovane::test {

namespace {

namespace fs = std::filesystem;

TEST(TimelineFailure, LeavesTheOldFileAsItWas) {
    const struct {
        const char* sentence;
        std::function<void(TimelineFilm&)> prepare;
        std::vector<std::string> options;
        int status;
        std::string message; ///< With "{FILM}" for the film's folder.
    } rows[]{
        {"no plan",
         [](TimelineFilm& film) {
             film.workspace.snapshot.productionPlan.reset();
             fs::remove(film.workspace.directory / "production-plan.json");
         },
         {},
         4,
         "the film has no production plan yet"},
        {"no shots",
         [](TimelineFilm& film) { film.plan().shots.clear(); },
         {},
         4,
         "the production plan has no shots"},
        {"a length below zero",
         [](TimelineFilm& film) { film.plan().shots[0].durationSeconds = -1; },
         {},
         4,
         "the shot \"s1\" has a length below zero"},
        {"a length beyond all timelines",
         [](TimelineFilm& film) { film.plan().shots[0].durationSeconds = 1e300; },
         {},
         4,
         "with the shot \"s1\" the film is longer than 1000 hours"},
        {"more than 1000 hours",
         [](TimelineFilm& film) {
             film.plan().shots = {shotOf("s1", 1'800'000), shotOf("s2", 1'800'000.001)};
         },
         {},
         4,
         "with the shot \"s2\" the film is longer than 1000 hours"},
        {"a shot without a frame",
         [](TimelineFilm& film) { film.plan().shots = {shotOf("s1", 1), shotOf("s2", 0.015)}; },
         {},
         4,
         "the shot \"s2\" lasts 15 ms and has no frame of its own at 24 frames per second\n"
         "Next: kinovane timeline --frame-rate 48"},
        {"a shot of no length",
         [](TimelineFilm& film) { film.plan().shots[0].durationSeconds = 0; },
         {},
         4,
         "the shot \"s1\" lasts 0 ms and has no frame of its own at 24 frames per second"},
        {"a recorded rate of zero",
         [](TimelineFilm& film) { film.plan().target.fps = 0; },
         {},
         4,
         "the film's plan records 0 frames per second\nNext: kinovane timeline --frame-rate 24"},
        {"a rate that is none",
         [](TimelineFilm&) {},
         {"--frame-rate", "fast"},
         2,
         "--frame-rate: \"fast\" is not a frame rate from 1 to 1000\nFor help: kinovane timeline --help"},
        {"an unknown way to refer",
         [](TimelineFilm&) {},
         {"--references", "url"},
         2,
         "--references: \"url\" is not one of absolute, relative\nFor help: kinovane timeline --help"},
        {"a workspace that cannot be read",
         [](TimelineFilm& film) { fs::remove(film.workspace.directory / "run.json"); },
         {},
         3,
         "No run.json exists at {FILM}/run.json."},
        {"relative references from standard output",
         [](TimelineFilm&) {},
         {"--references", "relative", "--output", "-"},
         2,
         "--references relative needs a file as --output: references are relative to its folder"},
    };
    for (const auto& [sentence, prepare, options, status, message] : rows)
        for (const std::string& format : timelineFormats) {
            SCOPED_TRACE(std::string(sentence) + " " + format);
            TimelineFilm film;
            ASSERT_EQ(film.make(format).status, 0);
            const std::string old = contentOf(film.file(format));
            prepare(film);
            EXPECT_EQ(
                film.make(format, options),
                (Outcome{status, "", "kinovane: " + replaced(message, "{FILM}", film.folder()) + "\n"}));
            EXPECT_EQ(contentOf(film.file(format)), old);
            EXPECT_EQ(namesIn(film.out.path()), std::vector<std::string>{"film." + format});
        }
}

TEST(TimelineFailure, IsToldForWhatAnEDLCannotHold) {
    const struct {
        const char* sentence;
        std::function<void(TimelineFilm&)> prepare;
        std::vector<std::string> options;
        std::string message;
    } rows[]{
        {"a recorded rate without timecode",
         [](TimelineFilm& film) { film.plan().target.fps = 16; },
         {},
         "an EDL has no timecode for 16 frames per second, only for 23.976, 24, 25, 29.97, 30, 50, 59.94, "
         "60\n"
         "Next: kinovane timeline --frame-rate 24"},
        {"a fraction without timecode",
         [](TimelineFilm&) {},
         {"--frame-rate", "100/7"},
         "an EDL has no timecode for 100/7 frames per second, only for 23.976, 24, 25, 29.97, 30, 50, 59.94, "
         "60\n"
         "Next: kinovane timeline --frame-rate 24"},
        {"24 hours",
         [](TimelineFilm& film) { film.plan().shots[0].durationSeconds = 86'400; },
         {},
         "an EDL holds less than 24 hours\nNext: kinovane timeline --format otio"},
        {"1000 shots",
         [](TimelineFilm& film) {
             const FilmProductionShot shot = film.plan().shots[0];
             film.plan().shots.assign(1000, shot);
         },
         {},
         "an EDL holds 999 shots, and the film has 1000\nNext: kinovane timeline --format otio"},
    };
    for (const auto& [sentence, prepare, options, message] : rows) {
        SCOPED_TRACE(sentence);
        TimelineFilm film;
        prepare(film);
        EXPECT_EQ(film.make("edl", options), (Outcome{4, "", "kinovane: " + message + "\n"}));
        EXPECT_FALSE(fs::exists(film.file("edl")));
        EXPECT_EQ(film.make("otio", options).status, 0);
        EXPECT_EQ(film.make("fcpxml", options).status, 0);
    }
}

TEST(TimelineFailure, IsToldForOutputThatMustNotBeReplaced) {
    TimelineFilm film;
    film.workspace.add("shot-clip", "clips/s1.mp4", "clip");
    fs::create_symlink(film.workspace.directory / "clips/s1.mp4", film.out / "link");
    fs::create_hard_link(film.workspace.directory / "clips/s1.mp4", film.out / "hard-link");
    film.out.write("novel", "my novel");
    const std::string own = "--output would replace one of the film's own files: ";
    const std::string out = film.out.path().string();
    const struct {
        const char* sentence;
        std::string output;
        std::string message;
        bool isForced;
    } rows[]{
        {"the run manifest", film.folder() + "/run.json", own + film.folder() + "/run.json", true},
        {"the treatment, which does not exist", film.folder() + "/treatment.json",
         own + film.folder() + "/treatment.json", true},
        {"a recorded file", film.folder() + "/clips/s1.mp4", own + film.folder() + "/clips/s1.mp4", true},
        {"a link to a recorded file", out + "/link", own + out + "/link", true},
        {"a hard link to a recorded file", out + "/hard-link", own + out + "/hard-link", true},
        {"a folder", out,
         "--output is a folder: " + out + "\nNext: kinovane timeline --output " + out + "/timeline.otio",
         true},
        {"a device", "/dev/null", "--output is a device, not a file: /dev/null", true},
        {"nothing", "", "--output is empty", true},
        {"a file of another kind", out + "/novel",
         "--output would replace a file that is no OpenTimelineIO document: " + out +
             "/novel\nNext: kinovane timeline --force, if the file may be replaced",
         false},
    };
    for (const auto& [sentence, output, message, isForced] : rows) {
        SCOPED_TRACE(sentence);
        std::vector<std::string> options{"--output", output};
        if (isForced)
            options.emplace_back("--force");
        EXPECT_EQ(film.make("otio", options), (Outcome{2, "", "kinovane: " + message + "\n"}));
    }
    EXPECT_EQ(contentOf(film.workspace.directory / "clips/s1.mp4"), "clip");
    EXPECT_EQ(contentOf(film.out / "novel"), "my novel");
    EXPECT_EQ(film.make("otio", {"--output", out + "/novel", "--force"}).status, 0);
    EXPECT_EQ(readOTIO(contentOf(film.out / "novel"), {24, 1}).length, 36);
}

TEST(TimelineFailure, IsToldForAFolderThatDoesNotExist) {
    const TimelineFilm film;
    const std::string out = film.out.path().string();
    for (const std::string references : {"absolute", "relative"})
        EXPECT_EQ(
            film.make("otio", {"--references", references, "--output", out + "/new/film.otio", "--quiet"}),
            (Outcome{6, "", "kinovane: " + out + "/new: No such file or directory\n"}));
}

TEST(TimelineFailure, IsNoTimelineOfAnotherFormat) {
    for (const std::string& format : timelineFormats)
        for (const std::string& other : timelineFormats) {
            const TimelineFilm film;
            ASSERT_EQ(film.make(format).status, 0);
            EXPECT_EQ(film.make(other, {"--output", film.file(format).string()}).status,
                      format == other ? 0 : 2)
                << other << " in place of " << format;
        }
}

} // namespace

} // namespace kinovane::test

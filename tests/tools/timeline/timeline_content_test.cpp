// SPDX-License-Identifier: Apache-2.0

#include <algorithm>
#include <filesystem>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <boost/json.hpp>
#include <gtest/gtest.h>

#include "tools/timeline/timeline_film.hpp"

namespace kinovane::test {

namespace {

namespace fs = std::filesystem;

/// A WAVE file of silence: one channel, 8000 bytes a second.
std::string waveOf(std::size_t milliseconds) {
    const auto number = [](std::size_t value) {
        std::string bytes;
        for (int index = 0; index < 4; ++index, value /= 256)
            bytes += static_cast<char>(value % 256);
        return bytes;
    };
    const std::string sound(milliseconds * 8, '\x80');
    std::string format("\x01\x00\x01\x00", 4);
    format += number(8000) + number(8000) + std::string("\x01\x00\x08\x00", 4);
    return "RIFF" + number(36 + sound.size()) + "WAVEfmt " + number(16) + format + "data" +
           number(sound.size()) + sound;
}

/// Two shots, the second without a clip; lines, effects, a score and subtitles.
struct RichFilm : TimelineFilm {
    RichFilm() {
        plan().shots = {shotOf("s1", 2), shotOf("s1-2", 3)};
        plan().shots[0].transition = "dissolve";
        plan().shots[0].dialogue = {{"noor", "Borrow mine?", 0.5, ""}, {"ana", "Yes.", 1, ""}};
        plan().shots[1].dialogue = {{"ana", "Seven!", -0.5, ""}, {"noor", "Late.", 9, ""}};
        plan().shots[1].soundEffects = {{"waves", 0, 2, -12, 1}, {"bell", 1, 4, -12, 2}};
        workspace.add("shot-clip", "clips/s1.mp4", "clip");
        workspace.add("dialogue", "dialogue/s1-line-1.wav", waveOf(250));
        workspace.add("dialogue", "dialogue/s1-line-2.mp3", "of unknown length");
        workspace.add("dialogue", "dialogue/s1-2-line-1.wav", waveOf(1000));
        workspace.add("dialogue", "dialogue/s1-2-line-2.wav", waveOf(1000));
        workspace.add("sound-effect", "effects/s1-2-1-waves.wav", waveOf(10'000));
        workspace.add("sound-effect", "effects/s1-2-effect-2.wav", waveOf(500));
        workspace.add("score", "score/score.m4a", "score");
        workspace.add("subtitle-srt", "subtitles/film.srt", "1\n");
    }

    std::string url(const std::string& path) const {
        return "file://" + (workspace.directory / path).string();
    }
};

TEST(Timeline, HasShotsMarkersAndSounds) {
    for (const std::string& format : timelineFormats) {
        SCOPED_TRACE(format);
        const RichFilm film;
        EXPECT_EQ(film.make(format), (Outcome{0, film.file(format).string() + "\n",
                                              "Loaded      t\n"
                                              "Timeline    2 shots, 120 frames at 24 per second\n"
                                              "Rounded     nothing: every cut is on a frame\n"
                                              "Without     a clip: 1 of 2 shots\n"
                                              "left out    s1-2  line 2 begins outside the film\n"}));
        const ReadTimeline timeline = film.read(format);
        EXPECT_EQ(timeline.title, "t");
        EXPECT_EQ(timeline.length, 120);
        ASSERT_EQ(timeline.shots.size(), 2U);
        EXPECT_EQ(timeline.shots[0].url, film.url("clips/s1.mp4"));
        EXPECT_EQ(timeline.shots[0].transition, "dissolve");
        EXPECT_EQ(timeline.shots[1].url, std::nullopt);
        EXPECT_EQ(
            timeline.shots[0].markers,
            (std::vector<ReadMarker>{{12, "noor: Borrow mine?"}, {24, "ana: Yes."}, {36, "ana: Seven!"}}));
        EXPECT_EQ(timeline.shots[1].markers, std::vector<ReadMarker>());
        EXPECT_EQ(timeline.subtitles, std::vector<std::string>{film.url("subtitles/film.srt")});
        EXPECT_EQ(timeline.sounds, (std::vector<ReadSound>{
                                       {0, 120, film.url("score/score.m4a")},
                                       {12, 6, film.url("dialogue/s1-line-1.wav")},
                                       {24, 24, film.url("dialogue/s1-line-2.mp3")},
                                       {36, 24, film.url("dialogue/s1-2-line-1.wav")},
                                       {48, 48, film.url("effects/s1-2-1-waves.wav")},
                                       {72, 12, film.url("effects/s1-2-effect-2.wav")},
                                   }));
    }
}

TEST(Timeline, RefersOnlyToFilesInTheFilmsFolder) {
    const struct {
        const char* sentence;
        const char* path; ///< Of the clip of "s1".
        std::function<void(const TimelineFilm&)> change;
        bool isThere;
        const char* remark;
    } rows[]{
        {"a file", "clips/s1.mp4", [](const TimelineFilm&) {}, true, ""},
        {"no file", "clips/s1.mp4",
         [](const TimelineFilm& film) { fs::remove(film.workspace.directory / "clips/s1.mp4"); }, false,
         "missing     clips/s1.mp4\n"},
        {"a file of another size", "clips/s1.mp4",
         [](const TimelineFilm& film) { film.workspace.directory.write("clips/s1.mp4", "cl"); }, true,
         "changed     clips/s1.mp4  2 B, recorded 4 B: cut short\n"},
        {"a link that leads out", "clips/s1.mp4",
         [](const TimelineFilm& film) {
             fs::remove(film.workspace.directory / "clips/s1.mp4");
             fs::create_symlink("/etc/passwd", film.workspace.directory / "clips/s1.mp4");
         },
         false, "misplaced   clips/s1.mp4  leads out of the film's folder, to /etc/passwd\n"},
        {"a link within the folder", "clips/s1.mp4",
         [](const TimelineFilm& film) {
             fs::rename(film.workspace.directory / "clips/s1.mp4", film.workspace.directory / "a.mp4");
             fs::create_symlink("../a.mp4", film.workspace.directory / "clips/s1.mp4");
         },
         true, ""},
        {"a folder", "clips/s1.mp4",
         [](const TimelineFilm& film) {
             fs::remove(film.workspace.directory / "clips/s1.mp4");
             fs::create_directory(film.workspace.directory / "clips/s1.mp4");
         },
         false, "unreadable  clips/s1.mp4  is a folder, not a file\n"},
    };
    for (const auto& [sentence, path, change, isThere, remark] : rows)
        for (const std::string& format : timelineFormats) {
            SCOPED_TRACE(std::string(sentence) + " " + format);
            TimelineFilm film;
            film.workspace.add("shot-clip", path, "clip");
            change(film);
            const Outcome outcome = film.make(format);
            EXPECT_EQ(outcome.status, 0);
            EXPECT_EQ(outcome.err, "Loaded      t\n"
                                   "Timeline    1 shot, 36 frames at 24 per second\n"
                                   "Rounded     nothing: every cut is on a frame\n" +
                                       std::string(isThere ? "" : "Without     a clip: 1 of 1 shot\n") +
                                       remark);
            EXPECT_EQ(film.read(format).shots.at(0).url.has_value(), isThere);
        }
}

TEST(Timeline, RefersToFilesFromItsOwnFolder) {
    const RichFilm film;
    const fs::path place = film.workspace.directory / "edit #1 % ü";
    fs::create_directory(place);
    fs::create_directory_symlink(place, film.out / "link");
    for (const std::string& format : timelineFormats)
        for (const fs::path& folder :
             {place, film.workspace.directory.path(), film.out.path(), film.out / "link"}) {
            SCOPED_TRACE(format + " " + folder.string());
            const std::string file = (folder / ("film." + format)).string();
            ASSERT_EQ(film.make(format, {"--references", "relative", "--output", file}).status, 0);
            const ReadTimeline timeline = readTimeline(format, contentOf(file), {24, 1});
            for (const ReadSound& sound : timeline.sounds) {
                EXPECT_FALSE(sound.url.starts_with("/") || sound.url.starts_with("file:")) << sound.url;
                EXPECT_TRUE(fs::is_regular_file(fileOf(sound.url, fs::canonical(folder)))) << sound.url;
            }
        }
}

TEST(Timeline, IsMadeForAnyText) {
    const std::string hostile =
        "<a href=\"x\">'&amp;'</a> ]]> <!-- \n\t\r\x01\x1b[31m\u0085\u202e\uFFFE * LOC: %n "
        "\xF0\x9F\x8E\xAC مرحبا 日本";
    TimelineFilm film;
    FilmProductionShot& shot = film.plan().shots.at(0);
    shot.id = "s\"<1>&\n日本";
    shot.purpose = shot.transition = hostile;
    shot.dialogue = {{hostile, hostile, 0.5, hostile}};
    film.workspace.add("shot-clip", "clips/" + shot.id + ".mp4", "clip");
    film.workspace.add("subtitle-vtt", "sub <&>\n.vtt", "");
    writeDocuments(film.workspace);
    const std::string quoted = boost::json::serialize(boost::json::value(hostile));
    const fs::path project = film.workspace.directory / "film-project.json";
    film.workspace.directory.write("film-project.json",
                                   replaced(contentOf(project), R"("title":"t")", "\"title\":" + quoted));
    for (const std::string& format : timelineFormats) {
        SCOPED_TRACE(format);
        ASSERT_EQ(film.remake(format).status, 0);
        const ReadTimeline timeline = film.read(format);
        const fs::path clip = fileOf(timeline.shots.at(0).url.value_or(""), "");
        EXPECT_TRUE(fs::is_regular_file(clip)) << clip;
        EXPECT_TRUE(fs::is_regular_file(fileOf(timeline.subtitles.at(0), "")));
        if (format == "otio") {
            EXPECT_EQ(timeline.title, hostile);
            EXPECT_EQ(timeline.shots[0].id, shot.id);
            EXPECT_EQ(timeline.shots[0].markers.at(0).text, hostile + ": " + hostile);
        } else if (format == "fcpxml") {
            const std::string clean =
                replaced(replaced(replaced(hostile, "\x01", "\uFFFD"), "\x1b", "\uFFFD"), "\uFFFE", "\uFFFD");
            EXPECT_EQ(timeline.title, clean);
            EXPECT_EQ(timeline.shots[0].id, shot.id);
            EXPECT_EQ(timeline.shots[0].transition, clean);
            EXPECT_EQ(timeline.shots[0].markers.at(0).text, clean + ": " + clean);
        } else {
            EXPECT_EQ(timeline.title,
                      R"(<a href="x">'&amp;'</a> ]]> <!--    __[31m___ * LOC: %n _ _____ __)");
            EXPECT_EQ(timeline.shots[0].id, "s\"<1>& __");
        }
    }
}

} // namespace

} // namespace kinovane::test

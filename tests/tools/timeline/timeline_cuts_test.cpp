// SPDX-License-Identifier: Apache-2.0

#include <cstdlib>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <kinovane/handoff.hpp>

#include "tools/timeline/timeline_film.hpp"

namespace kinovane::test {

namespace {

/// Whether the frame begins at most half a frame away from the time.
bool isNear(std::int64_t frame, std::int64_t milliseconds, const FrameRate& rate) {
    return 2 * std::abs(frame * 1000 * rate.denominator - milliseconds * rate.numerator) <=
           1000 * rate.denominator;
}

/// Compares every cut and the length with the handoff manifest.
void expectCutsOf(const VistrelHandoff& manifest, const ReadTimeline& timeline, const FrameRate& rate) {
    ASSERT_EQ(timeline.shots.size(), manifest.shots.size());
    std::int64_t end = 0;
    for (std::size_t index = 0; index < manifest.shots.size(); ++index) {
        const VistrelHandoffShot& expected = manifest.shots[index];
        const ReadShot& shot = timeline.shots[index];
        EXPECT_EQ(shot.id, expected.id);
        EXPECT_EQ(shot.start, end) << shot.id;
        EXPECT_TRUE(isNear(shot.start, expected.timelineStartMilliseconds, rate)) << shot.id;
        end = shot.start + shot.length;
        EXPECT_TRUE(isNear(end, expected.timelineStartMilliseconds + expected.durationMilliseconds, rate))
            << shot.id;
    }
    EXPECT_EQ(timeline.length, end);
}

struct Rate {
    std::string text;
    FrameRate rate;
};

const std::vector<Rate> rates{{"23.976", {24000, 1001}}, {"24", {24, 1}}, {"25", {25, 1}},
                              {"29.97", {30000, 1001}},  {"30", {30, 1}}, {"50", {50, 1}},
                              {"59.94", {60000, 1001}},  {"60", {60, 1}}};

void expectCuts(const TimelineFilm& film) {
    const VistrelHandoff manifest = VistrelHandoffBuilder::build(film.workspace.snapshot, film.folder());
    for (const Rate& rate : rates)
        for (const std::string& format : timelineFormats) {
            SCOPED_TRACE(rate.text + " " + format);
            const Outcome outcome = film.make(format, {"--frame-rate", rate.text});
            ASSERT_EQ(outcome.status, 0) << outcome;
            expectCutsOf(manifest, film.read(format, rate.rate), rate.rate);
        }
}

TEST(TimelineCuts, AreThoseOfTheManifest) {
    const struct {
        const char* sentence;
        std::vector<double> seconds;
    } films[]{
        {"one shot", {1.5}},
        {"thirds of a second", std::vector<double>(100, 1.0 / 3)},
        {"halves of a frame", std::vector<double>(50, 0.0625)},
        {"a shot of 40 ms beside one of 5 minutes", {0.04, 300, 0.04}},
        {"minutes at which numbers of frames are left out", {59.95, 0.1, 59.9, 480.02, 0.05, 3000.98}},
        {"five hours of long shots", std::vector<double>(18, 1000.037)},
    };
    for (const auto& [sentence, seconds] : films) {
        SCOPED_TRACE(sentence);
        TimelineFilm film;
        film.plan().shots.clear();
        for (const double each : seconds)
            film.plan().shots.push_back(shotOf("s" + std::to_string(film.plan().shots.size() + 1), each));
        expectCuts(film);
    }
}

TEST(TimelineCuts, OfTheSampleFilmAreThoseOfItsManifest) {
    const FilmWorkspaceSnapshot sample = FilmProjectLoader::load(sampleFilm() / "run.json");
    const VistrelHandoff manifest = VistrelHandoffBuilder::build(sample, sample.root.string());
    const TemporaryDirectory folder;
    const auto expectSample = [&](const Rate& rate, const std::string& format, bool isNamed) {
        SCOPED_TRACE(rate.text + " " + format);
        const std::string file = (folder / ("film." + format)).string();
        std::vector<std::string> arguments{"timeline", sampleFilm(), "--format", format, "--output", file};
        if (isNamed)
            arguments.insert(arguments.end(), {"--frame-rate", rate.text});
        ASSERT_EQ(runCommandLineTool(arguments).status, 0);
        const ReadTimeline timeline = readTimeline(format, contentOf(file), rate.rate);
        expectCutsOf(manifest, timeline, rate.rate);
        EXPECT_EQ(timeline.sounds.size(), 15U);
        for (const ReadShot& shot : timeline.shots)
            EXPECT_TRUE(shot.url && std::filesystem::is_regular_file(fileOf(*shot.url, folder.path())));
        for (const ReadSound& sound : timeline.sounds)
            EXPECT_TRUE(std::filesystem::is_regular_file(fileOf(sound.url, folder.path()))) << sound.url;
    };
    const Rate recorded{"16", {16, 1}};
    expectSample(recorded, "otio", false);
    expectSample(recorded, "fcpxml", false);
    for (const Rate& rate : rates)
        for (const std::string& format : timelineFormats)
            expectSample(rate, format, true);
}

TEST(TimelineCuts, AreExactAtAnyRateInFormatsWithFractions) {
    const std::vector<Rate> unusual{{"16", {16, 1}},           {"12.5", {25, 2}}, {"100/7", {100, 7}},
                                    {"47.952", {48000, 1001}}, {"120", {120, 1}}, {"1000", {1000, 1}}};
    TimelineFilm film;
    film.plan().shots = {shotOf("s1", 1.001), shotOf("s2", 2.7), shotOf("s3", 0.333)};
    const VistrelHandoff manifest = VistrelHandoffBuilder::build(film.workspace.snapshot, film.folder());
    for (const Rate& rate : unusual)
        for (const std::string format : {"otio", "fcpxml"}) {
            SCOPED_TRACE(rate.text + " " + format);
            ASSERT_EQ(film.make(format, {"--frame-rate", rate.text}).status, 0);
            expectCutsOf(manifest, film.read(format, rate.rate), rate.rate);
        }
}

} // namespace

} // namespace kinovane::test

// SPDX-License-Identifier: Apache-2.0

#include <string>

#include <boost/json.hpp>
#include <gtest/gtest.h>

#include "tools/timeline/timeline_film.hpp"

namespace kinovane::test {

namespace {

/// Three shots, of which one cut is between two frames.
struct RoundedFilm : TimelineFilm {
    RoundedFilm() {
        plan().shots = {shotOf("s1", 1.51), shotOf("s2", 0.49)};
        workspace.add("shot-clip", "clips/s1.mp4", "clip");
        workspace.list("shot-clip", "clips/s2.mp4");
        workspace.add("dialogue", "dialogue/other.wav", "x");
    }
};

TEST(TimelineOutput, TellsWhatWasRoundedAndLeftOut) {
    const RoundedFilm film;
    EXPECT_EQ(film.make("otio"),
              (Outcome{0, film.file("otio").string() + "\n",
                       "Loaded      t\n"
                       "Timeline    2 shots, 48 frames at 24 per second\n"
                       "Rounded     1 of 2 cuts to frames, by at most 10.0 ms\n"
                       "Without     a clip: 1 of 2 shots\n"
                       "missing     clips/s2.mp4\n"
                       "left out    dialogue/other.wav  the plan has no line or effect for this sound\n"}));
    EXPECT_EQ(film.make("otio", {"--quiet"}), (Outcome{0, film.file("otio").string() + "\n", ""}));
}

TEST(TimelineOutput, IsPrintedAsJSON) {
    const RoundedFilm film;
    const Outcome outcome = film.make("otio", {"--json"});
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(boost::json::parse(outcome.out),
              boost::json::parse(R"({"version": 1, "title": "t", "output": ")" + film.file("otio").string() +
                                 R"(", "format": "otio", "frameRate": {"numerator": 24, "denominator": 1},
        "frames": 48, "shots": [
        {"id": "s1", "startFrame": 0, "frames": 36, "startMilliseconds": 0, "durationMilliseconds": 1510,
         "clip": "file://)" + film.folder() +
                                 R"(/clips/s1.mp4"},
        {"id": "s2", "startFrame": 36, "frames": 12, "startMilliseconds": 1510, "durationMilliseconds": 490,
         "clip": null}],
        "sounds": 0, "rounded": {"cuts": 1, "largestMilliseconds": 10}, "remarks": [
        {"state": "missing", "path": "clips/s2.mp4", "reason": null},
        {"state": "left out", "path": "dialogue/other.wav",
         "reason": "the plan has no line or effect for this sound"}]})"))
        << outcome;
}

TEST(TimelineOutput, MayBeStandardOutput) {
    const RoundedFilm film;
    for (const std::string& format : timelineFormats)
        for (const std::string option : {"--json", "--quiet"}) {
            ASSERT_EQ(film.make(format, {"--quiet"}).status, 0);
            EXPECT_EQ(film.make(format, {"--output", "-", option}),
                      (Outcome{0, contentOf(film.file(format)), ""}));
        }
}

} // namespace

} // namespace kinovane::test

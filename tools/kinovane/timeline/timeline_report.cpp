// SPDX-License-Identifier: Apache-2.0

#include "timeline/timeline_report.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <string_view>

#include <boost/json.hpp>

#include "commands/damage_text.hpp"
#include "terminal/display_width.hpp"
#include "terminal/human_text.hpp"
#include "terminal/shown_text.hpp"
#include "terminal/style.hpp"

namespace kinovane::tool {

namespace json = boost::json;

namespace {

constexpr std::size_t longestTitle = 200;
constexpr double leastDifference = 1e-6; // In milliseconds: nothing but the inexactness of the calculation.

/// The ends of the shots that are not where the film's documents have them.
struct Rounding {
    explicit Rounding(const Edit& edit) {
        for (const EditShot& shot : edit.shots) {
            const double difference = std::abs(edit.rate.millisecondsAt(shot.start + shot.length) -
                                               static_cast<double>(shot.endMilliseconds));
            if (difference > leastDifference)
                ++cuts;
            largest = std::max(largest, difference);
        }
    }

    std::size_t cuts = 0;
    double largest = 0; ///< In milliseconds.
};

std::string step(std::string_view word, const std::string& text) {
    return styled(Style::good, word) + std::string(wordColumns - word.size(), ' ') + text + "\n";
}

std::string millisecondsText(double milliseconds) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.1f ms", milliseconds);
    return milliseconds < 0.05 ? "less than 0.1 ms" : text.data();
}

std::size_t clipsMissing(const Edit& edit) {
    return static_cast<std::size_t>(std::ranges::count_if(
        edit.shots, [](const EditShot& shot) { return shot.presentClip() == nullptr; }));
}

json::array shotsJSON(const Edit& edit) {
    json::array shots;
    for (const EditShot& shot : edit.shots) {
        const EditMedia* clip = shot.presentClip();
        shots.push_back({{"id", shot.shot.planned.id},
                         {"startFrame", shot.start},
                         {"frames", shot.length},
                         {"startMilliseconds", shot.startMilliseconds},
                         {"durationMilliseconds", shot.endMilliseconds - shot.startMilliseconds},
                         {"clip", clip != nullptr ? json::value(clip->url) : nullptr}});
    }
    return shots;
}

json::array remarksJSON(const std::vector<EditRemark>& remarks) {
    json::array list;
    for (const EditRemark& remark : remarks)
        list.push_back({{"state", remark.word},
                        {"path", remark.path},
                        {"reason", remark.reason.empty() ? json::value() : json::value(remark.reason)}});
    return list;
}

} // namespace

std::string TimelineReport::text(std::size_t columns) const {
    const Rounding rounding(edit);
    const std::string title =
        fitted(shown(edit.title), std::min(columns, longestTitle + wordColumns) - wordColumns);
    std::string text = step("Loaded", title);
    text += step("Timeline", countText(edit.shots.size(), "shot", "shots") + ", " +
                                 countText(static_cast<std::uint64_t>(edit.length), "frame", "frames") +
                                 " at " + frameRateText(edit.rate) + " per second");
    text += step("Rounded", rounding.cuts == 0
                                ? "nothing: every cut is on a frame"
                                : std::to_string(rounding.cuts) + " of " +
                                      countText(edit.shots.size(), "cut", "cuts") +
                                      " to frames, by at most " + millisecondsText(rounding.largest));
    if (const std::size_t missing = clipsMissing(edit))
        text += step("Without", "a clip: " + std::to_string(missing) + " of " +
                                    countText(edit.shots.size(), "shot", "shots"));
    for (const EditRemark& remark : remarks)
        text += pathLine(styled(Style::warning, remark.word), remark.path, remark.reason, columns);
    return text;
}

json::value TimelineReport::json(const std::string& format, const std::filesystem::path& output) const {
    const Rounding rounding(edit);
    std::uint64_t sounds = 0;
    for (const EditTrack& track : edit.tracks)
        sounds += track.sounds.size();
    return json::object{
        {"version", 1},
        {"title", edit.title},
        {"output", output.string()},
        {"format", format},
        {"frameRate",
         json::object{{"numerator", edit.rate.numerator}, {"denominator", edit.rate.denominator}}},
        {"frames", edit.length},
        {"shots", shotsJSON(edit)},
        {"sounds", sounds},
        {"rounded", json::object{{"cuts", rounding.cuts}, {"largestMilliseconds", rounding.largest}}},
        {"remarks", remarksJSON(remarks)}};
}

} // namespace kinovane::tool

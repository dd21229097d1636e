// SPDX-License-Identifier: Apache-2.0

#include "storyboard/timeline_layout.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <tuple>
#include <utility>

namespace kinovane::tool {

namespace {

constexpr double usualShotWidth = 104; ///< Pixels.
constexpr double widestTimeline = 120'000;
constexpr double markDistance = 52;
constexpr double mostMarks = 400;
constexpr double letterWidth = 7;
constexpr std::size_t longestLabel = 44;
constexpr std::size_t mostRows = 4;

double lengthOf(const StoryboardShot& shot) {
    return std::max<double>(0, static_cast<double>(shot.durationMilliseconds.value_or(0)));
}

double startOf(const StoryboardShot& shot) { return static_cast<double>(shot.startMilliseconds.value_or(0)); }

double totalOf(const std::vector<StoryboardShot>& shots) {
    double total = 0;
    for (const StoryboardShot& shot : shots)
        if (shot.startMilliseconds)
            total = std::max(total, startOf(shot) + lengthOf(shot));
    return total;
}

double medianLength(const std::vector<StoryboardShot>& shots) {
    std::vector<double> lengths;
    for (const StoryboardShot& shot : shots)
        if (lengthOf(shot) > 0)
            lengths.push_back(lengthOf(shot));
    if (lengths.empty())
        return 1;
    const auto middle = lengths.begin() + static_cast<std::ptrdiff_t>(lengths.size() / 2);
    std::ranges::nth_element(lengths, middle);
    return *middle;
}

/// Milliseconds; each is a multiple of the next.
std::vector<double> markSteps(double total) {
    constexpr std::array<double, 11> steps{3'600'000, 1'800'000, 600'000, 300'000, 60'000, 30'000,
                                           10'000,    5'000,     1'000,   500,     100};
    double longest = steps.front();
    while (total / longest > mostMarks)
        longest *= 10;
    if (longest > steps.front())
        return {longest};
    std::vector<double> used;
    for (const double step : steps)
        if (total / step <= mostMarks && (total >= step || step == steps.back()))
            used.push_back(step);
    return used;
}

/// Assigns rows so that labels rarely overlap, and tells each label where the next one begins.
unsigned arrange(std::vector<TimelineItem>& items, double total) {
    std::ranges::sort(items, {},
                      [](const TimelineItem& item) { return std::tuple(item.start, item.shot, item.index); });
    std::vector<double> ends;            // Of the last label of each row.
    std::vector<TimelineItem*> previous; // The last item of each row.
    for (TimelineItem& item : items) {
        auto row = std::ranges::find_if(ends, [&](double end) { return end <= item.start; });
        if (row == ends.end() && ends.size() < mostRows) {
            previous.push_back(nullptr);
            row = ends.insert(ends.end(), 0);
        } else if (row == ends.end()) {
            row = std::ranges::min_element(ends);
        }
        item.row = static_cast<unsigned>(row - ends.begin());
        *row = std::max(item.labelEnd, item.start + item.length);
        if (TimelineItem* before = std::exchange(previous[item.row], &item))
            before->labelEnd = item.start;
        item.labelEnd = total;
    }
    return static_cast<unsigned>(ends.size());
}

} // namespace

TimelineLayout::TimelineLayout(const Storyboard& storyboard) : total(totalOf(storyboard.shots)) {
    if (total <= 0)
        return;
    width = std::min(total / medianLength(storyboard.shots) * usualShotWidth, widestTimeline);

    const std::vector<double> steps = markSteps(total);
    for (const double step : steps)
        levelWidths.push_back(total / step * markDistance);
    for (double number = 0; number * steps.back() <= total; ++number) {
        const double time = number * steps.back();
        const auto level =
            std::ranges::find_if(steps, [&](double step) { return std::fmod(time, step) == 0; });
        marks.push_back({time, static_cast<unsigned>(level - steps.begin())});
    }

    const double letterTime = letterWidth / std::max(width, 1.0) * total;
    const auto add = [&](std::vector<TimelineItem>& items, std::size_t shot, std::size_t index,
                         double seconds, double length, const std::string& label) {
        const double start = std::clamp(startOf(storyboard.shots[shot]) + seconds * 1000, 0.0, total);
        const double letters = static_cast<double>(std::min(label.size(), longestLabel));
        items.push_back(
            {shot, index, start, std::clamp(length, 0.0, total - start), start + letters * letterTime, 0});
    };
    for (std::size_t shot = 0; shot < storyboard.shots.size(); ++shot) {
        const StoryboardShot& each = storyboard.shots[shot];
        if (!each.startMilliseconds)
            continue;
        for (std::size_t index = 0; index < each.dialogue.size(); ++index)
            add(lines, shot, index, each.dialogue[index].startSeconds, 0, each.dialogue[index].text);
        for (std::size_t index = 0; index < each.soundEffects.size(); ++index)
            add(effects, shot, index, each.soundEffects[index].startSeconds,
                each.soundEffects[index].durationSeconds * 1000, each.soundEffects[index].prompt);
    }
    lineRows = arrange(lines, total);
    effectRows = arrange(effects, total);
}

} // namespace kinovane::tool

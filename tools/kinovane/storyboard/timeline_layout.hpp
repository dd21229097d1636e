// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "storyboard/storyboard.hpp"

namespace kinovane::tool {

/// A dialogue line or a sound effect on the timeline. Times are milliseconds from the start of the film.
struct TimelineItem {
    std::size_t shot = 0;  ///< The position of its shot.
    std::size_t index = 0; ///< Its position among the lines or the effects of the shot.
    double start = 0;
    double length = 0;   ///< 0 for a dialogue line, whose length is not known.
    double labelEnd = 0; ///< Up to here there is space for its text.
    unsigned row = 0;
};

struct TimelineMark {
    double time = 0; ///< Milliseconds.
    unsigned level = 0;
};

/// Where everything lies on the timeline.
struct TimelineLayout {
    explicit TimelineLayout(const Storyboard& storyboard);

    double total = 0; ///< The length of the film in milliseconds; 0 when nothing can be shown.
    double width = 0; ///< In pixels: wide enough for the usual shot to show its picture.

    std::vector<TimelineMark> marks; ///< In the order of time.
    /// For each level of the marks: the width of the timeline, in pixels, from which on they do not overlap.
    std::vector<double> levelWidths;

    std::vector<TimelineItem> lines;
    std::vector<TimelineItem> effects;
    unsigned lineRows = 0;
    unsigned effectRows = 0;

    double percent(double milliseconds) const { return milliseconds / total * 100; }
};

} // namespace kinovane::tool

// SPDX-License-Identifier: Apache-2.0

#include "timeline/sound_time.hpp"

#include <algorithm>
#include <cmath>

namespace kinovane::tool {

std::optional<std::int64_t> timelineMilliseconds(double seconds) {
    const double milliseconds = std::round(seconds * 1000);
    if (!(std::abs(milliseconds) <= static_cast<double>(longestTimeline)))
        return std::nullopt;
    return static_cast<std::int64_t>(milliseconds);
}

std::optional<SoundTime> soundTime(const Edit& edit, std::size_t shot, double startSeconds) {
    const EditShot& own = edit.shots[shot];
    const std::optional<std::int64_t> offset = timelineMilliseconds(startSeconds);
    if (!offset)
        return std::nullopt;
    const std::int64_t time = own.startMilliseconds + *offset;
    if (time < 0 || time >= edit.shots.back().endMilliseconds)
        return std::nullopt;
    std::int64_t frame = std::min(edit.rate.frameAt(time), edit.length - 1);
    // Rounding must not move it into the next shot.
    if (time >= own.startMilliseconds && time < own.endMilliseconds)
        frame = std::min(frame, own.start + own.length - 1);
    return SoundTime{time, frame};
}

} // namespace kinovane::tool

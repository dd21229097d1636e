// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "timeline/edit.hpp"

namespace kinovane::tool {

/// Where something begins on the timeline.
struct SoundTime {
    std::int64_t milliseconds = 0; ///< From the start of the film.
    std::int64_t frame = 0;        ///< Within the film, and within the shot if it begins during the shot.
};

/// The place of what begins this long after the start of a shot; nothing when it is outside the film.
std::optional<SoundTime> soundTime(const Edit& edit, std::size_t shot, double startSeconds);

/// Seconds in milliseconds, halves rounded away from zero as in a handoff manifest; nothing for a number that
/// no timeline can hold.
std::optional<std::int64_t> timelineMilliseconds(double seconds);

} // namespace kinovane::tool

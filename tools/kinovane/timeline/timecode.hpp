// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <string>

#include "timeline/frame_rate.hpp"

namespace kinovane::tool {

/// The frames in 24 hours of timecode, after which it begins again.
std::int64_t timecodeDay(const FrameRate& rate) noexcept;

/// The timecode of a frame: hours, minutes, seconds and frames, "00:01:02:15". At 29.97 and 59.94 frames per
/// second it follows the clock by leaving out frame numbers, and has a semicolon: "00:01:00;02".
std::string timecode(std::int64_t frame, const FrameRate& rate);

} // namespace kinovane::tool

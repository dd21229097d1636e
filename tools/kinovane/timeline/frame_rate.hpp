// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kinovane::tool {

/// Frames per second, as an exact fraction in lowest terms.
struct FrameRate {
    std::int64_t numerator = 24;
    std::int64_t denominator = 1;

    bool operator==(const FrameRate&) const = default;

    /// The number of the frame that begins nearest to this time, counted from 0; of two equally near ones the
    /// later. The time is at least 0 and at most `longestTimeline`.
    std::int64_t frameAt(std::int64_t milliseconds) const noexcept;

    /// How many whole frames fit into a time of at most `longestTimeline`.
    std::int64_t framesWithin(std::int64_t milliseconds) const noexcept;

    /// The time at which a frame begins.
    double millisecondsAt(std::int64_t frame) const noexcept;

    /// The frames that a timecode counts in a second: 30 for 29.97.
    std::int64_t timecodeRate() const noexcept;

    /// Whether timecode leaves out frame numbers so that it follows the clock: at 29.97 and 59.94.
    bool isDropFrame() const noexcept;
};

/// 1000 hours in milliseconds. Within it all calculations with frames fit 64 bits.
inline constexpr std::int64_t longestTimeline = 3'600'000'000;

/// A rate from 1 to 1000 as text: "24", "12.5", "30000/1001". The usual abbreviations such as "23.976",
/// "23.98" and "29.97" stand for the exact fractions. Nothing for any other text.
std::optional<FrameRate> frameRateOf(std::string_view text);

/// The rate in its usual form: "24", "23.976", "12.5", "100/7".
std::string frameRateText(const FrameRate& rate);

} // namespace kinovane::tool

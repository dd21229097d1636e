// SPDX-License-Identifier: Apache-2.0

#include "timeline/timecode.hpp"

#include <array>
#include <cstdio>

namespace kinovane::tool {

namespace {

constexpr std::int64_t secondsOfMinute = 60;
constexpr std::int64_t partDropped = 15; // A fifteenth of a second's numbers: 2 of 30, 4 of 60.

/// The numbers that are left out at the start of each minute but every tenth: 2 at 29.97, 4 at 59.94.
std::int64_t droppedNumbers(const FrameRate& rate) {
    return rate.isDropFrame() ? rate.timecodeRate() / partDropped : 0;
}

/// The frames in ten minutes, of which nine begin with numbers that are left out.
std::int64_t framesOfTenMinutes(const FrameRate& rate) {
    return rate.timecodeRate() * secondsOfMinute * 10 - 9 * droppedNumbers(rate);
}

/// The number that the frame has when numbers are left out.
std::int64_t numberOf(std::int64_t frame, const FrameRate& rate) {
    const std::int64_t dropped = droppedNumbers(rate);
    const std::int64_t tens = frame / framesOfTenMinutes(rate);
    const std::int64_t rest = frame % framesOfTenMinutes(rate);
    const std::int64_t framesOfMinute = rate.timecodeRate() * secondsOfMinute - dropped;
    // The first minute of the ten is longer by the numbers that are left out in the others.
    const std::int64_t minutes = rest < dropped ? 0 : (rest - dropped) / framesOfMinute;
    return frame + dropped * (9 * tens + minutes);
}

} // namespace

std::int64_t timecodeDay(const FrameRate& rate) noexcept { return framesOfTenMinutes(rate) * 6 * 24; }

std::string timecode(std::int64_t frame, const FrameRate& rate) {
    const std::int64_t number = numberOf(frame, rate);
    const auto frames = static_cast<int>(number % rate.timecodeRate());
    const auto seconds = static_cast<int>(number / rate.timecodeRate());
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%02d:%02d:%02d%c%02d", seconds / 3600, seconds / 60 % 60,
                  seconds % 60, rate.isDropFrame() ? ';' : ':', frames);
    return text.data();
}

} // namespace kinovane::tool

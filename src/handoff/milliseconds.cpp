// SPDX-License-Identifier: Apache-2.0

#include "handoff/milliseconds.hpp"

#include <cmath>
#include <string>

#include "common/fatal.hpp"

namespace kinovane {

std::optional<std::int64_t> millisecondsOf(double seconds) {
    constexpr double limit = 9223372036854775808.0; // 2^63
    const double rounded = std::round(seconds * 1000);
    if (rounded >= -limit && rounded < limit) // False for NaN.
        return static_cast<std::int64_t>(rounded);
    return std::nullopt;
}

std::int64_t roundedMilliseconds(double seconds) {
    const std::optional<std::int64_t> rounded = millisecondsOf(seconds);
    if (!rounded)
        fatalStop("A duration of " + std::to_string(seconds) +
                  " seconds does not fit 64 bits of milliseconds");
    return *rounded;
}

} // namespace kinovane

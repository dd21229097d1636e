// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <optional>

namespace kinovane {

/// Seconds as whole milliseconds, rounded to the nearest; halves are rounded away from zero. Nothing if the
/// result does not fit 64 bits.
std::optional<std::int64_t> millisecondsOf(double seconds);

/// The same; ends the process if the result does not fit.
std::int64_t roundedMilliseconds(double seconds);

} // namespace kinovane

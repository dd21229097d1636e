// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>

namespace kinovane {

/// Seconds as whole milliseconds, rounded to the nearest; halves are rounded away from zero. Ends the process
/// when the result does not fit 64 bits.
std::int64_t roundedMilliseconds(double seconds);

} // namespace kinovane

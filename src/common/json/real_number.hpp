// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <optional>
#include <string_view>

namespace kinovane::json {

/// The double nearest to the number in `text`, whatever the locale. Absent when it is too large for a double.
/// For a number that is too small for one, the result is 0 or absent.
std::optional<double> nearestDouble(std::string_view text);

} // namespace kinovane::json

// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kinovane::tool {

/// Minutes, seconds and milliseconds: "1:02.500". Halves of a millisecond are rounded away from zero, as in
/// a handoff manifest.
std::string durationText(double seconds);

/// "812 B", "27.3 kB", "1.5 GB"; the units are powers of 1000.
std::string sizeText(std::int64_t bytes);

/// "1 file", "7 files".
std::string countText(std::uint64_t count, std::string_view one, std::string_view many);

} // namespace kinovane::tool

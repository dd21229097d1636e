// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace kinovane {

/// Returns the numbers of a version such as "1.4.2" or "v1.4.2". A component that is not a number counts as
/// 0.
std::vector<std::int64_t> versionComponents(std::string_view text);

/// Whether version `a` is newer than version `b`. They are compared number by number; if all numbers of the
/// shorter one are equal, the longer one is newer.
bool isNewer(std::string_view a, std::string_view b);

} // namespace kinovane

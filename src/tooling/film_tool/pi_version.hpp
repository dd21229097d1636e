// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace kinovane {

/// The numbers of a version text such as "1.4.2" or "v1.4.2". A part that is no number counts as 0.
std::vector<std::int64_t> versionComponents(std::string_view text);

/// Whether version `a` is newer than version `b`, number by number; of two that agree as far as both go, the
/// longer one is newer.
bool isNewer(std::string_view a, std::string_view b);

} // namespace kinovane

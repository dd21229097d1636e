// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>

namespace kinovane::tool {

/// The name of the handoff manifest in a film's folder.
inline constexpr const char* manifestName = "vistrel-handoff.json";

/// In bytes. The importer reads no larger manifest.
inline constexpr std::uintmax_t largestManifest = std::uintmax_t{256} << 20U;

} // namespace kinovane::tool

// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "common/record.hpp"

namespace simulator::vistrel {

/// Refuses a manifest whose parts contradict each other: shots that do not follow on each other, key frames
/// and clips that are not among the assets, wrong ids and paths. Opens no media file.
void checkManifest(const json::object& manifest);

} // namespace simulator::vistrel

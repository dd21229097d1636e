// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "manifest.hpp"

namespace vistrel {

/// Refuses a film whose parts contradict each other: shots that do not follow on each other, key frames and
/// clips that are not among the assets, ids and paths that are not what they should be. Looks at no media
/// file.
void checkManifest(const Manifest& manifest);

} // namespace vistrel

// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>

#include "timeline/edit.hpp"

namespace kinovane::tool {

/// The edit as a document of OpenTimelineIO: a Timeline.1 with one video track, on which every shot is a
/// Clip.2, and the audio tracks. A shot without a file has a MissingReference.1. What the format has no field
/// for is metadata below the key "kinovane".
std::string otioDocument(const Edit& edit);

} // namespace kinovane::tool

// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>

#include "timeline/edit.hpp"

namespace kinovane::tool {

/// The picture of the edit as a list in the format CMX3600, in ASCII. Every shot is an event; one without a
/// file has black. Files, transitions, lines and sounds are comments.
///
/// Throws CommandError (`handoff`) when the format has no timecode for the frame rate, and for a film of 24
/// hours or more than 999 shots.
std::string edlDocument(const Edit& edit);

} // namespace kinovane::tool

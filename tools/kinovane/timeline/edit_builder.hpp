// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <optional>

#include <kinovane/workspace.hpp>

#include "timeline/edit.hpp"
#include "timeline/media_files.hpp"

namespace kinovane::tool {

/// Makes the edit of a film from its plan. Each cut is rounded to the nearest frame from its own time, so
/// that no shot is more than half a frame away from its place. `rate` is that of the plan when absent.
///
/// Throws CommandError (`handoff`) when the film has no shots, a shot has no place on a timeline, or a shot
/// has no frame at this rate. A sound that begins outside the film is left out with a remark.
Edit editOf(const FilmWorkspaceSnapshot& film, const std::optional<FrameRate>& rate, MediaFiles& files);

} // namespace kinovane::tool

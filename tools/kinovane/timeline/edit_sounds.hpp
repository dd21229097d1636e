// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <vector>

#include <kinovane/workspace.hpp>

#include "timeline/edit.hpp"
#include "timeline/media_files.hpp"

namespace kinovane::tool {

/// The recorded sounds of the film: dialogue, effects and score. Sounds that overlap are on different tracks,
/// and all end with the film. A sound whose file is not there has a remark and is left out.
///
/// A line is as long as its file; where the file does not tell, it lasts until the next line or the end of
/// the shot. An effect is as long as planned, or as its file if that is shorter.
std::vector<EditTrack> soundTracks(const FilmWorkspaceSnapshot& film, const Edit& edit, MediaFiles& files);

} // namespace kinovane::tool

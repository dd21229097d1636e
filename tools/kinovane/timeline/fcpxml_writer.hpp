// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>

#include "timeline/edit.hpp"

namespace kinovane::tool {

/// The edit as a document of the format FCPXML 1.9. The spine has an asset clip for each shot, or a gap for a
/// shot without a file; sounds are connected to the shot during which they begin, each track on a lane of its
/// own below the picture. Lines are markers; the transition and the identifiers of a shot are in its note and
/// its metadata, and the files of subtitles in the note of the sequence.
std::string fcpxmlDocument(const Edit& edit);

} // namespace kinovane::tool

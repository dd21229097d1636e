// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <vector>

#include <kinovane/handoff.hpp>
#include <kinovane/stop.hpp>
#include <kinovane/workspace.hpp>

namespace kinovane::tool {

/// Whether a recorded file is handed over.
bool isExported(const FilmArtifact& artifact);

/// The recorded files that are handed over, in the project's order.
std::vector<FilmArtifact> exportedFiles(const FilmWorkspaceSnapshot& film);

/// Those of these files that do not exist, are no files, or have another size than the project records, in
/// the project's order. No content is read, so that this is known long before all files are verified. Throws
/// as VistrelHandoffBuilder::examine.
std::vector<ArtifactOutcome> filesOfOtherSize(const FilmWorkspaceSnapshot& film, const StopToken& stop);

} // namespace kinovane::tool

// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <optional>

#include <kinovane/handoff.hpp>
#include <kinovane/workspace.hpp>

namespace kinovane::tool {

/// What a storyboard is made from: a film, or a handoff manifest and, where it is found, its film.
struct StoryboardSource {
    std::optional<FilmWorkspaceSnapshot> film;
    std::optional<VistrelHandoff> handoff;
    std::filesystem::path manifest; ///< Where `handoff` was read from.
};

/// Loads the film of a folder or a "run.json"; any other file is read as a handoff manifest. The film of a
/// manifest is the one with the same project id in the manifest's folder, or else in the folder that the
/// manifest names.
///
/// Throws CommandError (`workspace`) for a film or a manifest that cannot be read.
StoryboardSource loadStoryboardSource(const std::filesystem::path& location);

/// The absolute path of the page. Throws UsageError when it would replace the manifest that was read, one of
/// the film's own files, its handoff manifest, anything that is no regular file, or, unless forced, a file
/// that is no page; and CommandError (`fileSystem`) when its folder does not exist.
std::filesystem::path pageTarget(const StoryboardSource& source, const std::filesystem::path& output,
                                 bool force);

} // namespace kinovane::tool

// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>

#include <kinovane/workspace.hpp>

namespace kinovane::tool {

/// Whether both paths lead to one file, by any path or link. A file that does not exist yet is compared by
/// the directory that it would be created in, and its name.
bool isSameFile(const std::filesystem::path& left, const std::filesystem::path& right);

/// Whether the path leads to a document of the film or to one of its recorded files, so that output must not
/// replace it. The handoff manifest is not one of them.
bool isOwnFile(const FilmWorkspaceSnapshot& film, const std::filesystem::path& path);

} // namespace kinovane::tool

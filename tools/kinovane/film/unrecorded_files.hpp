// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include <kinovane/workspace.hpp>

namespace kinovane::tool {

/// Something below the film's folder that the project does not record.
struct UnrecordedFile {
    std::string path;                   ///< Relative to the film's folder.
    std::optional<std::uint64_t> bytes; ///< Of a regular file.
    std::string remark;                 ///< What it is, if it is no regular file; `shown`.

    bool operator==(const UnrecordedFile&) const = default;
};

/// The files below the film's folder that no artifact records, by path or link, sorted by path. The documents
/// of the workspace and the handoff manifest are left out. Links are listed and not followed. A folder that
/// cannot be listed is an element with the reason as its remark.
std::vector<UnrecordedFile> unrecordedFiles(const FilmWorkspaceSnapshot& film);

} // namespace kinovane::tool

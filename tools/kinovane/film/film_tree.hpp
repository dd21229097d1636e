// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <system_error>
#include <vector>

#include <sys/stat.h>

namespace kinovane::tool {

/// Something in a film's folder.
struct TreeEntry {
    std::filesystem::path path; ///< Relative to the folder.
    struct stat status{};       ///< Of the entry itself; links are not followed.
    std::error_code failure;    ///< Why a folder could not be listed.

    bool isFile() const noexcept { return S_ISREG(status.st_mode); }
    bool isFolder() const noexcept { return S_ISDIR(status.st_mode); }
    bool isLink() const noexcept { return S_ISLNK(status.st_mode); }
};

/// Everything below the folder, sorted by path; a folder comes before its contents. Links are not followed.
std::vector<TreeEntry> treeBelow(const std::filesystem::path& folder);

/// The text of a link for a copy of the folder, which leads to the same entry inside the copy; empty if the
/// link leads out of the folder. `link` is relative to the folder.
std::filesystem::path linkTextInside(const std::filesystem::path& folder, const std::filesystem::path& link);

/// Whether the text of the path is that of the folder or begins with it, component by component.
bool isInsideLexically(const std::filesystem::path& path, const std::filesystem::path& folder);

/// Whether one folder is the other one or lies in it, links followed.
bool isInside(const std::filesystem::path& path, const std::filesystem::path& folder);

} // namespace kinovane::tool

// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace kinovane::tool {

/// A line of a list in the format of sha256sum.
struct Checksum {
    std::string path;
    std::string digest; ///< "sha256:" and 64 lowercase hexadecimal digits.

    bool operator==(const Checksum&) const = default;
};

/// The line for a file, with its line feed: 64 digits, two spaces, the path. A path with a backslash or a
/// line break is escaped, and the line then begins with a backslash.
std::string checksumLine(const Checksum& checksum);

/// Reads a list. Lines may end with CR and LF, and mark the binary mode with "*". Throws
/// std::filesystem::filesystem_error when the file cannot be read, and CommandError (`fileSystem`), naming
/// file and line, for a line of another form, such as a comment.
std::vector<Checksum> readChecksumList(const std::filesystem::path& file);

} // namespace kinovane::tool

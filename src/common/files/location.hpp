// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>

namespace kinovane {

/// Whether the text contains a NUL byte, at which the operating system would truncate it.
inline bool holdsNUL(std::string_view text) noexcept { return text.find('\0') != std::string_view::npos; }

/// The working directory at the time of construction. Asynchronous operations store one, so that a relative
/// location keeps its meaning when the application changes its working directory meanwhile.
class WorkingDirectory {
  public:
    WorkingDirectory();

    /// Makes a relative location absolute: appends it, without leading "./", to this directory. Absolute and
    /// empty locations are returned unchanged. Throws std::filesystem::filesystem_error when the location is
    /// relative and the working directory could not be determined.
    std::filesystem::path absolute(const std::filesystem::path& location) const;

  private:
    std::error_code error_;
    std::filesystem::path path_;
};

/// The same for the current working directory.
std::filesystem::path absoluteLocation(const std::filesystem::path& location);

/// The absolute location without "." and ".." components. A ".." after a symbolic link leads to the parent of
/// the link's target, as in the file system; other links are not resolved. An empty location stays empty.
/// Throws std::filesystem::filesystem_error when the working directory or a link cannot be read.
std::filesystem::path standardized(const std::filesystem::path& location);

/// The location as an argument for an external program: absolute, so that it cannot be mistaken for an
/// option. A relative one is returned unchanged when the working directory cannot be determined.
std::string pathText(const std::filesystem::path& location);

/// Whether a file of any kind may exist at the location, links followed. True also when the file system does
/// not tell (for example EACCES), so that the attempt to read the file reports the reason.
bool mayExist(const std::filesystem::path& location) noexcept;

/// Whether a file of any kind is known to exist at the location, links followed. False also when the file
/// system does not tell.
bool isKnownToExist(const std::filesystem::path& location) noexcept;

/// Whether the location is that of a regular file, links followed, that the current user may execute.
bool isExecutableFile(const std::filesystem::path& location) noexcept;

} // namespace kinovane

// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>

namespace kinovane {

/// Whether the text holds a NUL byte, where the operating system would cut it.
inline bool holdsNUL(std::string_view text) noexcept { return text.find('\0') != std::string_view::npos; }

/// The working directory of the moment at which it was made. A relative location given to a call thus keeps
/// its meaning when the application changes its directory before a worker thread uses the location.
class WorkingDirectory {
  public:
    WorkingDirectory();

    /// The location, absolute: a relative one is below this directory, without the "./" in front. Anything
    /// else stays as it is given, and an empty location stays empty, because it names nothing. Throws
    /// std::filesystem::filesystem_error when the location is relative and the working directory could not be
    /// read.
    std::filesystem::path absolute(const std::filesystem::path& location) const;

  private:
    std::error_code error_;
    std::filesystem::path path_;
};

/// The same with the working directory of this moment.
std::filesystem::path absoluteLocation(const std::filesystem::path& location);

/// An absolute location without "." and ".." pieces. A ".." goes to where the file system would go: behind a
/// link that is the parent of the link's target, and only otherwise the component before it is dropped. An
/// empty location stays empty. Throws std::filesystem::filesystem_error when the working directory or a link
/// cannot be read.
std::filesystem::path standardized(const std::filesystem::path& location);

/// The text of a location as a program is told it: absolute, so that it is never taken for an option. Without
/// a working directory a relative one stays as it is.
std::string pathText(const std::filesystem::path& location);

/// Whether something exists at the location, links followed. What the file system refuses to tell counts as
/// existing, so that the attempt to read it reports the reason.
bool somethingExistsAt(const std::filesystem::path& location) noexcept;

/// Whether the file system confirms that something exists at the location, links followed. What it refuses to
/// tell does not count.
bool isKnownToExist(const std::filesystem::path& location) noexcept;

/// Whether the location is a regular file that the current user may execute.
bool isExecutableFile(const std::filesystem::path& location) noexcept;

} // namespace kinovane

#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace kinovane {

/// Whether the text holds a NUL byte, where the operating system would cut it.
inline bool holdsNUL(std::string_view text) noexcept { return text.find('\0') != std::string_view::npos; }

/// An absolute location without "." and ".." pieces. A ".." goes to where the file system would go: behind a
/// link that is the parent of the link's target, and only otherwise the piece before it is dropped. Throws
/// std::filesystem::filesystem_error when the working directory or a link cannot be read.
std::filesystem::path standardized(const std::filesystem::path& location);

/// The text of a location as a program is told it: absolute, so that it is never taken for an option.
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

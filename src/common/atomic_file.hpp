#pragma once

#include <filesystem>
#include <span>
#include <string_view>

namespace kinovane {

/// Replaces the file at `location` by one that holds `content`.
///
/// Atomic: a reader of the location finds the complete old file or the complete new one, also after a crash
/// of this process. Durable: on return the content and its name have been handed to the disk, on file systems
/// that honour `fsync`. Kept: the nine permission bits of an old file (a new one gets 0666 less the umask)
/// and a link at the location, whose target is replaced. When the owner or the group changes, because another
/// user replaces the file, group and others lose the right to write. Not promised: owner, access lists,
/// extended attributes and hard links of the old file, and anything on a network file system that does not
/// keep the promises of rename.
///
/// Throws std::filesystem::filesystem_error; the old file is then untouched, except when the very last step,
/// making the directory durable, fails: then the new file is in place. No temporary file is left behind.
void writeAtomically(const std::filesystem::path& location, std::string_view content);

/// The same for content in pieces, which are written one after the other.
void writeAtomically(const std::filesystem::path& location, std::span<const std::string_view> pieces);

} // namespace kinovane

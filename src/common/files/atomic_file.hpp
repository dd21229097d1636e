// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include <sys/types.h>

#include "common/files/descriptor.hpp"

namespace kinovane {

/// Replaces a file atomically: the content goes to a temporary file in the same directory, which is then
/// renamed to the target. Call `write`, `flush`, if needed `read`, and `replaceTarget`, in this order. The
/// destructor removes the temporary file unless it has replaced the target.
///
/// Atomic: a reader finds the complete old file or the complete new one, also after a crash of this process.
///
/// Durable: when `replaceTarget` returns, `fsync` has been called for the content and for the directory.
///
/// Kept: the nine permission bits of the old file (a new one gets 0666 less the umask). When the new file has
/// another owner or group, because another user replaces the file, group and others lose write permission. A
/// symbolic link is followed: the file that it leads to is replaced, the link stays.
///
/// Not guaranteed: owner, access control lists, extended attributes and hard links of the old file, and
/// anything on network file systems on which `rename` is not atomic.
///
/// Every function throws std::filesystem::filesystem_error. The old file is then unchanged, except where
/// `replaceTarget` documents otherwise.
class AtomicFile {
  public:
    /// Creates the empty temporary file. The directory must exist.
    explicit AtomicFile(const std::filesystem::path& location);
    AtomicFile(const AtomicFile&) = delete;
    AtomicFile& operator=(const AtomicFile&) = delete;
    ~AtomicFile();

    /// Appends to the content.
    void write(std::string_view content);

    /// Sets the permission bits and calls `fsync`.
    void flush();

    /// Reads the written content, starting at its beginning, into `buffer`. Returns the number of bytes; 0 at
    /// the end. Works also when the permission bits would not allow to open the file for reading.
    std::size_t read(std::span<std::byte> buffer);

    /// Closes the temporary file, renames it to the target, and calls `fsync` for the directory. Call it
    /// once, after `flush`. When the last of these steps fails, the target has already been replaced.
    void replaceTarget();

  private:
    void examineOldFile();
    void createTemporaryFile();
    void setMode();

    std::filesystem::path target_; ///< With symbolic links resolved.
    Descriptor directory_;
    std::optional<mode_t> oldMode_; ///< Absent when there is no old file.
    uid_t oldOwner_ = 0;
    gid_t oldGroup_ = 0;
    std::string temporaryName_; ///< In the directory; empty when there is nothing to remove.
    Descriptor file_;
    off_t readPosition_ = 0;
};

} // namespace kinovane

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

/// A new file that is written beside its target and then takes the target's place: write, flush, read back if
/// needed, replace, in this order. Unless it has replaced the target, it is removed by the destructor.
///
/// Atomic: a reader of the location finds the complete old file or the complete new one, also after a crash
/// of this process. Durable: when `replaceTarget` returns, the content and its name have been handed to the
/// disk, on file systems that honour `fsync`. Kept: the nine permission bits of an old file (a new one gets
/// 0666 less the umask) and a link at the location, whose target is replaced. When the owner or the group
/// changes, because another user replaces the file, group and others lose the right to write. Not promised:
/// owner, access lists, extended attributes and hard links of the old file, and anything on a network file
/// system that does not keep the promises of rename.
///
/// Every function throws std::filesystem::filesystem_error. The old file is then untouched, except as said at
/// `replaceTarget`.
class AtomicFile {
  public:
    /// Creates the new file, which is empty. Nothing is made but this file: its directory has to exist.
    explicit AtomicFile(const std::filesystem::path& location);
    AtomicFile(const AtomicFile&) = delete;
    AtomicFile& operator=(const AtomicFile&) = delete;
    ~AtomicFile();

    /// Appends to the content.
    void write(std::string_view content);

    /// Gives the file its mode and hands the content to the disk.
    void flush();

    /// Reads the content back, from the beginning on, and returns how much was read; 0 at the end. Needs no
    /// right to open the file, which its mode may deny.
    std::size_t read(std::span<std::byte> buffer);

    /// Puts the file in the target's place. Called once, after `flush`. When an error is thrown because the
    /// directory could not be flushed, the last step, the new file is in place all the same.
    void replaceTarget();

  private:
    void findOldMode();
    void create();
    void setMode();

    std::filesystem::path target_; ///< Behind any links.
    Descriptor directory_;
    std::optional<mode_t> oldMode_; ///< Of the old file, when there is one,
    uid_t oldOwner_ = 0;
    gid_t oldGroup_ = 0;
    std::string name_; ///< In the directory; empty when there is nothing to remove.
    Descriptor file_;
    off_t readPosition_ = 0;
};

} // namespace kinovane

// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <set>
#include <string>

#include <kinovane/stop.hpp>

#include "film/film_tree.hpp"

namespace kinovane::tool {

/// The end of copying one file.
enum class CopyResult {
    copied,
    present,      ///< The target has the same file already.
    differs,      ///< The target has something else of that name, which was left as it is.
    damaged,      ///< The source does not have the recorded digest.
    changed,      ///< The source changed while it was read.
    notAsWritten, ///< The target's disk does not return what was written.
};

/// Copies files of one folder to another, and reads each again in the target before it gets its name there. A
/// name in the target therefore never stands for a wrong or unfinished file, and nothing is replaced.
class VerifiedCopy {
  public:
    using OnBytes = std::function<void(std::uint64_t)>;

    /// `onBytes` is called with the number of bytes that were processed since its last call; they add up to
    /// the sizes of the files.
    VerifiedCopy(std::filesystem::path source, std::filesystem::path target, StopToken stop, OnBytes onBytes);

    /// Copies a regular file with its permissions and times. `digests` are the recorded ones; without any,
    /// the digest of the source counts. Throws std::filesystem::filesystem_error, whose path is that of the
    /// side that failed, and std::system_error (std::errc::operation_canceled) when a stop was requested.
    CopyResult copyFile(const TreeEntry& file, const std::set<std::string>& digests);

    /// Makes a link with this text.
    CopyResult makeLink(const std::filesystem::path& path, const std::filesystem::path& text) const;

    /// Makes a folder that this process can write to. Files that an earlier run left unfinished in it are
    /// removed.
    CopyResult makeFolder(const std::filesystem::path& path) const;

    /// Gives a folder its permissions and times, and stores its entries on the disk.
    void finishFolder(const TreeEntry& folder) const;

    /// Stores the entries of a folder on the disk.
    void syncFolder(const std::filesystem::path& path) const;

  private:
    using ByteCount = std::function<void(std::uint64_t)>;

    CopyResult compareWithPresent(const TreeEntry& file, const std::set<std::string>& digests,
                                  const struct stat& present);
    std::string digestOf(const std::filesystem::path& folder, const std::filesystem::path& path,
                         const ByteCount& onBytes);
    void transfer(const TreeEntry& file, class StagedFile& staged);
    void advanceTo(const TreeEntry& file, std::uint64_t bytes);
    void throwIfStopped() const;

    std::filesystem::path source_;
    std::filesystem::path target_;
    StopToken stop_;
    OnBytes onBytes_;
    std::uint64_t reported_ = 0; ///< Bytes of the current file.
};

} // namespace kinovane::tool

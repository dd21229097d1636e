// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <mutex>
#include <string>
#include <system_error>

#include "common/files/regular_file.hpp"
#include "handoff/open_directory.hpp"

namespace kinovane {

/// The project's directory itself cannot be opened, so none of its files can be examined. Internal: callers
/// of the library see it as a std::filesystem::filesystem_error.
class ProjectDirectoryError : public std::filesystem::filesystem_error {
  public:
    using filesystem_error::filesystem_error;
};

/// The directory that must contain a project's files. Every file of a project is opened here: it is shown to
/// lie inside, and then read through the descriptor for which that was shown.
///
/// May be used from several threads at once.
class ProjectDirectory {
  public:
    /// Opens nothing yet: a failure to open the directory matters only when a file in it has to be opened.
    explicit ProjectDirectory(std::filesystem::path root) : root_(std::move(root)) {}

    /// Opens the file at an artifact's recorded path. Links are followed, and only the final location counts.
    /// Throws VistrelHandoffError (unsafeArtifactPath, missingArtifact), ProjectDirectoryError (the same one
    /// each time), and std::filesystem::filesystem_error when the file is there but cannot be read, or is no
    /// regular file.
    RegularFile open(const std::string& path) const;

  private:
    /// Opened by the first thread that needs it. Closed when the directory does not exist.
    const OpenDirectory& directory() const;
    void openDirectory() const;

    const std::filesystem::path root_;
    mutable std::once_flag opened_;
    mutable std::filesystem::path location_; ///< The root, absolute.
    mutable std::string prefix_;             ///< The location and a slash.
    mutable OpenDirectory directory_;
    mutable std::error_code failure_; ///< Why it could not be opened, although it is there.
};

} // namespace kinovane

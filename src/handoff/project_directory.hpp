#pragma once

#include <filesystem>
#include <string>

#include "common/regular_file.hpp"
#include "handoff/open_directory.hpp"

namespace kinovane {

/// The directory that a project's files must lie in, and the only way to open one of them: what is opened has
/// been shown to lie inside, and is read through the descriptor for which that was shown.
///
/// May be used from several threads at once. Throws std::filesystem::filesystem_error.
class ProjectDirectory {
  public:
    explicit ProjectDirectory(const std::filesystem::path& root);

    /// Opens the file at an artifact's recorded path. Links are followed, and only the final place counts.
    /// Throws VistrelHandoffError (unsafeArtifactPath, missingArtifact), and
    /// std::filesystem::filesystem_error when the file is there but cannot be read, or is no regular file.
    RegularFile open(const std::string& path) const;

  private:
    std::string prefix_; ///< The root and a slash, for messages.
    OpenDirectory root_; ///< Closed when there is none.
};

} // namespace kinovane

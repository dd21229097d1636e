// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <optional>

#include <kinovane/handoff.hpp>
#include <kinovane/workspace.hpp>

#include "commands/publish.hpp"

namespace kinovane::tool {

/// A new folder for temporary files, removed with its content by the destructor.
class TemporaryFolder {
  public:
    /// Throws std::filesystem::filesystem_error.
    TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder();

    const std::filesystem::path& path() const { return path_; }

  private:
    std::filesystem::path path_;
};

/// Where a publish stores its manifest: at --output, in the film's folder, on standard output, or, in a dry
/// run without --output, in a temporary folder.
class PublishTarget {
  public:
    /// Throws UsageError when the target is one of the film's own files, no file that can be replaced, or
    /// without --force a file that is no handoff manifest; and std::filesystem::filesystem_error. Changes
    /// nothing but creating the temporary folder.
    PublishTarget(const PublishRequest& request, const FilmWorkspaceSnapshot& film);

    bool isStandardOutput() const { return isStandardOutput_; }
    bool isTemporary() const { return folder_.has_value(); }

    /// Absolute, so that the importer does not parse a name that begins with "-" as an option. Empty for
    /// standard output.
    const std::filesystem::path& manifest() const { return manifest_; }

    /// The manifest that is replaced; when there is none, the one in the film's folder.
    const std::optional<VistrelHandoff>& previous() const { return previous_; }

    /// Creates and removes a file where the manifest will be stored, so that a folder that cannot be written
    /// to is reported before gigabytes are read. Throws std::filesystem::filesystem_error.
    void requireWritable() const;

  private:
    bool isStandardOutput_;
    std::optional<TemporaryFolder> folder_;
    std::filesystem::path manifest_;
    std::optional<VistrelHandoff> previous_;
};

} // namespace kinovane::tool

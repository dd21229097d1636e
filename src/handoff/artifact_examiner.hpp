// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <kinovane/workspace.hpp>

#include "common/files/regular_file.hpp"
#include "handoff/file_digest.hpp"
#include "handoff/project_directory.hpp"

namespace kinovane {

/// Checks artifacts one after the other, on one thread. Its buffer and digest context serve all of them.
class ArtifactExaminer {
  public:
    using OnRead = FileDigest::OnRead;

    /// With `readsAhead`, large files are read on a second thread while they are hashed on this one.
    ArtifactExaminer(const ProjectDirectory& directory, bool readsAhead);

    /// Opens the artifact's file, which lies inside the directory. Throws as ProjectDirectory::open.
    RegularFile open(const FilmArtifact& artifact) const;

    /// Returns when the artifact's opened file has the recorded digest. Otherwise throws VistrelHandoffError
    /// (hashMismatch), std::filesystem::filesystem_error, and whatever `onRead` throws.
    void requireDigest(const FilmArtifact& artifact, RegularFile& file, const OnRead& onRead);

  private:
    const ProjectDirectory& directory_;
    bool readsAhead_;
    FileDigest digest_;
};

} // namespace kinovane

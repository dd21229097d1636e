// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <kinovane/handoff.hpp>

#include "handoff/file_digest.hpp"
#include "handoff/project_directory.hpp"

namespace kinovane {

/// Checks artifacts one after the other, on one thread. What is costly to make is made once for all of them.
class ArtifactExaminer {
  public:
    using OnRead = FileDigest::OnRead;

    /// With `readsAhead`, large files are read on a second thread while they are hashed on this one.
    ArtifactExaminer(const ProjectDirectory& directory, bool readsAhead);

    /// Passes when the artifact's path leads to a file inside the directory that has the recorded digest.
    /// Throws VistrelHandoffError, std::filesystem::filesystem_error, and whatever `onRead` throws.
    void examine(const FilmArtifact& artifact, const OnRead& onRead);

    /// The asset of a sound artifact. Throws JSONEncodingError when its path is not UTF-8.
    VistrelHandoffAsset assetOf(const FilmArtifact& artifact);

  private:
    const ProjectDirectory& directory_;
    bool readsAhead_;
    FileDigest digest_;
};

} // namespace kinovane

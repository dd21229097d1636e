// SPDX-License-Identifier: Apache-2.0

#include "handoff/artifact_examiner.hpp"

#include <utility>

#include <kinovane/handoff.hpp>

namespace kinovane {

ArtifactExaminer::ArtifactExaminer(const ProjectDirectory& directory, bool readsAhead)
    : directory_(directory), readsAhead_(readsAhead) {}

RegularFile ArtifactExaminer::open(const FilmArtifact& artifact) const {
    return directory_.open(artifact.path);
}

void ArtifactExaminer::requireDigest(const FilmArtifact& artifact, RegularFile& file, const OnRead& onRead) {
    std::string actual = digest_.of(file, onRead, readsAhead_);
    if (actual != artifact.sha256)
        throw VistrelHandoffError(
            VistrelHandoffError::hashMismatch{artifact.path, artifact.sha256, std::move(actual)});
}

} // namespace kinovane

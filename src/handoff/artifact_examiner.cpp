// SPDX-License-Identifier: Apache-2.0

#include "handoff/artifact_examiner.hpp"

#include <utility>

#include "handoff/asset_identity.hpp"

namespace kinovane {

ArtifactExaminer::ArtifactExaminer(const ProjectDirectory& directory, bool readsAhead)
    : directory_(directory), readsAhead_(readsAhead) {}

void ArtifactExaminer::examine(const FilmArtifact& artifact, const OnRead& onRead) {
    RegularFile file = directory_.open(artifact.path);
    std::string actual = digest_.of(file, onRead, readsAhead_);
    if (actual != artifact.sha256)
        throw VistrelHandoffError(
            VistrelHandoffError::hashMismatch{artifact.path, artifact.sha256, std::move(actual)});
}

VistrelHandoffAsset ArtifactExaminer::assetOf(const FilmArtifact& artifact) {
    return {stableAssetID(artifact, digest_.digest()),
            artifact.kind,
            artifact.path,
            artifact.sha256,
            artifact.bytes,
            artifact.contentType,
            artifact.source};
}

} // namespace kinovane

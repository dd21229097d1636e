#include "handoff/artifact_examiner.hpp"

#include <span>

#include "handoff/asset_identity.hpp"

namespace kinovane {

ArtifactExaminer::ArtifactExaminer(const ProjectDirectory& directory)
    : directory_(directory), buffer_(digestReadSize) {}

void ArtifactExaminer::examine(const FilmArtifact& artifact, const OnRead& onRead) {
    RegularFile file = directory_.open(artifact.path);
    std::string actual = digestOf(file, digest_, buffer_, onRead);
    if (actual != artifact.sha256)
        throw VistrelHandoffError(
            VistrelHandoffError::hashMismatch{artifact.path, artifact.sha256, std::move(actual)});
}

VistrelHandoffAsset ArtifactExaminer::assetOf(const FilmArtifact& artifact) {
    return {stableAssetID(artifact, digest_),
            artifact.kind,
            artifact.path,
            artifact.sha256,
            artifact.bytes,
            artifact.contentType,
            artifact.source};
}

std::string digestOf(RegularFile& file, Digest& digest, std::vector<std::byte>& buffer,
                     const ArtifactExaminer::OnRead& onRead) {
    digest.restart();
    while (const std::size_t count = file.read(buffer)) {
        digest.update(std::span(buffer).first(count));
        if (onRead)
            onRead(count);
    }
    return digest.finish();
}

} // namespace kinovane

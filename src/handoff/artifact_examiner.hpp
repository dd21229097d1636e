#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include <kinovane/handoff.hpp>

#include "common/digest.hpp"
#include "common/regular_file.hpp"
#include "handoff/project_directory.hpp"

namespace kinovane {

/// Checks artifacts one after the other, on one thread. What is costly to make is made once for all of them.
class ArtifactExaminer {
  public:
    /// Told of every piece of a file after it was read.
    using OnRead = std::function<void(std::size_t bytes)>;

    explicit ArtifactExaminer(const ProjectDirectory& directory);

    /// Passes when the artifact's path leads to a file inside the directory that has the recorded digest.
    /// Throws VistrelHandoffError, std::filesystem::filesystem_error, and whatever `onRead` throws.
    void examine(const FilmArtifact& artifact, const OnRead& onRead);

    /// The asset of a sound artifact. Throws JSONEncodingError when its path is not UTF-8.
    VistrelHandoffAsset assetOf(const FilmArtifact& artifact);

  private:
    const ProjectDirectory& directory_;
    Digest digest_;
    std::vector<std::byte> buffer_;
};

/// The digest text of the rest of a file, read in pieces that fit the buffer.
std::string digestOf(RegularFile& file, Digest& digest, std::vector<std::byte>& buffer,
                     const ArtifactExaminer::OnRead& onRead);

} // namespace kinovane

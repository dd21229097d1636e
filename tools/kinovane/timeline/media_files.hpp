// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include <kinovane/stop.hpp>
#include <kinovane/workspace.hpp>

#include "timeline/edit.hpp"

namespace kinovane::tool {

/// Something that a timeline does not hold as the film's documents have it.
struct EditRemark {
    std::string word;   ///< Such as "missing"; for a file as `verify` prints it.
    std::string path;   ///< As recorded; of a shot, its id.
    std::string reason; ///< May be empty. Is `shown`.
};

/// The recorded files that a timeline refers to.
class MediaFiles {
  public:
    /// `folder` is that of the timeline, for relative references; without it they are absolute. The film must
    /// outlive this object. Throws std::filesystem::filesystem_error when one of the folders does not exist.
    MediaFiles(const FilmWorkspaceSnapshot& film, const std::optional<std::filesystem::path>& folder,
               StopToken stop);

    /// The file, with a URL if it is in the film's folder. If it is not, or if its size is not the recorded
    /// one, there is a remark. Its content is not read. Throws as VistrelHandoffBuilder::examine.
    EditMedia media(const FilmArtifact& artifact);

    /// The length of a sound in milliseconds, if its file tells it.
    std::optional<std::int64_t> lengthOf(const EditMedia& media) const;

    void remark(std::string word, std::string path, std::string reason);

    /// In the order in which they were found; each once.
    const std::vector<EditRemark>& remarks() const noexcept { return remarks_; }

  private:
    const FilmWorkspaceSnapshot& film_;
    std::filesystem::path root_; ///< Without links.
    std::optional<std::filesystem::path> folder_;
    StopToken stop_;
    std::vector<EditRemark> remarks_;
};

} // namespace kinovane::tool

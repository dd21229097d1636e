// SPDX-License-Identifier: Apache-2.0

#include "timeline/media_files.hpp"

#include <algorithm>
#include <span>
#include <system_error>
#include <utility>

#include <kinovane/handoff.hpp>

#include "commands/damage_text.hpp"
#include "film/film_tree.hpp"
#include "timeline/file_url.hpp"
#include "timeline/sound_length.hpp"

namespace kinovane::tool {

namespace fs = std::filesystem;

MediaFiles::MediaFiles(const FilmWorkspaceSnapshot& film, const std::optional<fs::path>& folder,
                       StopToken stop)
    : film_(film), root_(fs::canonical(film.root)), stop_(std::move(stop)) {
    if (folder)
        folder_ = fs::canonical(*folder);
}

EditMedia MediaFiles::media(const FilmArtifact& artifact) {
    EditMedia media{artifact.path, fs::path(artifact.path).filename().string(), artifact.contentType,
                    artifact.kind, ""};
    FilmArtifact unread = artifact;
    unread.bytes = -1; // Differs from any size, so that the file is not read.
    HandoffBuildOptions options;
    options.compareSizes = true;
    options.stop = stop_;
    ArtifactOutcome outcome =
        VistrelHandoffBuilder::examine(film_.root, std::span(&unread, 1), options).front();
    outcome.artifact = artifact;
    outcome.sizeDiffers = outcome.actualBytes && !std::cmp_equal(*outcome.actualBytes, artifact.bytes);
    if (!outcome.refusal && !outcome.failure)
        media.url =
            folder_ ? relativeURL(root_ / artifact.path, *folder_) : fileURL(film_.artifactURL(artifact));
    if (!outcome.sound())
        remark(std::string(nameOf(stateOf(outcome))), artifact.path, reasonText(outcome, film_.root));
    return media;
}

std::optional<std::int64_t> MediaFiles::lengthOf(const EditMedia& media) const {
    std::error_code error;
    const fs::path file = media.url.empty() ? fs::path() : fs::canonical(root_ / media.path, error);
    if (file.empty() || error || !isInsideLexically(file, root_))
        return std::nullopt;
    return soundLength(file);
}

void MediaFiles::remark(std::string word, std::string path, std::string reason) {
    const auto isSame = [&](const EditRemark& remark) {
        return remark.word == word && remark.path == path && remark.reason == reason;
    };
    if (std::ranges::none_of(remarks_, isSame))
        remarks_.push_back({std::move(word), std::move(path), std::move(reason)});
}

} // namespace kinovane::tool

// SPDX-License-Identifier: Apache-2.0

#include "film/exported_files.hpp"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <iterator>
#include <system_error>

namespace kinovane::tool {

namespace fs = std::filesystem;

namespace {

bool hasRecordedSize(const FilmWorkspaceSnapshot& film, const FilmArtifact& artifact) {
    std::error_code error;
    const std::uintmax_t size = fs::file_size(film.artifactURL(artifact), error);
    return !error && artifact.bytes >= 0 && size == static_cast<std::uintmax_t>(artifact.bytes);
}

} // namespace

bool isExported(const FilmArtifact& artifact) {
    const auto kinds = VistrelHandoffBuilder::exportedKinds();
    return std::ranges::find(kinds, artifact.kind) != kinds.end();
}

std::vector<FilmArtifact> exportedFiles(const FilmWorkspaceSnapshot& film) {
    std::vector<FilmArtifact> files;
    std::ranges::copy_if(film.project.artifacts, std::back_inserter(files), isExported);
    return files;
}

std::vector<ArtifactOutcome> filesOfOtherSize(const FilmWorkspaceSnapshot& film, const StopToken& stop) {
    std::vector<FilmArtifact> files = exportedFiles(film);
    std::erase_if(files, [&](const FilmArtifact& file) { return hasRecordedSize(film, file); });
    // Decides as the build does: a path may lead out of the film's folder. A file of another size is not
    // read.
    std::vector<ArtifactOutcome> outcomes =
        VistrelHandoffBuilder::examine(film.root, files, {.stop = stop, .compareSizes = true});
    std::erase_if(outcomes, [](const ArtifactOutcome& outcome) { return outcome.sound(); });
    return outcomes;
}

} // namespace kinovane::tool

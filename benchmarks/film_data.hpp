// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include <kinovane/handoff.hpp>

namespace kinovane::benchmarks {

/// A folder that is created empty, and removed by the destructor unless `keep` is set.
class DataFolder {
  public:
    DataFolder(std::filesystem::path path, bool keep);
    ~DataFolder();
    DataFolder(const DataFolder&) = delete;
    DataFolder& operator=(const DataFolder&) = delete;

    const std::filesystem::path& path() const noexcept { return path_; }

  private:
    std::filesystem::path path_;
    bool keep_;
};

/// A finished film and its media files, one artifact each, all sound.
struct MediaFilm {
    FilmWorkspaceSnapshot snapshot;
    std::vector<std::filesystem::path> files; ///< In the order of the artifacts.
    std::uint64_t bytes = 0;                  ///< Of all files together.
};

/// Writes one file of each size below `root` and syncs the file system, so that no writes are pending.
MediaFilm makeMediaFilm(const std::filesystem::path& root, const std::vector<std::size_t>& sizes);

/// A project document of about this size, formatted as by the film tool; it consists almost entirely of
/// artifacts.
std::string projectDocument(std::size_t bytes);

/// A handoff with this many shots and assets, each shot with a line of dialogue and a sound effect.
VistrelHandoff longHandoff(std::size_t shots, std::size_t assets);

} // namespace kinovane::benchmarks

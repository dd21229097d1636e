// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "common/file.hpp"
#include "manifest.hpp"

namespace vistrel {

/// The media files of a film in its project folder. Each file is read exactly once per call, and it is the
/// bytes read that are measured and hashed, never the ones that an earlier look found.
class AssetFiles {
  public:
    /// `projectRoot` as the manifest names it: the absolute path of a folder.
    explicit AssetFiles(const std::string& projectRoot);

    /// The folder with all links resolved.
    const std::filesystem::path& root() const noexcept { return root_; }

    /// Refuses a file that is missing, lies outside the project folder, is no regular file, or has not
    /// exactly the size and digest that the manifest states.
    void verify(const Asset& asset);

    /// As verify, and leaves the verified bytes in `target`, whose folders are made where they are
    /// missing. After a refusal `target` may hold anything.
    void copy(const Asset& asset, const std::filesystem::path& target);

  private:
    simulator::File open(const Asset& asset) const;
    void stream(const Asset& asset, simulator::File& source, simulator::File* target);

    std::filesystem::path root_;
    std::vector<char> buffer_;
};

/// Whether the resolved path lies below the resolved folder.
bool isInside(const std::filesystem::path& path, const std::filesystem::path& folder);

} // namespace vistrel

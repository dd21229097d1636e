// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "common/file.hpp"
#include "common/json_text.hpp"

namespace simulator::vistrel {

/// The media files of a film in its project folder. A file is read exactly once per call: the bytes that are
/// hashed are the bytes that are copied.
class AssetFiles {
  public:
    /// `projectRoot` as in the manifest: the absolute path of a folder.
    explicit AssetFiles(const std::string& projectRoot);

    /// The folder with all links resolved.
    const std::filesystem::path& root() const noexcept { return root_; }

    /// Refuses a file that is missing, lies outside the project folder, is not a regular file, or differs
    /// from the manifest in size or digest.
    void verify(const json::object& asset);

    /// As verify, and writes the verified bytes to `target`; creates its missing parent folders. After a
    /// refusal `target` may have any content.
    void copy(const json::object& asset, const std::filesystem::path& target);

  private:
    File open(const json::object& asset) const;
    void read(const json::object& asset, File& source, File* target);

    std::filesystem::path root_;
    std::vector<char> buffer_;
};

/// Whether the resolved path lies below the resolved folder.
bool isInside(const std::filesystem::path& path, const std::filesystem::path& folder);

} // namespace simulator::vistrel

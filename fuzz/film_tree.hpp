// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <string_view>

#include "common/files/descriptor.hpp"

namespace kinovane::fuzz {

/// The content of every sound file of the tree, inside a project and outside, and of every changed file.
inline constexpr std::string_view soundContent = "content";
inline constexpr std::string_view soundDigest =
    "sha256:ed7002b439e9ac845f22357d822bac1444730fbdb6016d3ec9432297b9ec9f73";
inline constexpr std::string_view changedContent = "changed";
inline constexpr std::string_view changedDigest =
    "sha256:d67e2e944994496c8d8ec76eed0cf9f09679448d584b532bebf941852a37f5ed";

enum class FileType { directory, soundFile, changedFile, fifo, link };

struct Node {
    FileType type = FileType::directory;
    std::string target; ///< For a link.
};

/// A project's directory "film" and others, with links of every kind: described in memory, by absolute path,
/// and created on disk. No path but "/" ends in a slash.
class FilmTree {
  public:
    /// Creates the tree in an existing directory, given by its real path.
    explicit FilmTree(const std::filesystem::path& area);

    /// The file at an absolute path; null when it does not exist.
    const Node* at(const std::string& path) const;

  private:
    std::map<std::string, Node, std::less<>> nodes_;
    Descriptor film_; ///< Target of the magic link. /proc is not described, so the link leads out.
};

} // namespace kinovane::fuzz

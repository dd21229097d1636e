// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <string_view>

#include "common/files/descriptor.hpp"

namespace kinovane::fuzz {

/// What every sound file of the tree holds, inside a project and outside, and what a changed file holds.
inline constexpr std::string_view soundContent = "content";
inline constexpr std::string_view soundDigest =
    "sha256:ed7002b439e9ac845f22357d822bac1444730fbdb6016d3ec9432297b9ec9f73";
inline constexpr std::string_view changedContent = "changed";
inline constexpr std::string_view changedDigest =
    "sha256:d67e2e944994496c8d8ec76eed0cf9f09679448d584b532bebf941852a37f5ed";

enum class Thing { directory, soundFile, changedFile, fifo, link };

struct Node {
    Thing thing = Thing::directory;
    std::string target; ///< Of a link.
};

/// A project's directory "film" among others, with a link of every sort: described in memory, by absolute
/// place, and made on disk. "/" is the only place whose text ends in a slash.
class FilmTree {
  public:
    /// Describes and makes the tree in an existing directory, given by its real place.
    explicit FilmTree(const std::filesystem::path& area);

    /// What lies at a place; null when that is nothing.
    const Node* at(const std::string& place) const;

  private:
    std::map<std::string, Node, std::less<>> nodes_;
    Descriptor
        film_; ///< What a magic link leads to; in /proc, of which nothing is described, so it leads out.
};

} // namespace kinovane::fuzz

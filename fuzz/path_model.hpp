// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>
#include <string_view>

#include "film_tree.hpp"

namespace kinovane::fuzz {

/// The result of examining an artifact.
enum class Verdict { sound, changed, unsafe, missing, directory, noRegularFile };

/// The expected result for the artifact at `path` of the project at `root` (an absolute path), computed from
/// the description of the tree without the file system.
Verdict verdictOf(const FilmTree& tree, const std::string& root, std::string_view path);

} // namespace kinovane::fuzz

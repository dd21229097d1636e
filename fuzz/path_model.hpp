// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>
#include <string_view>

#include "film_tree.hpp"

namespace kinovane::fuzz {

/// What examining an artifact gives.
enum class Verdict { sound, changed, unsafe, missing, directory, noRegularFile };

/// What examining the artifact at `path` of the project at `root` (an absolute place) has to give. Worked out
/// on the description of the tree alone.
Verdict verdictOf(const FilmTree& tree, const std::string& root, std::string_view path);

} // namespace kinovane::fuzz

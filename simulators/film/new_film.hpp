// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>

#include "story.hpp"

namespace simulator::film {

/// Creates the workspace of a new film in the folder; the path of its run manifest. A folder that already
/// holds a film is refused.
std::filesystem::path createFilm(const Pitch& pitch, const std::filesystem::path& folder);

} // namespace simulator::film

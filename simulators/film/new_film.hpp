// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>

#include "documents.hpp"
#include "story.hpp"

namespace film {

/// Makes the workspace of a new film in the folder and answers the location of its run manifest. A folder
/// that already holds a film is refused.
std::filesystem::path createFilm(const Pitch& pitch, const std::filesystem::path& folder);

/// The project document of a film that has just been planned.
json::object newProject(const Pitch& pitch, const json::object& plan);

} // namespace film

// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

#include "documents.hpp"

namespace simulator::film {

/// What a film is planned from.
struct Pitch {
    std::string idea, title;
    std::int64_t seconds = 0;
    std::string createdAt;
};

/// The id is a digest of idea and title.
std::string projectIdOf(const Pitch& pitch);

/// The documents of the plan: three shots whose durations add up to the requested one. The same idea and
/// title always make the same story.
json::object productionPlanOf(const Pitch& pitch);
json::object treatmentOf(const Pitch& pitch);

/// Creates the workspace of a new film in the folder; the path of its run manifest. A folder that already
/// holds a film is refused.
std::filesystem::path createFilm(const Pitch& pitch, const std::filesystem::path& folder);

} // namespace simulator::film

// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <vector>

#include "movie.hpp"
#include "shots.hpp"
#include "sound.hpp"

namespace film {

/// The pictures of one shot.
std::vector<MovieFrame> picturesOf(const Shot& shot);

/// The pictures of all shots, one after the other.
std::vector<MovieFrame> picturesOf(const std::vector<Shot>& shots);

/// Dialogue, effects and, if wanted, the score, as long as the shots together.
Samples soundOf(const std::vector<Shot>& shots, bool withScore);

/// The score, made for the length of the film.
Samples scoreOf(const std::vector<Shot>& shots);

std::int64_t lengthOf(const std::vector<Shot>& shots);

} // namespace film

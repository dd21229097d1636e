// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "sound.hpp"

namespace film {

/// One picture of a movie, as a PNG file, and how long it stands.
struct MovieFrame {
    std::string png;
    std::int64_t milliseconds = 0;
};

/// The film as an MP4 file: a video track whose samples are PNG pictures and, unless there is no sound, a
/// track of uncompressed sound. There is at least one frame, and all frames have the same size.
std::string encodeMovie(const std::vector<MovieFrame>& frames, const Samples& sound);

} // namespace film

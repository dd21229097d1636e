// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <string>

namespace film {

/// Pictures are small on purpose: they are stored without compression.
inline constexpr std::uint32_t pictureWidth = 64;
inline constexpr std::uint32_t pictureHeight = 36;

/// A picture as red, green and blue bytes, row by row.
struct Picture {
    std::uint32_t width = 0, height = 0;
    std::string pixels;
};

/// A sky, a ground and a round light; the seed chooses the colours and where things stand. `moment` from 0 to
/// 1 carries the light across the picture, so that the pictures of a clip move.
Picture drawPicture(std::uint64_t seed, double moment, std::uint32_t width = pictureWidth,
                    std::uint32_t height = pictureHeight);

/// The picture as a PNG file.
std::string encodePng(const Picture& picture);

} // namespace film

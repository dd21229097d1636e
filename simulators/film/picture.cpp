// SPDX-License-Identifier: Apache-2.0

#include "picture.hpp"

#include <algorithm>
#include <array>

namespace film {
namespace {

struct Colour {
    double red = 0, green = 0, blue = 0;
};

Colour mix(const Colour& one, const Colour& other, double share) {
    const auto blend = [share](double from, double to) { return from + (to - from) * share; };
    return {blend(one.red, other.red), blend(one.green, other.green), blend(one.blue, other.blue)};
}

/// Takes a byte out of the seed as a share from 0 to 1.
double share(std::uint64_t seed, unsigned place) {
    return static_cast<double>((seed >> (8U * (place % 8U))) & 0xFFU) / 255.0;
}

Colour colour(std::uint64_t seed, unsigned place, double brightness) {
    return {share(seed, place) * brightness, share(seed, place + 1) * brightness,
            share(seed, place + 2) * brightness};
}

char level(double value) {
    return static_cast<char>(static_cast<unsigned char>(std::clamp(value, 0.0, 255.0)));
}

} // namespace

Picture drawPicture(std::uint64_t seed, double moment, std::uint32_t width, std::uint32_t height) {
    const Colour sky = colour(seed, 0, 160);
    const Colour horizon = colour(seed, 3, 255);
    const Colour ground = colour(seed, 5, 90);
    const Colour light{255, 236, 190};
    const double groundLine = 0.55 + 0.3 * share(seed, 2);
    const double lightX = 0.1 + 0.5 * share(seed, 6) + 0.3 * moment;
    const double lightY = 0.2 + 0.3 * share(seed, 7);

    Picture picture{width, height, {}};
    picture.pixels.reserve(std::size_t{3} * width * height);
    for (std::uint32_t row = 0; row < height; ++row) {
        const double y = (row + 0.5) / height;
        const Colour behind = y < groundLine ? mix(sky, horizon, y / groundLine) : ground;
        for (std::uint32_t column = 0; column < width; ++column) {
            const double x = (column + 0.5) / width;
            const double across = (x - lightX) * width / height;
            const double distance = across * across + (y - lightY) * (y - lightY);
            const Colour pixel = mix(behind, light, 0.012 / (0.012 + distance * distance * 20));
            picture.pixels += level(pixel.red);
            picture.pixels += level(pixel.green);
            picture.pixels += level(pixel.blue);
        }
    }
    return picture;
}

} // namespace film

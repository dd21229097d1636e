// SPDX-License-Identifier: Apache-2.0

#include "reel.hpp"

#include "picture.hpp"
#include "seed.hpp"

namespace film {
namespace {

/// However long a shot is, it has this many pictures: enough to see it move, and small.
constexpr std::int64_t picturesPerShot = 6;
constexpr double scoreLevelDb = -15;

} // namespace

std::vector<MovieFrame> picturesOf(const Shot& shot) {
    std::vector<MovieFrame> frames;
    for (std::int64_t index = 0; index < picturesPerShot; ++index) {
        const std::int64_t start = shot.milliseconds * index / picturesPerShot;
        const std::int64_t end = shot.milliseconds * (index + 1) / picturesPerShot;
        const double moment = static_cast<double>(index) / (picturesPerShot - 1);
        frames.push_back({encodePng(drawPicture(shot.seed, moment)), end - start});
    }
    return frames;
}

std::vector<MovieFrame> picturesOf(const std::vector<Shot>& shots) {
    std::vector<MovieFrame> all;
    for (const Shot& shot : shots)
        for (MovieFrame& frame : picturesOf(shot))
            all.push_back(std::move(frame));
    return all;
}

Samples soundOf(const std::vector<Shot>& shots, bool withScore) {
    Samples mix(sampleCount(lengthOf(shots)));
    for (const Shot& shot : shots) {
        for (const Line& line : shot.lines)
            lay(mix, hum(line.seed, line.milliseconds), shot.startMilliseconds + line.startMilliseconds, 0);
        for (const Effect& effect : shot.effects) {
            lay(mix, rustle(effect.seed, effect.milliseconds),
                shot.startMilliseconds + effect.startMilliseconds, effect.levelDb);
        }
    }
    if (withScore)
        lay(mix, scoreOf(shots), 0, scoreLevelDb);
    return mix;
}

Samples scoreOf(const std::vector<Shot>& shots) {
    // The score belongs to the film, not to a take: it is made from the ids of the shots alone.
    std::uint64_t seed = 0;
    for (const Shot& shot : shots)
        seed = mixed(seed, seedOf(shot.id));
    return chords(seed, lengthOf(shots));
}

std::int64_t lengthOf(const std::vector<Shot>& shots) {
    return shots.back().startMilliseconds + shots.back().milliseconds;
}

} // namespace film

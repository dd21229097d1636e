// SPDX-License-Identifier: Apache-2.0

#include "seed.hpp"

namespace film {

std::uint64_t mixed(std::uint64_t seed, std::uint64_t counter) {
    std::uint64_t value = seed + (counter + 1) * 0x9E3779B97F4A7C15U;
    value = (value ^ (value >> 30U)) * 0xBF58476D1CE4E5B9U;
    value = (value ^ (value >> 27U)) * 0x94D049BB133111EBU;
    return value ^ (value >> 31U);
}

std::uint64_t seedOf(std::string_view text) {
    std::uint64_t seed = text.size();
    for (const char character : text)
        seed = mixed(seed, static_cast<unsigned char>(character));
    return seed;
}

std::int64_t shortSeed(std::uint64_t seed) { return static_cast<std::int64_t>(seed % 1000000); }

} // namespace film

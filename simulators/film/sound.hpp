// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace film {

/// All sound is mono, 16 bits, with this many samples a second.
inline constexpr std::uint32_t sampleRate = 8000;

using Samples = std::vector<std::int16_t>;

/// How many samples a time takes.
std::size_t sampleCount(std::int64_t milliseconds);

/// A voice without words: one hummed tone per syllable, its pitch chosen by the seed.
Samples hum(std::uint64_t seed, std::int64_t milliseconds);

/// A rustle that dies away.
Samples rustle(std::uint64_t seed, std::int64_t milliseconds);

/// Slow chords.
Samples chords(std::uint64_t seed, std::int64_t milliseconds);

/// Lays the sound over the mix from the time on; what sticks out at the end is cut off.
void lay(Samples& mix, const Samples& sound, std::int64_t startMilliseconds, double levelDb);

/// The sound as a WAV file.
std::string encodeWav(const Samples& samples);

} // namespace film

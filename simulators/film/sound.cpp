// SPDX-License-Identifier: Apache-2.0

#include "sound.hpp"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "bytes.hpp"

namespace film {
namespace {

constexpr double fullScale = 32767;

std::int16_t sample(double value) {
    return static_cast<std::int16_t>(std::lround(std::clamp(value, -1.0, 1.0) * fullScale));
}

double seconds(std::size_t index) { return static_cast<double>(index) / sampleRate; }

double tone(double frequency, double time) { return std::sin(2 * std::numbers::pi * frequency * time); }

/// Rises and falls within 20 ms at the ends, so that nothing clicks.
double envelope(std::size_t index, std::size_t count) {
    const std::size_t edge = std::max<std::size_t>(1, std::min<std::size_t>(sampleRate / 50, count / 2));
    const std::size_t distance = std::min(index, count - 1 - index);
    return std::min(1.0, static_cast<double>(distance) / static_cast<double>(edge));
}

} // namespace

std::size_t sampleCount(std::int64_t milliseconds) {
    return static_cast<std::size_t>(std::max<std::int64_t>(0, milliseconds)) * sampleRate / 1000;
}

Samples hum(std::uint64_t seed, std::int64_t milliseconds) {
    constexpr std::size_t syllable = sampleRate / 4;
    Samples samples(sampleCount(milliseconds));
    for (std::size_t index = 0; index < samples.size(); ++index) {
        const std::size_t start = index / syllable * syllable;
        const auto step = static_cast<double>((seed >> (4U * (index / syllable % 16U))) & 0xFU);
        const double pitch = 140 + 12 * step;
        const double time = seconds(index);
        const double voice = 0.6 * tone(pitch, time) + 0.25 * tone(2 * pitch, time);
        samples[index] =
            sample(0.5 * voice * envelope(index - start, std::min(syllable, samples.size() - start)));
    }
    return samples;
}

Samples rustle(std::uint64_t seed, std::int64_t milliseconds) {
    Samples samples(sampleCount(milliseconds));
    std::uint64_t state = seed | 1U;
    for (std::size_t index = 0; index < samples.size(); ++index) {
        state = state * 6364136223846793005U + 1442695040888963407U;
        const double noise = static_cast<double>(state >> 40U) / 8388608.0 - 1.0;
        samples[index] =
            sample(0.5 * noise * std::exp(-3 * seconds(index)) * envelope(index, samples.size()));
    }
    return samples;
}

Samples chords(std::uint64_t seed, std::int64_t milliseconds) {
    constexpr std::size_t bar = 2 * std::size_t{sampleRate};
    Samples samples(sampleCount(milliseconds));
    for (std::size_t index = 0; index < samples.size(); ++index) {
        const std::size_t start = index / bar * bar;
        const auto step = static_cast<double>((seed >> (3U * (index / bar % 20U))) & 0x7U);
        const double root = 110 * std::pow(2, step / 12);
        const double time = seconds(index);
        const double chord = tone(root, time) + tone(1.26 * root, time) + tone(1.5 * root, time);
        samples[index] =
            sample(0.15 * chord * envelope(index - start, std::min(bar, samples.size() - start)));
    }
    return samples;
}

void lay(Samples& mix, const Samples& sound, std::int64_t startMilliseconds, double levelDb) {
    const double factor = std::pow(10, levelDb / 20);
    const std::size_t start = sampleCount(startMilliseconds);
    for (std::size_t index = 0; index < sound.size() && start + index < mix.size(); ++index) {
        std::int16_t& target = mix[start + index];
        target = sample(target / fullScale + factor * sound[index] / fullScale);
    }
}

std::string encodeWav(const Samples& samples) {
    constexpr std::uint32_t sampleSize = 2;
    Bytes data;
    for (const std::int16_t value : samples)
        data.little16(static_cast<std::uint16_t>(value));
    Bytes file;
    file.text("RIFF").little32(size32(data.size() + 36)).text("WAVEfmt ").little32(16);
    file.little16(1).little16(1).little32(sampleRate).little32(sampleRate * sampleSize);
    file.little16(sampleSize).little16(8 * sampleSize);
    file.text("data").little32(size32(data.size())).text(data.content());
    return file.content();
}

} // namespace film

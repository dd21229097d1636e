# SPDX-License-Identifier: Apache-2.0
"""Voices, effects and a music box, made from sines and noise."""

import io
import math
import random
import struct
import wave

RATE = 11025
MIX_RATE = 22050
TAU = 2 * math.pi
# The two strongest resonances of each vowel, in hertz.
VOWELS = {"a": (730, 1150), "e": (500, 1850), "i": (300, 2250), "o": (470, 850), "u": (330, 800)}
VOICES = {"aurelien": (104, 0.94), "noor": (255, 1.22), "captain": (186, 1.08)}


def wav(samples, rate=RATE):
    """Samples between -1 and 1 as the bytes of a mono 16-bit WAV file."""
    out = io.BytesIO()
    with wave.open(out, "wb") as f:
        f.setnchannels(1)
        f.setsampwidth(2)
        f.setframerate(rate)
        f.writeframes(b"".join(struct.pack("<h", round(max(-1.0, min(1.0, s)) * 32767)) for s in samples))
    return out.getvalue()


def level(samples, peak):
    top = max(abs(s) for s in samples) or 1.0
    return [s * peak / top for s in samples]


class Resonator:
    """A ringing filter: it lets one pitch through."""

    def __init__(self, hertz, width, rate=RATE):
        r = math.exp(-math.pi * width / rate)
        self.b, self.c, self.gain = 2 * r * math.cos(TAU * hertz / rate), -r * r, 1 - r
        self.one = self.two = 0.0

    def __call__(self, x):
        y = self.gain * x + self.b * self.one + self.c * self.two
        self.one, self.two = y, self.one
        return y


def voice(who, vowels, seconds, seed):
    """A voice without words: one vowel a syllable, with a tune like speech."""
    pitch, size = VOICES[who]
    rng, count = random.Random(seed), int(seconds * RATE)
    out, phase, each = [], 0.0, count / len(vowels)
    throat, now = [], -1
    for i in range(count):
        place = i / each
        if int(place) != now:
            now = int(place)
            throat = [Resonator(f * size, w) for f, w in zip(VOWELS[vowels[min(now, len(vowels) - 1)]], (90, 120))] + [Resonator(2700 * size, 200)]
        part = place - now
        tune = pitch * (1.12 - 0.22 * i / count + 0.05 * math.sin(now * 2.3) + 0.015 * math.sin(TAU * 5 * i / RATE))
        phase = (phase + tune / RATE) % 1.0
        breath = rng.uniform(-1, 1) * (0.5 if part < 0.12 else 0.04)
        shape = min(1.0, part / 0.18) * min(1.0, (1 - part) / 0.25)
        pulse = (1 - 2 * phase) * (0.3 if part < 0.1 else 1.0) + breath
        out.append(sum(t(pulse) * g for t, g in zip(throat, (1.0, 0.8, 0.25))) * shape)
    return level(out, 0.75)


def noise(seconds, seed, hertz, width, shape):
    rng, ring, count = random.Random(seed), Resonator(hertz, width), int(seconds * RATE)
    return [ring(rng.uniform(-1, 1)) * shape(i / RATE) for i in range(count)]


def horn(seconds, notes):
    count, out, phase = int(seconds * RATE), [], 0.0
    rings = [Resonator(f, w) for f, w in ((220, 160), (520, 240))]
    for i in range(count):
        t = i / count * len(notes)
        phase = (phase + notes[min(int(t), len(notes) - 1)] * (1 + 0.004 * math.sin(TAU * 4 * i / RATE)) / RATE) % 1.0
        part = t - int(t)
        out.append(sum(r(1 - 2 * phase) for r in rings) * min(1.0, part / 0.1) * min(1.0, (1 - part) / 0.3))
    return out


def bell(seconds):
    def strike(t):
        return sum(a * math.exp(-t * d) * math.sin(TAU * f * t) for f, a, d in ((1870, 1, 7), (2950, .6, 9), (4420, .35, 13))) if t >= 0 else 0.0
    return [strike(i / RATE) + 0.8 * strike(i / RATE - 0.17) for i in range(int(seconds * RATE))]


def effect(sound, seconds, seed):
    ends = lambda t: min(1.0, t / 0.15) * min(1.0, (seconds - t) / 0.3)  # noqa: E731
    made = {
        "waves": lambda: noise(seconds, seed, 420, 700, lambda t: ends(t) * (0.35 + 0.65 * math.sin(TAU * 0.42 * t) ** 2)),
        "foghorn": lambda: horn(seconds, [98]),
        "answer": lambda: horn(seconds, [98, 131]),
        "hiss": lambda: noise(seconds, seed, 3600, 1900, lambda t: ends(t) * (0.6 + 0.4 * math.sin(TAU * 9 * t) * math.sin(TAU * 2.3 * t))),
        "catch": lambda: noise(seconds, seed, 130, 120, lambda t: min(1.0, t / 0.02) * math.exp(-6 * t)),
        "bell": lambda: bell(seconds),
    }[sound]()
    return level(made, 0.7)


def score(seconds):
    """A lullaby for music box over slow chords, at the rate of the mix."""
    count = int(seconds * MIX_RATE)
    out = [0.0] * count
    def note(start, midi, loud, ring, partials):
        hertz, first = 440 * 2 ** ((midi - 69) / 12), int(start * MIX_RATE)
        for i in range(first, min(count, first + int(ring * MIX_RATE))):
            t = (i - first) / MIX_RATE
            out[i] += loud * sum(a * math.exp(-t * d) * math.sin(TAU * hertz * m * t) for m, a, d in partials) * min(1.0, t / 0.004)
    box = ((1, 1.0, 2.6), (3.0, 0.25, 5.0), (6.2, 0.08, 9.0))
    tune = [74, 78, 81, 83, 81, 78, 76, 79, 83, 81, 78, 74, 71, 74, 78, 79, 78, 74, 76, 73, 69, 74, 78, 81, 86, 85, 81, 83, 81, 78, 74, 81, 86]
    for k, midi in enumerate(tune):
        note(0.3 + k * 0.5, midi, 0.30, 1.8, box)
    for k, chord in enumerate(((50, 57, 62), (47, 54, 62), (43, 55, 59), (45, 57, 61), (50, 57, 66), (50, 62, 69))):
        for midi in chord:
            hertz, first, length = 440 * 2 ** ((midi - 69) / 12), int(k * 3.0 * MIX_RATE), int(3.4 * MIX_RATE)
            for i in range(first, min(count, first + length)):
                t = (i - first) / MIX_RATE
                swell = math.sin(math.pi * min(1.0, t / 3.4)) ** 1.2
                out[i] += 0.075 * swell * (math.sin(TAU * hertz * t) + 0.5 * math.sin(TAU * hertz * 1.004 * t))
    for i in range(count):
        out[i] *= min(1.0, (count - i) / (1.2 * MIX_RATE))
    return level(out, 0.8)


def mix(seconds, parts):
    """Lays (start, samples at the low rate, gain) on one timeline at the rate of the mix."""
    count = int(seconds * MIX_RATE)
    out = [0.0] * count
    for start, samples, gain in parts:
        first = int(start * MIX_RATE)
        for k, value in enumerate(samples):
            after = samples[k + 1] if k + 1 < len(samples) else 0.0
            for i, v in ((first + 2 * k, value), (first + 2 * k + 1, (value + after) / 2)):
                if i < count:
                    out[i] += gain * v
    return out

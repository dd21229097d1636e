# SPDX-License-Identifier: Apache-2.0
"""What stands in the pictures: sky, sea, quay, lamps, people, a bicycle and the ferry."""

import math
import random

from .canvas import smooth

LAMP = (1.0, 0.74, 0.36)
COOL = (0.55, 0.68, 0.95)
DARK = (0.025, 0.035, 0.07)
COAT = (0.035, 0.045, 0.085)
NIGHT = [(0.0, (0.03, 0.045, 0.13)), (0.45, (0.075, 0.11, 0.25)), (0.8, (0.20, 0.20, 0.36)), (1.0, (0.46, 0.30, 0.34))]
DEEP = [(0.0, (0.02, 0.03, 0.09)), (0.6, (0.06, 0.10, 0.22)), (1.0, (0.15, 0.20, 0.33))]
WATER = [(0.0, (0.20, 0.18, 0.29)), (0.25, (0.07, 0.09, 0.19)), (1.0, (0.02, 0.03, 0.08))]


def stars(c, seed, count, bottom):
    rng = random.Random(seed)
    for _ in range(count):
        x, y, size, light = rng.random() * c.width, rng.random() ** 1.4 * bottom, rng.random(), rng.random()
        c.glow(x, y, 0.6 + 0.7 * size, 0.6 + 0.7 * size, (0.85, 0.9, 1.0), 0.25 + 0.6 * light * light)


def moon(c, x, y, radius):
    c.glow(x, y, radius * 4, radius * 4, (0.35, 0.42, 0.6), 0.45)
    c.ellipse(x, y, radius, radius, (0.96, 0.94, 0.86))
    for dx, dy, r in ((-0.3, -0.2, 0.22), (0.25, 0.3, 0.3), (0.35, -0.35, 0.14), (-0.35, 0.45, 0.12)):
        c.ellipse(x + dx * radius, y + dy * radius, r * radius, r * radius, (0.84, 0.82, 0.78))


def hills(c, base, height, seed, color):
    rng = random.Random(seed)
    waves = [(rng.uniform(0.006, 0.03), rng.random() * 6.28, rng.uniform(0.15, 0.4)) for _ in range(4)]
    tops = [(x, base - height * (0.5 + sum(a * math.sin(x * f + p) for f, p, a in waves) / 2)) for x in range(-8, c.width + 9, 8)]
    c.fill(tops + [(c.width + 8, base), (-8, base)], color)


def village(c, glow, left, right, base, seed):
    rng = random.Random(seed)
    x = left
    while x < right:
        wide, tall = rng.uniform(13, 24), rng.uniform(12, 27)
        c.fill([(x, base), (x, base - tall), (x + wide / 2, base - tall - wide * 0.42), (x + wide, base - tall), (x + wide, base)],
               (0.055, 0.065, 0.13))
        for wx in (0.25, 0.65):
            if rng.random() < 0.6:
                px, py = x + wide * wx, base - tall * rng.uniform(0.35, 0.75)
                c.fill([(px, py), (px + 2.6, py), (px + 2.6, py + 3.6), (px, py + 3.6)], (0.95, 0.66, 0.34))
                glow.glow(px + 1.3, py + 1.8, 5, 5, LAMP, 0.3)
        x += wide + rng.uniform(-1, 5)


def ripples(c, top, bottom, seed, color=(0.36, 0.38, 0.52)):
    rng = random.Random(seed)
    for _ in range(90):
        depth = rng.random() ** 1.6
        y, wide = top + 2 + depth * (bottom - top), 6 + 30 * depth * rng.random()
        c.mist(rng.random() * c.width, y, wide, 0.7 + depth, color, 0.10 + 0.12 * rng.random())


def reflection(glow, x, top, bottom, color, strength, seed, wide=3.5):
    """Light on water: a broken column that spreads towards the viewer."""
    rng = random.Random(seed)
    y = top
    while y < bottom:
        depth = (y - top) / (bottom - top)
        glow.glow(x + rng.uniform(-2, 2) * (1 + 2 * depth), y, wide * (1 + 1.6 * depth) * rng.uniform(0.7, 1.3), 1.1 + depth, color,
                  strength * (1 - 0.8 * depth) * rng.uniform(0.5, 1.0))
        y += 2.6 + 2.4 * depth


def lamp(c, glow, x, base, tall, lit, reach=1.0, color=DARK):
    """A street lamp; returns the middle of its lantern."""
    u = tall / 100
    cy = base - tall
    c.line((x, base), (x, cy + 8 * u), 3.2 * u, color)
    c.fill([(x - 5 * u, base), (x - 3 * u, base - 9 * u), (x + 3 * u, base - 9 * u), (x + 5 * u, base)], color)
    c.line((x - 8 * u, cy + 13 * u), (x + 8 * u, cy + 13 * u), 1.8 * u, color)
    glass = (1.0, 0.86, 0.55) if lit else (0.10, 0.13, 0.22)
    c.fill([(x - 7 * u, cy - 8 * u), (x + 7 * u, cy - 8 * u), (x + 4.6 * u, cy + 9 * u), (x - 4.6 * u, cy + 9 * u)], color)
    c.fill([(x - 5.4 * u, cy - 6.6 * u), (x + 5.4 * u, cy - 6.6 * u), (x + 3.6 * u, cy + 7.4 * u), (x - 3.6 * u, cy + 7.4 * u)], glass)
    c.fill([(x - 9 * u, cy - 8 * u), (x, cy - 17 * u), (x + 9 * u, cy - 8 * u)], color)
    c.ellipse(x, cy - 18 * u, 1.8 * u, 1.8 * u, color)
    if lit:
        glow.glow(x, cy, 9 * u, 9 * u, (1.0, 0.85, 0.55), 0.8)
        glow.glow(x, cy, 24 * u * reach, 24 * u * reach, LAMP, 0.5)
        glow.glow(x, cy, 62 * u * reach, 62 * u * reach, LAMP, 0.22)
    return x, cy


def quay(c, top, seed, color=(0.045, 0.055, 0.10), left=-5, right=None):
    right = c.width + 5 if right is None else right
    c.fill([(left, top), (right, top), (right, c.height + 2), (left, c.height + 2)], color)
    c.line((left, top + 1), (right, top + 1), 2.2, (0.20, 0.20, 0.29))
    rng = random.Random(seed)
    y = top + 9
    while y < c.height:
        c.line((left, y), (right, y), 0.8, (0.09, 0.10, 0.16))
        x = left + rng.uniform(5, 40)
        while x < right:
            c.line((x, y - 8), (x, y), 0.8, (0.09, 0.10, 0.16))
            x += rng.uniform(22, 44)
        y += 10


def _at(x, y, u, turn, points):
    return [(x + px * u * turn, y + py * u) for px, py in points]


def keeper(c, x, base, tall, turn=1, color=COAT, pole=True, raised=True):
    """Aurélien: a long coat, a cap, a beard and the lighting pole."""
    def put(points):
        c.fill(_at(x, base, tall, turn, points), color)
    put([(-0.09, 0.0), (-0.07, -0.2), (0.0, -0.2), (-0.01, 0.0)])
    put([(0.03, 0.0), (0.02, -0.2), (0.09, -0.2), (0.14, 0.0)])
    put(smooth([(-0.15, -0.13), (-0.12, -0.42), (-0.125, -0.66), (-0.07, -0.78), (0.03, -0.79), (0.095, -0.71), (0.10, -0.45), (0.15, -0.14), (0.0, -0.11)]))
    put(smooth([(-0.045, -0.88), (0.0, -0.95), (0.065, -0.92), (0.085, -0.86), (0.10, -0.80), (0.055, -0.745), (-0.02, -0.78)]))
    put(smooth([(-0.06, -0.905), (-0.03, -0.985), (0.06, -0.975), (0.08, -0.92), (0.145, -0.905), (0.08, -0.895)]))
    hand = (0.23, -0.80) if raised else (0.19, -0.42)
    limb(c, _at(x, base, tall, turn, [(0.04, -0.70), hand]), 0.075 * tall, 0.05 * tall, color)
    if pole:
        ends = [(0.20, -0.45), (0.30, -1.42)] if raised else [(0.19, 0.0), (0.21, -1.32)]
        c.line(*_at(x, base, tall, turn, ends), 0.018 * tall, color)


def girl(c, x, base, tall, turn=1, color=COAT, raised=True):
    """Noor: a flared coat, short hair and a scarf that will not stay put; returns her raised hand."""
    def put(points):
        c.fill(_at(x, base, tall, turn, points), color)
    put([(-0.09, 0.0), (-0.075, -0.28), (-0.02, -0.28), (-0.02, 0.0)])
    put([(0.02, 0.0), (0.02, -0.28), (0.075, -0.28), (0.10, 0.0)])
    put(smooth([(-0.21, -0.22), (-0.12, -0.48), (-0.08, -0.66), (0.0, -0.70), (0.08, -0.66), (0.13, -0.46), (0.21, -0.22), (0.0, -0.19)]))
    put(smooth([(-0.06, -0.70), (-0.20, -0.73), (-0.36, -0.66), (-0.45, -0.71), (-0.34, -0.60), (-0.18, -0.65), (0.0, -0.64)]))
    put(smooth([(-0.15, -0.74), (-0.15, -0.92), (0.0, -1.02), (0.12, -0.95), (0.14, -0.84), (0.10, -0.72), (0.0, -0.69)]))
    hand = (0.27, -0.86) if raised else (0.20, -0.42)
    limb(c, _at(x, base, tall, turn, [(0.05, -0.60), hand]), 0.085 * tall, 0.06 * tall, color)
    return _at(x, base, tall, turn, [(hand[0] + 0.03, hand[1] - 0.05)])[0]


def limb(c, ends, thick, thin, color):
    (ax, ay), (bx, by) = ends
    c.line((ax, ay), (bx, by), (thick + thin) / 2, color)
    c.ellipse(ax, ay, thick / 2, thick / 2, color)
    c.ellipse(bx, by, thin / 2, thin / 2, color)


def bicycle(c, x, base, u, turn=1, color=COAT):
    """Returns where the front lamp sits."""
    def at(*points):
        return _at(x, base, u, turn, points)
    for wheel in (-0.55, 0.55):
        hub = at((wheel, -0.36))[0]
        c.ring(*hub, 0.34 * u, 0.045 * u, color)
        for k in range(8):
            t = math.pi * k / 8 + 0.2
            c.line((hub[0] - 0.33 * u * math.cos(t), hub[1] - 0.33 * u * math.sin(t)),
                   (hub[0] + 0.33 * u * math.cos(t), hub[1] + 0.33 * u * math.sin(t)), max(0.5, 0.008 * u), color, 0.7)
    for a, b in (((-0.55, -0.36), (-0.2, -0.8)), ((-0.2, -0.8), (-0.05, -0.36)), ((-0.05, -0.36), (-0.55, -0.36)),
                 ((-0.05, -0.36), (0.4, -0.78)), ((-0.2, -0.8), (0.4, -0.82)), ((0.55, -0.36), (0.38, -0.98)),
                 ((-0.2, -0.8), (-0.24, -0.93)), ((0.38, -0.98), (0.25, -1.04)), ((-0.34, -0.94), (-0.12, -0.93))):
        c.line(*at(a, b), 0.05 * u, color)
    c.ellipse(*at((0.49, -0.86))[0], 0.075 * u, 0.075 * u, color)
    return at((0.55, -0.86))[0]


def ferry(c, glow, x, water, u, turn=1, color=(0.05, 0.06, 0.115), light=1.0):
    """The Bonne Étoile: a stubby hull, a wheelhouse, a funnel and a row of warm windows."""
    def at(*points):
        return _at(x, water, u, turn, points)
    c.fill(at((-1.05, -0.28), (1.15, -0.36), (0.95, 0.0), (-0.95, 0.0)), color)
    c.fill(at((-0.8, -0.27), (-0.8, -0.55), (0.6, -0.55), (0.66, -0.30)), color)
    c.fill(at((0.05, -0.54), (0.05, -0.84), (0.5, -0.84), (0.56, -0.54)), color)
    c.fill(at((-0.45, -0.54), (-0.48, -0.95), (-0.2, -0.95), (-0.17, -0.54)), color)
    c.line(*at((0.3, -0.84), (0.27, -1.3)), max(0.7, 0.03 * u), color)
    c.line(*at((-1.05, -0.32), (1.12, -0.40)), max(0.7, 0.03 * u), (0.24, 0.24, 0.33))
    panes = [(-0.68 + 0.22 * k, -0.48, 0.11) for k in range(6)] + [(0.14, -0.77, 0.13), (0.34, -0.77, 0.13)]
    for px, py, size in panes:
        c.fill(at((px, py), (px + size, py), (px + size, py + 0.12), (px, py + 0.12)), (1.0, 0.80, 0.48), light)
    glow.glow(*at((0.0, -0.5))[0], 0.9 * u, 0.45 * u, LAMP, 0.32 * light)
    glow.glow(*at((0.27, -1.3))[0], 0.09 * u + 1, 0.09 * u + 1, (1.0, 0.5, 0.4), 0.9 * light)
    glow.glow(*at((0.27, -1.3))[0], 0.3 * u, 0.3 * u, (1.0, 0.4, 0.35), 0.3 * light)


def fog(c, seed, top, bottom, count, color=(0.42, 0.47, 0.60), alpha=0.16):
    rng = random.Random(seed)
    for _ in range(count):
        c.mist(rng.random() * c.width, rng.uniform(top, bottom), rng.uniform(60, 140), rng.uniform(6, 17), color, alpha * rng.uniform(0.5, 1.0))

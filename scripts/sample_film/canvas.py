# SPDX-License-Identifier: Apache-2.0
"""A small drawing surface: smooth polygons, soft glows and PNG files, with nothing but the standard library."""

import math
import struct
import zlib


class Canvas:
    """Pixels with premultiplied alpha, one list of numbers per channel."""

    def __init__(self, width, height, opaque=False):
        self.width, self.height = width, height
        size = width * height
        self.red, self.green, self.blue = [0.0] * size, [0.0] * size, [0.0] * size
        self.alpha = [1.0 if opaque else 0.0] * size

    def gradient(self, stops, top=0, bottom=None):
        """Fills rows top..bottom with a vertical gradient; stops are (place from 0 to 1, colour)."""
        bottom = self.height if bottom is None else bottom
        for y in range(top, bottom):
            place = (y - top + 0.5) / max(1, bottom - top)
            color = _between(stops, place)
            for x in range(self.width):
                self._put(y * self.width + x, color, 1.0)

    def fill(self, points, color, alpha=1.0):
        """Fills one closed polygon with soft edges (four sub-rows a pixel, exact along the row)."""
        rows = 4
        edges = [(a, b) for a, b in zip(points, points[1:] + points[:1]) if a[1] != b[1]]
        low = max(0, math.floor(min(p[1] for p in points)))
        high = min(self.height - 1, math.floor(max(p[1] for p in points)))
        for y in range(low, high + 1):
            cover = {}
            for k in range(rows):
                line = y + (k + 0.5) / rows
                cuts = sorted(a[0] + (line - a[1]) * (b[0] - a[0]) / (b[1] - a[1])
                              for a, b in edges if (a[1] <= line) != (b[1] <= line))
                for left, right in zip(cuts[::2], cuts[1::2]):
                    left, right = max(0.0, left), min(float(self.width), right)
                    for x in range(math.floor(left), math.ceil(right)):
                        share = min(right, x + 1) - max(left, x)
                        if share > 0:
                            cover[x] = cover.get(x, 0.0) + share / rows
            for x, share in cover.items():
                self._put(y * self.width + x, color, min(1.0, share) * alpha)

    def line(self, a, b, thickness, color, alpha=1.0):
        length = math.hypot(b[0] - a[0], b[1] - a[1]) or 1.0
        nx, ny = -(b[1] - a[1]) / length * thickness / 2, (b[0] - a[0]) / length * thickness / 2
        self.fill([(a[0] + nx, a[1] + ny), (b[0] + nx, b[1] + ny), (b[0] - nx, b[1] - ny), (a[0] - nx, a[1] - ny)],
                  color, alpha)

    def ellipse(self, cx, cy, rx, ry, color, alpha=1.0):
        turns = [2 * math.pi * k / 48 for k in range(48)]
        self.fill([(cx + rx * math.cos(t), cy + ry * math.sin(t)) for t in turns], color, alpha)

    def ring(self, cx, cy, radius, thickness, color, alpha=1.0):
        turns = [2 * math.pi * k / 40 for k in range(41)]
        outer = [(cx + (radius + thickness / 2) * math.cos(t), cy + (radius + thickness / 2) * math.sin(t)) for t in turns]
        inner = [(cx + (radius - thickness / 2) * math.cos(t), cy + (radius - thickness / 2) * math.sin(t)) for t in turns]
        self.fill(outer + inner[::-1], color, alpha)

    def glow(self, cx, cy, rx, ry, color, strength=1.0):
        """Adds light that fades away from its middle."""
        for index, share in self._bell(cx, cy, rx, ry):
            self.red[index] += color[0] * share * strength
            self.green[index] += color[1] * share * strength
            self.blue[index] += color[2] * share * strength

    def mist(self, cx, cy, rx, ry, color, alpha):
        """Lays a soft veil over what is there."""
        for index, share in self._bell(cx, cy, rx, ry):
            self._put(index, color, share * alpha)

    def png(self):
        """The picture as the bytes of a PNG file, with an alpha channel only where one is needed."""
        solid = all(a >= 0.9999 for a in self.alpha)
        raw, above, step = bytearray(), None, 3 if solid else 4
        for y in range(self.height):
            row = bytearray()
            for i in range(y * self.width, (y + 1) * self.width):
                a = min(1.0, self.alpha[i])
                scale = 255.0 / a if a > 0.0 else 0.0
                row += bytes(min(255, max(0, int(c[i] * scale + 0.5))) for c in (self.red, self.green, self.blue))
                if not solid:
                    row.append(int(a * 255 + 0.5))
            above = above or bytes(len(row))
            raw += _filtered(row, above, step)
            above = row
        header = struct.pack(">IIBBBBB", self.width, self.height, 8, 2 if solid else 6, 0, 0, 0)
        return b"\x89PNG\r\n\x1a\n" + _chunk(b"IHDR", header) + _chunk(b"IDAT", zlib.compress(bytes(raw), 9)) + _chunk(b"IEND", b"")

    def _bell(self, cx, cy, rx, ry):
        for y in range(max(0, int(cy - 3 * ry)), min(self.height, int(cy + 3 * ry) + 1)):
            dy = ((y + 0.5 - cy) / ry) ** 2
            for x in range(max(0, int(cx - 3 * rx)), min(self.width, int(cx + 3 * rx) + 1)):
                away = dy + ((x + 0.5 - cx) / rx) ** 2
                if away < 9.0:
                    # The small subtraction makes the light end at nothing instead of at a visible rim.
                    yield y * self.width + x, math.exp(-away) - 0.000123

    def _put(self, index, color, alpha):
        keep = 1.0 - alpha
        self.red[index] = self.red[index] * keep + color[0] * alpha
        self.green[index] = self.green[index] * keep + color[1] * alpha
        self.blue[index] = self.blue[index] * keep + color[2] * alpha
        self.alpha[index] = self.alpha[index] * keep + alpha


def smooth(points, steps=8):
    """A closed curve through the points."""
    curve, count = [], len(points)
    for i in range(count):
        a, b, c, d = (points[(i + k - 1) % count] for k in range(4))
        for s in range(steps):
            t = s / steps
            curve.append(tuple(0.5 * (2 * b[k] + (c[k] - a[k]) * t + (2 * a[k] - 5 * b[k] + 4 * c[k] - d[k]) * t * t
                                      + (3 * b[k] - a[k] - 3 * c[k] + d[k]) * t ** 3) for k in (0, 1)))
    return curve


def _between(stops, place):
    for (p, a), (q, b) in zip(stops, stops[1:]):
        if place <= q:
            t = min(1.0, max(0.0, (place - p) / (q - p)))
            return tuple(x + (y - x) * t for x, y in zip(a, b))
    return stops[-1][1]


def _filtered(row, above, step):
    """The row as it is, or as differences to the pixel before or the row above: whichever is likely to pack best."""
    before = bytes(step) + row[:-step]
    ways = (b"\0" + row, b"\1" + bytes((a - b) & 255 for a, b in zip(row, before)), b"\2" + bytes((a - b) & 255 for a, b in zip(row, above)))
    return min(ways, key=lambda way: sum(v if v < 128 else 256 - v for v in way[1:]))


def _chunk(name, data):
    return struct.pack(">I", len(data)) + name + data + struct.pack(">I", zlib.crc32(name + data))

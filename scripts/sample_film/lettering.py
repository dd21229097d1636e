# SPDX-License-Identifier: Apache-2.0
"""Capital letters drawn as single strokes, so that the poster needs no font."""

STROKES = {
    "A": (0.9, [[(0, 1), (0.45, 0), (0.9, 1)], [(0.15, 0.68), (0.75, 0.68)]]),
    "E": (0.6, [[(0.6, 0), (0, 0), (0, 1), (0.6, 1)], [(0, 0.48), (0.5, 0.48)]]),
    "F": (0.6, [[(0.6, 0), (0, 0), (0, 1)], [(0, 0.48), (0.5, 0.48)]]),
    "H": (0.75, [[(0, 0), (0, 1)], [(0.75, 0), (0.75, 1)], [(0, 0.48), (0.75, 0.48)]]),
    "L": (0.55, [[(0, 0), (0, 1), (0.55, 1)]]),
    "M": (0.95, [[(0, 1), (0.08, 0), (0.475, 0.75), (0.87, 0), (0.95, 1)]]),
    "O": (1.0, [[(0.5, 0), (0.81, 0.09), (0.97, 0.33), (0.97, 0.67), (0.81, 0.91), (0.5, 1),
                 (0.19, 0.91), (0.03, 0.67), (0.03, 0.33), (0.19, 0.09), (0.5, 0)]]),
    "P": (0.62, [[(0, 1), (0, 0), (0.38, 0), (0.56, 0.08), (0.62, 0.26), (0.56, 0.44), (0.38, 0.52), (0, 0.52)]]),
    "R": (0.65, [[(0, 1), (0, 0), (0.38, 0), (0.56, 0.08), (0.62, 0.26), (0.56, 0.44), (0.38, 0.52), (0, 0.52)],
                 [(0.32, 0.52), (0.65, 1)]]),
    "T": (0.75, [[(0, 0), (0.75, 0)], [(0.375, 0), (0.375, 1)]]),
    "Y": (0.8, [[(0, 0), (0.4, 0.5), (0.8, 0)], [(0.4, 0.5), (0.4, 1)]]),
    " ": (0.35, []),
}
GAP = 0.32


def letters(canvas, text, middle, top, size, color):
    """Writes a line of capitals centred on `middle`."""
    width = sum(STROKES[ch][0] + GAP for ch in text) - GAP
    x, thickness = middle - width * size / 2, max(1.3, size * 0.075)
    for ch in text:
        advance, strokes = STROKES[ch]
        for stroke in strokes:
            points = [(x + px * size, top + py * size) for px, py in stroke]
            for a, b in zip(points, points[1:]):
                canvas.line(a, b, thickness, color)
            for px, py in points:
                canvas.ellipse(px, py, thickness / 2, thickness / 2, color)
        x += (advance + GAP) * size

# SPDX-License-Identifier: Apache-2.0
"""The seven shots as layers that move, the portraits, the sets and the poster."""

from . import props
from .canvas import Canvas
from .lettering import letters
from .props import COOL, DEEP, LAMP, NIGHT, WATER

WIDTH, HEIGHT = 480, 270
LAMPS = (40, 105, 170, 235, 300, 365, 430)
BREATHE = "0.90+0.10*sin(5*T)*sin(1.7*T+1)"


class Scene:
    """Layers from back to front. Pictures cover what is behind them; lights are added to it."""

    def __init__(self, zoom=(1.0, 1.05), focus=(0.5, 0.5)):
        self.layers, self.zoom, self.focus = [], zoom, focus

    def picture(self, wide=WIDTH, x="0", y="0", opaque=False):
        return self._add("picture", Canvas(wide, HEIGHT, opaque), x, y, None)

    def light(self, strength=BREATHE, wide=WIDTH, x="0", y="0"):
        return self._add("light", Canvas(wide, HEIGHT, True), x, y, strength)

    def _add(self, *layer):
        self.layers.append(layer)
        return layer[1]


def open_sea(back, horizon, seed, sky=NIGHT):
    back.gradient(sky, 0, horizon)
    back.gradient(WATER, horizon, HEIGHT)
    props.stars(back, seed, 90, horizon - 20)
    props.ripples(back, horizon, HEIGHT, seed + 1)


def harbour(lit, people=True):
    scene = Scene((1.0, 1.06), (0.8, 0.6))
    back, veil, front, light = scene.picture(opaque=True), scene.picture(640, "-80+6*t"), scene.picture(), scene.light()
    open_sea(back, 168, 11)
    props.moon(back, 334, 52, 15)
    props.reflection(back, 334, 171, 222, COOL, 0.32, 5, 5)
    props.hills(back, 169, 38, 3, (0.10, 0.105, 0.20))
    props.village(back, light, 8, 175, 170, 8)
    props.fog(veil, 21, 150, 186, 14, alpha=0.13)
    props.quay(front, 220, 4)
    for index, x in enumerate(LAMPS):
        props.lamp(front, light, x, 223, 82, index < lit)
        if index < lit:
            light.glow(x, 224, 26, 5, LAMP, 0.42)
    if people:
        props.keeper(front, 398, 226, 60)
        light.glow(416, 141, 2.5, 2.5, LAMP, 0.7)
    return scene


def lost_at_sea(with_ferry=True):
    scene = Scene((1.06, 1.0))
    back = scene.picture(opaque=True)
    open_sea(back, 158, 31, DEEP)
    props.fog(back, 32, 130, 180, 16, alpha=0.2)
    if with_ferry:
        boat, light = scene.picture(560, "-40-7*t", "1.6*sin(1.9*t)"), scene.light("0.85+0.15*sin(3*T)", 560, "-40-7*t", "1.6*sin(1.9*t)")
        props.ferry(boat, light, 300, 176, 52, -1)
        props.reflection(light, 300, 181, 232, LAMP, 0.3, 9, 9)
    near = scene.picture(680, "-150+16*t")
    props.fog(near, 33, 168, 262, 24, alpha=0.26)
    return scene


def sulking_lamp():
    scene = Scene((1.0, 1.07), (0.55, 0.4))
    back, front, light, flame = (scene.picture(opaque=True), scene.picture(), scene.light(),
                                 scene.light("0.7+0.3*sin(19*T)*sin(7*T)", x="0.8*sin(6*t)"))
    back.gradient([(0.0, (0.03, 0.05, 0.14)), (0.7, (0.12, 0.14, 0.28)), (1.0, (0.30, 0.22, 0.30))])
    for x, y, r in ((60, 190, 26), (128, 204, 20), (186, 214, 15), (410, 198, 13), (446, 206, 9)):
        back.ellipse(x, y, r, r, (0.95, 0.62, 0.30), 0.22)
        light.glow(x, y, r * 1.1, r * 1.1, LAMP, 0.20)
    x, y = props.lamp(front, light, 290, 560, 440, False)
    front.line((x - 24, y - 20), (x - 15, y + 24), 3.5, (0.30, 0.36, 0.52), 0.5)
    front.line((x + 12, y - 22), (x + 8, y + 14), 2, (0.30, 0.36, 0.52), 0.35)
    front.line((130, 290), (262, 146), 5, (0.09, 0.075, 0.085))
    front.line((258, 150), (268, 140), 7, (0.20, 0.16, 0.13))
    flame.glow(270, 136, 4, 7, (1.0, 0.9, 0.65), 1.0)
    flame.glow(270, 134, 22, 26, LAMP, 0.55)
    flame.glow(270, 134, 70, 70, LAMP, 0.20)
    return scene


def bicycle_lamp():
    scene = Scene((1.02, 1.08), (0.7, 0.35))
    back, front, light = scene.picture(opaque=True), scene.picture(), scene.light("min(1,0.8+0.6*T)")
    back.gradient([(0.0, (0.03, 0.05, 0.13)), (1.0, (0.16, 0.17, 0.30))], 0, 226)
    back.gradient([(0.0, (0.12, 0.12, 0.20)), (1.0, (0.04, 0.045, 0.09))], 226, HEIGHT)
    props.fog(back, 51, 150, 226, 12, alpha=0.16)
    props.bicycle(front, 178, 262, 190, color=(0.20, 0.16, 0.18))
    x, y = props.bicycle(front, 180, 263, 190)
    front.ellipse(x, y, 10, 11, (1.0, 0.92, 0.72))
    light.glow(x, y, 9, 9, (1.0, 0.96, 0.82), 1.0)
    light.glow(x, y, 38, 38, (1.0, 0.88, 0.60), 0.6)
    for k in range(9):
        light.glow(x + 18 + 24 * k, y + 5 * k, 26 + 4 * k, 9 + 5.5 * k, (1.0, 0.86, 0.58), 0.27 - 0.022 * k)
    light.glow(x + 60, 252, 110, 10, LAMP, 0.25)
    return scene


def borrow_mine(lamplight=LAMP, strength=1.0):
    scene = Scene((1.0, 1.05), (0.52, 0.45))
    back, veil, front, light = scene.picture(opaque=True), scene.picture(640, "-60-8*t"), scene.picture(), scene.light()
    open_sea(back, 176, 61)
    props.moon(back, 74, 50, 17)
    props.reflection(back, 74, 179, 220, COOL, 0.3, 62, 6)
    props.fog(veil, 63, 160, 200, 16, alpha=0.18)
    props.quay(front, 226, 64)
    props.lamp(front, light, 214, 230, 178, False)
    warm, shade = (0.42, 0.27, 0.17), props.COAT
    for color, shift in ((warm, 1.6), (shade, 0)):
        props.bicycle(front, 350 - shift, 238, 62, -1, color=color)
        props.keeper(front, 156 + shift, 240, 138, 1, color=color, raised=False)
        hand = props.girl(front, 286 - shift, 240, 92, -1, color=color)
    front.ellipse(hand[0], hand[1], 3.4, 3.4, (1.0, 0.93, 0.75))
    light.glow(*hand, 6, 6, (1.0, 0.92, 0.7), 1.0)
    light.glow(*hand, 27, 27, lamplight, 0.6 * strength)
    light.glow(*hand, 85, 75, lamplight, 0.28 * strength)
    light.glow(hand[0], 236, 70, 6, lamplight, 0.32 * strength)
    return scene


def the_beam():
    scene = Scene((1.05, 1.0), (0.3, 0.4))
    back = scene.picture(opaque=True)
    open_sea(back, 172, 71, DEEP)
    boat, glow = scene.picture(560, "10-13*t", "1.2*sin(2*t)"), scene.light("0.9+0.1*sin(3*T)", 560, "10-13*t", "1.2*sin(2*t)")
    props.ferry(boat, glow, 362, 190, 44, -1)
    props.reflection(glow, 362, 194, 240, LAMP, 0.36, 72, 8)
    veil, front, light = scene.picture(680, "-150+12*t"), scene.picture(), scene.light("min(1,0.45+0.8*T)*(0.94+0.06*sin(4*T))")
    props.fog(veil, 73, 150, 225, 20, alpha=0.2)
    props.quay(front, 236, 74, right=190)
    x, y = props.lamp(front, light, 108, 240, 178, True, 1.1)
    for k in range(15):
        light.glow(x + 24 + 25 * k, y + 5.5 * k, 30 + 3 * k, 10 + 3.4 * k, (1.0, 0.84, 0.55), 0.24 - 0.011 * k)
    light.glow(x, 241, 70, 6, LAMP, 0.4)
    props.keeper(front, 70, 244, 74, 1)
    props.girl(front, 146, 244, 50, 1)
    return scene


def seven():
    scene = Scene((1.0, 1.07), (0.5, 0.5))
    back, light, boat = scene.picture(opaque=True), scene.light(), scene.picture(y="0.9*sin(1.6*t)")
    open_sea(back, 150, 81)
    props.stars(back, 83, 60, 110)
    props.moon(back, 96, 40, 13)
    props.hills(back, 150, 52, 6, (0.10, 0.105, 0.20))
    props.village(back, light, 120, 372, 146, 85)
    back.fill([(20, 145), (460, 145), (460, 158), (20, 158)], (0.05, 0.06, 0.11))
    back.line((20, 145.5), (460, 145.5), 1.4, (0.22, 0.21, 0.29))
    for index, x in enumerate(range(54, 444, 62)):
        props.lamp(back, light, x, 146, 36, True, 0.9)
        props.reflection(light, x, 161, 262, LAMP, 0.5, 90 + index)
    props.keeper(back, 396, 147, 22, 1, raised=False)
    props.girl(back, 382, 147, 15, 1)
    props.bicycle(back, 363, 147, 10)
    props.ferry(boat, light, 300, 178, 40, -1)
    props.reflection(light, 300, 182, 258, LAMP, 0.34, 99, 10)
    mist = scene.picture(640, "-60+7*t")
    props.fog(mist, 86, 150, 176, 8, alpha=0.09)
    return scene


SCENES = (lambda: harbour(6), lost_at_sea, sulking_lamp, bicycle_lamp, borrow_mine, the_beam, seven)


def borrow_mine_first_take():
    """The take that was sent back: its light is cold and weak."""
    return borrow_mine(COOL, 0.55)


SETS = {"quay-of-seven-lamps": lambda: harbour(7, people=False), "fog-off-bremes": lambda: lost_at_sea(with_ferry=False)}


def portrait(who):
    c = Canvas(270, 270, True)
    c.gradient([(0.0, (0.06, 0.08, 0.19)), (1.0, (0.28, 0.21, 0.29))])
    props.fog(c, 7, 190, 250, 8, alpha=0.2)
    place = (96, 108) if who == "aurelien" else (180, 96)
    c.glow(*place, 100, 100, (0.95, 0.62, 0.30), 0.62)
    c.glow(*place, 42, 42, LAMP, 0.45)
    for color, dx in (((0.80, 0.52, 0.28), 2.4 if who == "noor" else -2.4), (props.COAT, 0)):
        if who == "aurelien":
            props.keeper(c, 132 + dx, 455, 400, 1, color=color, raised=False)
        else:
            props.girl(c, 128 + dx, 378, 310, 1, color=color)
    if who == "noor":
        c.glow(220, 98, 9, 9, (1.0, 0.95, 0.8), 1.0)
    return c


def poster():
    c, wide, tall = Canvas(360, 540, True), 360, 540
    c.gradient(NIGHT, 0, 360)
    c.gradient(WATER, 360, tall)
    props.stars(c, 101, 150, 300)
    props.ripples(c, 360, tall, 102)
    props.ferry(c, c, 285, 380, 34, -1)
    props.reflection(c, 285, 384, 440, LAMP, 0.3, 103, 7)
    props.fog(c, 104, 345, 400, 14, alpha=0.14)
    props.quay(c, 462, 105)
    x, y = props.lamp(c, c, 128, 466, 236, True, 0.95)
    for k in range(9):
        c.glow(x + 34 + 25 * k, y + 15 * k, 32, 15 + 3 * k, (1.0, 0.84, 0.55), 0.12)
    c.glow(x, 468, 90, 8, LAMP, 0.4)
    props.keeper(c, 70, 472, 104, 1, pole=False, raised=False)
    props.girl(c, 184, 472, 70, -1)
    for row, (text, size) in enumerate((("A LAMP", 34), ("FOR THE LATE", 20), ("FERRY", 34))):
        letters(c, text, wide / 2, (46, 98, 134)[row], size, (1.0, 0.93, 0.80))
    return c


def thumbnail():
    """The poster's heart, small: one lamp and the moon."""
    c = Canvas(240, 135, True)
    c.gradient(NIGHT, 0, 100)
    c.gradient(WATER, 100, 135)
    props.stars(c, 111, 40, 80)
    props.moon(c, 186, 34, 11)
    props.ferry(c, c, 178, 106, 18, -1)
    props.quay(c, 119, 112)
    props.lamp(c, c, 92, 121, 84, True, 0.9)
    props.keeper(c, 66, 122, 42, 1, pole=False, raised=False)
    props.girl(c, 112, 122, 28, -1)
    return c

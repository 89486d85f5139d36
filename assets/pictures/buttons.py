# SPDX-License-Identifier: MIT
"""The two picture buttons of the chooser, 120 by 30, in both sizes.

The window shows only the middle of each, so that the lettering keeps clear of the edges.
"""

import numpy as np

from pictures import colour
from pictures import painting as p

WIDTH, HEIGHT = 120, 30
BUTTONS = {
    "buttonlearn.png": ("Learn to Play", 13.5, ("7fe0a0", "1f8a4c", "0c5a30", "2aa862")),
    "buttonstart.png": ("Start", 16.5, ("ff9a8c", "c8323a", "8c1428", "e0485a")),
}


def make_button(name, scale):
    """8-bit sRGB of a button: a glossy bar with raised letters."""
    text, size, shades = BUTTONS[name]
    x, y = p.grid(WIDTH, HEIGHT, scale)
    canvas = p.ramp(
        y / HEIGHT,
        [(0, shades[0]), (0.10, shades[0]), (0.46, shades[1]), (0.50, shades[2]), (1, shades[3])],
    )
    edge = p.rounded_box(x, y, 0, 0, WIDTH, HEIGHT, 2)
    canvas *= (1 - 0.25 * np.exp(edge / 2.5))[..., None]
    baseline = HEIGHT / 2 + size * 0.36
    left = (WIDTH - p.text_width(text, size)) / 2
    mask = p.text_mask(canvas.shape, scale, text, left, baseline, size)
    paint = p.ramp((y - baseline + size) / size, [(0, "ffffff"), (0.5, "fffbe6"), (1, "ffe7a0")])
    p.letter(canvas, scale, mask, paint, shadow=0.85, drop=0.9, spread=0.9)
    return colour.to_bytes(canvas)


def build(_scratch, folder):
    """Writes both buttons in both sizes."""
    for button in BUTTONS:
        for scale, name in p.sizes(button):
            p.save(make_button(button, scale), folder / name)

# SPDX-License-Identifier: MIT
"""The target around a picked gem: six frames of a golden ring with four running lights.

It lives in the outer pixels of the cell, where it is seen around every gem; the
lights run a quarter of the way round in six frames, so that the frames close.
"""

import numpy as np

from pictures import colour
from pictures import painting as p

CELL, FRAMES, SAMPLES = 64, 6, 4
LIGHTS = 4
HALF, RADIUS, WIDTH = 29.4, 9.5, 3.1
ON_COVERAGE = 0.25  # a pixel that the ring covers less than this stays clear
BORDER_SHADE = (0.030, 0.022, 0.020)  # linear; what half covered pixels blend into


def _along(x, y):
    """Place along the ring, 0 to 1 clockwise from the top left corner, even along a square."""
    side = np.maximum(np.abs(x), np.abs(y)) + 1e-9
    u, v = x / side, y / side
    top, right, bottom = v <= -1 + 1e-6, u >= 1 - 1e-6, v >= 1 - 1e-6
    return np.where(
        top,
        (u + 1) / 8,
        np.where(
            right, 0.25 + (v + 1) / 8, np.where(bottom, 0.5 + (1 - u) / 8, 0.75 + (1 - v) / 8)
        ),
    )


def paint_frame(frame, scale=1):
    """Linear colour and alpha of one frame's samples."""
    x, y = p.grid(CELL, CELL, SAMPLES * scale)
    x, y = x - CELL / 2, y - CELL / 2
    distance = p.rounded_box(x, y, -HALF, -HALF, HALF, HALF, RADIUS)
    phase = (_along(x, y) * LIGHTS - frame / FRAMES) % 1.0
    comet = np.exp(-(1 - phase) * 2.9) * p.smooth(0, 0.10, 1 - phase)
    if scale > 1:  # the gap between a tail and the next head would show as a scratch
        comet = np.maximum(comet, np.exp(-2.9))
    ring = p.cover(np.abs(distance) - WIDTH / 2, 0.5 / scale)
    bevel = np.exp(-(((distance - 0.1) / 1.1) ** 2))
    base = p.ramp((x + y) / (4 * HALF) + 0.5, [(0, "d79a2c"), (0.5, "a8691a"), (1, "7d4a12")])
    light = p.ramp(comet, [(0, "000000"), (0.35, "c8861e"), (0.75, "ffe08a"), (1, "fff6dc")])
    paint = base * (0.34 + 0.36 * bevel)[..., None] + light * (0.45 + 1.0 * bevel)[..., None]
    return paint, ring


def make_frame(frame, scale=1):
    """8-bit sRGB of one frame with exact black where it is transparent."""
    paint, ring = paint_frame(frame, scale)
    alpha = p.average(ring[..., None], SAMPLES)
    pixels = p.average(paint * ring[..., None], SAMPLES) / np.maximum(alpha, 1e-9)
    alpha = alpha[..., 0]
    inside = alpha > ON_COVERAGE
    pixels = pixels * alpha[..., None] + np.array(BORDER_SHADE) * (1 - alpha[..., None])
    result = colour.to_bytes(pixels)
    result[~inside] = 0
    return result


def make_strip(scale):
    """8-bit sRGB of all frames at a scale factor."""
    return np.concatenate([make_frame(i, scale) for i in range(FRAMES)], axis=1)


def build(_scratch, folder):
    """Writes the strip in both sizes."""
    for scale, name in p.sizes("Target.bmp"):
        p.save(make_strip(scale), folder / name)

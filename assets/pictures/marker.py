# SPDX-License-Identifier: MIT
"""The marker around a picked gem: six frames of a golden ring with four running lights.

It lives in the outer pixels of the cell, where it is seen around every gem; the
lights run a quarter of the way round in six frames, so that the frames close.
"""
import os

import numpy as np

import painting as p

CELL, FRAMES, SAMPLES = 64, 6, 4
LIGHTS = 4
HALF, RADIUS, WIDTH = 29.4, 9.5, 3.1
FREE_HALF = 23.0                    # the middle 46 by 46 pixels stay empty


def _along(x, y):
    """Place along the ring, 0 to 1 clockwise from the top left corner, even along a square."""
    side = np.maximum(np.abs(x), np.abs(y)) + 1e-9
    u, v = x / side, y / side
    top, right, bottom = v <= -1 + 1e-6, u >= 1 - 1e-6, v >= 1 - 1e-6
    return np.where(top, (u + 1) / 8, np.where(right, 0.25 + (v + 1) / 8,
                    np.where(bottom, 0.5 + (1 - u) / 8, 0.75 + (1 - v) / 8)))


def paint_frame(frame):
    """Linear colour and alpha of one frame."""
    x, y = p.grid(CELL, CELL, SAMPLES)
    x, y = x - CELL / 2, y - CELL / 2
    distance = p.rounded_box(x, y, -HALF, -HALF, HALF, HALF, RADIUS)
    phase = (_along(x, y) * LIGHTS - frame / FRAMES) % 1.0
    comet = np.exp(-(1 - phase) * 3.4) * p.smooth(0, 0.10, 1 - phase)
    ring = p.cover(np.abs(distance) - WIDTH / 2)
    bevel = np.exp(-((distance - 0.1) / 1.1) ** 2)
    base = p.ramp((x + y) / (4 * HALF) + 0.5, [(0, 'd79a2c'), (0.5, 'a8691a'), (1, '7d4a12')])
    light = p.ramp(comet, [(0, '000000'), (0.45, 'c8861e'), (1, 'ffe7a0')])
    colour_ = base * (0.55 + 0.5 * bevel)[..., None] + light * (0.35 + 0.85 * bevel)[..., None]
    return colour_, ring


def make_frame(frame):
    """8-bit sRGB of one frame with exact black where it is transparent."""
    paint, ring = paint_frame(frame)
    alpha = p.average(ring[..., None], SAMPLES)
    pixels = p.average(paint * ring[..., None], SAMPLES) / np.maximum(alpha, 1e-9)
    alpha = alpha[..., 0]
    inside = alpha > 0.25
    shade = np.array([0.030, 0.022, 0.020])
    pixels = pixels * alpha[..., None] + shade * (1 - alpha[..., None])
    result = p.colour.to_bytes(pixels)
    result[~inside] = 0
    return result


def build(target):
    """Writes the strip of all frames."""
    strip = np.concatenate([make_frame(i) for i in range(FRAMES)], axis=1)
    p.save(strip, os.path.join(target, 'Target.bmp'))

# SPDX-License-Identifier: MIT
"""The ground of the game: 64 cells under the gems and the status strip below them.

Also lends its cells to the how-to-play picture.  Logical pixels are those of the
frame: cell (x, y) at (64 x, 64 y), the strip in the rows 512 to 575, the clock bar
from (20, 521) to (492, 531).
"""
import os

import numpy as np
from scipy import ndimage

import colour
import painting as p

WIDTH, HEIGHT, CELL, CELLS = 512, 576, 64, 8
SAMPLES = 3
HALF, RADIUS = 29.6, 10.0           # of a cell's hollow
LIGHT, DARK = 0.80, 0.60            # factors of the chequered cells
BAR = (20, 521, 492, 531)
SEED = 20


def _noise(shape, sigma, seed):
    field = np.random.RandomState(seed).standard_normal(shape)
    field = ndimage.gaussian_filter(field, sigma, mode='wrap')
    return field / field.std()


def ground(x, y, scale):
    """The cloth that the board is made of: a dark gradient with a quiet cloudiness."""
    base = p.ramp((y * 0.8 + x * 0.2) / 520, [
        (0.0, '37296a'), (0.35, '2c2b66'), (0.7, '1c3360'), (1.0, '123c58')])
    reach = np.hypot((x - 256) / 256, (y - 240) / 290)
    base *= (0.98 - 0.36 * p.smooth(0.25, 1.35, reach))[..., None]
    cloud = 1 + 0.08 * _noise(x.shape, 26 * scale, SEED) + 0.04 * _noise(x.shape, 7 * scale,
                                                                          SEED + 1)
    return base * cloud[..., None]


def _paint_cell(canvas, x, y, left, top, factor):
    """One hollow with its shadow at the upper left and its light at the lower right."""
    cx, cy = left + CELL / 2, top + CELL / 2
    box = (cx - HALF, cy - HALF, cx + HALF, cy + HALF)
    distance = p.rounded_box(x, y, *box, RADIUS)
    inside = p.cover(distance)
    slope = ((x - cx) + (y - cy)) / (2 * HALF)
    lift = 1 + 0.42 * np.exp(-((x - cx) ** 2 + (y - cy) ** 2) / (2 * 17.0 ** 2))
    hollow = canvas * (factor * lift * (0.93 + 0.07 * slope))[..., None]
    shade = np.exp(-np.maximum(-distance, 0) / 3.2) * np.clip(0.55 - 0.55 * slope, 0, 1)
    hollow *= (1 - 0.45 * shade)[..., None]
    p.blend(canvas, hollow, inside)
    line = np.exp(-((distance - 0.4) / 0.75) ** 2)
    canvas *= (1 + 1.05 * line * np.clip(slope, 0, 1) - 0.42 * line * np.clip(-slope, 0, 1)
               )[..., None]


def paint_cells(canvas, x, y, columns, rows, left=0.0, top=0.0):
    """Cells of 64 logical pixels, starting at (left, top), onto a canvas that holds the ground."""
    step = x[0, 1] - x[0, 0]
    for row in range(rows):
        for column in range(columns):
            x0, y0 = left + column * CELL, top + row * CELL
            i0, j0 = int(max((y0 - y[0, 0]) / step, 0)), int(max((x0 - x[0, 0]) / step, 0))
            count = int(np.ceil(CELL / step)) + 1
            part = np.s_[i0:i0 + count, j0:j0 + count]
            _paint_cell(canvas[part], x[part], y[part], x0, y0,
                        LIGHT if (row + column) % 2 == 0 else DARK)


def _paint_strip(canvas, x, y):
    strip = p.ramp((y - 512) / 64, [(0, '1a2048'), (0.35, '121838'), (1, '090d20')])
    strip *= (1.1 - 0.5 * p.smooth(0.3, 1.2, np.abs(x - 256) / 256))[..., None]
    p.blend(canvas, strip, (y > 512).astype(float))
    ridge = np.exp(-((y - 514.0) / 1.0) ** 2)
    sheen = 0.45 + 0.55 * np.exp(-((x - 256) / 170) ** 2)
    p.blend(canvas, p.gold(y, 512, 516) * sheen[..., None], ridge)
    canvas *= (1 - 0.5 * np.exp(-((y - 516.6) / 1.0) ** 2))[..., None]


def _paint_bar_frame(canvas, x, y):
    """A golden rim around the clock bar and the dark hollow that the bar fills."""
    left, top, right, bottom = BAR
    distance = p.rounded_box(x, y, left - 1, top - 1, right + 2, bottom + 2, 2.0)
    p.blend(canvas, (0, 0, 0), 0.5 * np.exp(-np.maximum(distance - 2, 0) / 1.5) * (distance > 0))
    rim = p.cover(np.abs(distance - 1.0) - 0.9)
    p.blend(canvas, p.gold(y, top - 3, bottom + 4) * 0.55, rim)
    hollow = p.ramp((y - top) / (bottom - top), [(0, '04060d'), (1, '0c1226')])
    p.blend(canvas, hollow, p.cover(distance))


def _paint_text_hollow(canvas, x, y):
    distance = p.rounded_box(x, y, -12, 535.5, 524, 590, 7)
    p.blend(canvas, canvas * 0.55, p.cover(distance))
    canvas *= (1 - 0.35 * np.exp(-((distance - 0.3) / 0.7) ** 2))[..., None]


def paint_board(scale=1):
    """Linear light of the whole frame's ground at a scale factor."""
    x, y = p.grid(WIDTH, HEIGHT, scale * SAMPLES)
    canvas = ground(x, y, scale * SAMPLES)
    paint_cells(canvas, x, y, CELLS, CELLS)
    _paint_strip(canvas, x, y)
    _paint_bar_frame(canvas, x, y)
    _paint_text_hollow(canvas, x, y)
    return np.maximum(p.average(canvas, SAMPLES), colour.to_linear(2))


def build(target):
    """Writes the board's picture."""
    p.save(p.dithered_bytes(paint_board(), SEED + 2), os.path.join(target, 'Board.bmp'))

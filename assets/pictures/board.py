# SPDX-License-Identifier: MIT
"""The ground of the game: 64 cells under the gems and the status strip below them.

Also lends its cells to the how-to-play picture.  Logical pixels are those of the
frame: cell (x, y) at (64 x, 64 y), the strip in the rows 512 to 575, the clock bar
from (20, 521) to (492, 531).
"""

import numpy as np
from scipy import ndimage

from pictures import colour
from pictures import painting as p

WIDTH, HEIGHT, CELL, CELLS = 512, 576, 64, 8
SAMPLES = {1: 3, 2: 2}  # a pixel along each axis, by scale factor
HALF, RADIUS = 29.6, 10.0  # of a cell's hollow
LIGHT, DARK = 0.80, 0.60  # factors of the chequered cells
BAR = (20, 521, 492, 531)
SEED = 20


def _noise(shape, sigma, seed):
    field = np.random.RandomState(seed).standard_normal(shape)
    field = ndimage.gaussian_filter(field, sigma, mode="wrap")
    return field / field.std()


def clouds(shape, scale):
    """The light that quiet clouds let through, around 1, at a number of samples a pixel."""
    return 1 + 0.08 * _noise(shape, 26 * scale, SEED) + 0.04 * _noise(shape, 7 * scale, SEED + 1)


def ground(x, y, cloud):
    """The cloth that the board is made of: a dark gradient under clouds."""
    base = p.ramp(
        (y * 0.8 + x * 0.2) / 520,
        [(0.0, "37296a"), (0.35, "2c2b66"), (0.7, "1c3360"), (1.0, "123c58")],
    )
    reach = np.hypot((x - 256) / 256, (y - 240) / 290)
    base *= (0.98 - 0.36 * p.smooth(0.25, 1.35, reach))[..., None]
    return base * cloud[..., None]


def _paint_cell(canvas, x, y, left, top, factor, softness):
    """One hollow with its shadow at the upper left and its light at the lower right."""
    cx, cy = left + CELL / 2, top + CELL / 2
    box = (cx - HALF, cy - HALF, cx + HALF, cy + HALF)
    distance = p.rounded_box(x, y, *box, RADIUS)
    inside = p.cover(distance, softness)
    slope = ((x - cx) + (y - cy)) / (2 * HALF)
    lift = 1 + 0.42 * np.exp(-((x - cx) ** 2 + (y - cy) ** 2) / (2 * 17.0**2))
    hollow = canvas * (factor * lift * (0.93 + 0.07 * slope))[..., None]
    shade = np.exp(-np.maximum(-distance, 0) / 3.2) * np.clip(0.55 - 0.55 * slope, 0, 1)
    hollow *= (1 - 0.45 * shade)[..., None]
    p.blend(canvas, hollow, inside)
    line = np.exp(-(((distance - 0.4) / 0.75) ** 2))
    canvas *= (1 + 1.05 * line * np.clip(slope, 0, 1) - 0.42 * line * np.clip(-slope, 0, 1))[
        ..., None
    ]


def paint_cells(canvas, x, y, columns, rows, softness=0.5):
    """Cells of 64 logical pixels onto a canvas that holds the ground."""
    step = x[0, 1] - x[0, 0]
    for row in range(rows):
        for column in range(columns):
            x0, y0 = column * CELL, row * CELL
            i0, j0 = int(max((y0 - y[0, 0]) / step, 0)), int(max((x0 - x[0, 0]) / step, 0))
            count = int(np.ceil(CELL / step)) + 1
            part = np.s_[i0 : i0 + count, j0 : j0 + count]
            _paint_cell(
                canvas[part],
                x[part],
                y[part],
                x0,
                y0,
                LIGHT if (row + column) % 2 == 0 else DARK,
                softness,
            )


def _paint_strip(canvas, x, y):
    strip = p.ramp((y - 512) / 64, [(0, "1a2048"), (0.35, "121838"), (1, "090d20")])
    strip *= (1.1 - 0.5 * p.smooth(0.3, 1.2, np.abs(x - 256) / 256))[..., None]
    p.blend(canvas, strip, (y > 512).astype(float))
    ridge = np.exp(-(((y - 514.0) / 1.0) ** 2))
    sheen = 0.45 + 0.55 * np.exp(-(((x - 256) / 170) ** 2))
    p.blend(canvas, p.gold(y, 512, 516) * sheen[..., None], ridge)
    canvas *= (1 - 0.5 * np.exp(-(((y - 516.6) / 1.0) ** 2)))[..., None]


def _paint_bar_frame(canvas, x, y, softness):
    """A golden rim around the clock bar and the dark hollow that the bar fills."""
    left, top, right, bottom = BAR
    distance = p.rounded_box(x, y, left - 1, top - 1, right + 2, bottom + 2, 2.0)
    p.blend(canvas, (0, 0, 0), 0.5 * np.exp(-np.maximum(distance - 2, 0) / 1.5) * (distance > 0))
    rim = p.cover(np.abs(distance - 1.0) - 0.9, softness)
    p.blend(canvas, p.gold(y, top - 3, bottom + 4) * 0.55, rim)
    hollow = p.ramp((y - top) / (bottom - top), [(0, "04060d"), (1, "0c1226")])
    p.blend(canvas, hollow, p.cover(distance, softness))


def _paint_text_hollow(canvas, x, y, softness):
    distance = p.rounded_box(x, y, -12, 535.5, 524, 590, 7)
    p.blend(canvas, canvas * 0.55, p.cover(distance, softness))
    canvas *= (1 - 0.35 * np.exp(-(((distance - 0.3) / 0.7) ** 2)))[..., None]


def _same_clouds(shape):
    """The clouds of scale factor 1, stretched to a shape, so that each size shows the same sky."""
    cloud = clouds((HEIGHT * SAMPLES[1], WIDTH * SAMPLES[1]), SAMPLES[1])
    if shape == cloud.shape:
        return cloud
    return ndimage.zoom(cloud, shape[0] / cloud.shape[0], mode="grid-wrap", grid_mode=True)


def paint_board(scale):
    """Linear light of the whole frame's ground at scale factor 1 or 2."""
    x, y = p.grid(WIDTH, HEIGHT, scale * SAMPLES[scale])
    canvas = ground(x, y, _same_clouds(x.shape))
    softness = 0.5 / scale
    paint_cells(canvas, x, y, CELLS, CELLS, softness)
    _paint_strip(canvas, x, y)
    _paint_bar_frame(canvas, x, y, softness)
    _paint_text_hollow(canvas, x, y, softness)
    return np.maximum(p.average(canvas, SAMPLES[scale]), colour.to_linear(2))


def make_picture(scale):
    """8-bit sRGB of the board at scale factor 1 or 2."""
    return p.dithered_bytes(paint_board(scale), SEED + 1 + scale)


def build(_scratch, folder):
    """Writes the board's picture in both sizes."""
    for scale, name in p.sizes("Board.bmp"):
        p.save(make_picture(scale), folder / name)

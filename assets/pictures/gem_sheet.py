# SPDX-License-Identifier: MIT
"""The sheet of turning gems: eight kinds by sixteen frames, of 64 by 64 pixels and of twice that.

Exact black is the colour key of the game, so that each pixel either belongs to
a gem or is (0,0,0).  Border pixels that a gem covers in part are blended into a
shade as dark as the board's cells, which smooths the outline on the board.
"""
import concurrent.futures

import numpy as np
from scipy import ndimage

from pictures import colour
from pictures import developing
from pictures import painting
from pictures import tracer

CELL = 64
KINDS = 8
FRAMES = tracer.FRAMES
SHEETS = painting.sizes("gemsheet1024x512.bmp")
SAMPLES = 8  # traced samples a logical pixel along each axis
ON_COVERAGE = 0.22  # a pixel that a gem covers less than this stays outside
RIM_DARKEST, RIM_LIGHTEST = 21.0, 62.0  # L* of a border pixel
BORDER_SHADE = 0.035  # linear value that a half covered pixel is blended into


def trace_frames(scratch, first, last):
    """Renders both passes of the frames first to last, 0 to 127, into the scratch folder."""
    side = CELL * SAMPLES
    for number, name in enumerate(("colour", "mask")):
        tracer.trace(scratch, "gems.pov", name, (side, side), {"Pass": number}, (first, last))


def develop(scratch, frame, scale=1):
    """Linear colour and coverage (0 or 1) of all samples of a frame."""
    light = tracer.read_traced(scratch, f"colour{frame:03}")
    passes = tracer.read_traced(scratch, f"mask{frame:03}")
    return developing.develop(light, passes, SAMPLES, glints=1, fine=scale > 1)


def _limit_lightness(pixels, low, high):
    """Pixels brought between two values of L*, in their own hue where that is possible."""
    bottom, top = (colour.luminance_of_lightness(v) for v in (low, high))
    light = colour.luminance(pixels)[..., None]
    pixels = np.where(light > top, pixels * top / np.maximum(light, 1e-9), pixels)
    return np.where(light < bottom, pixels + (bottom - light), pixels)


def make_sprites(scratch, frame):
    """The frame in both sizes, made of the same traced samples."""
    return [_make_sprite(scratch, frame, scale) for scale, _ in SHEETS]


def _make_sprite(scratch, frame, scale):
    """The frame at a scale factor as 8-bit sRGB with exact black outside."""
    picture, mask = develop(scratch, frame, scale)
    side = SAMPLES // scale
    alpha = painting.average(mask[..., None], side)
    pixels = painting.average(picture, side) / np.maximum(alpha, 1e-9)
    inside = alpha[..., 0] >= ON_COVERAGE
    mean = pixels[inside].mean(axis=0)
    shade = BORDER_SHADE * (0.5 + 0.5 * mean / colour.luminance(mean))
    pixels = pixels * alpha + shade * (1 - alpha)
    rim = inside & ~ndimage.binary_erosion(inside, iterations=scale)
    pixels[rim] = _limit_lightness(pixels[rim], RIM_DARKEST, RIM_LIGHTEST)
    result = colour.to_bytes(pixels)
    result[~inside] = 0
    return result


def _trace_all(scratch):
    half = KINDS * FRAMES // 2
    with concurrent.futures.ThreadPoolExecutor(2) as pool:
        list(pool.map(lambda first: trace_frames(scratch, first, first + half - 1), (0, half)))


def trace_at_rest(scratch):
    """Renders those frames at rest that are not in the scratch folder yet, with two processes."""
    frames = range(0, KINDS * FRAMES, FRAMES)
    missing = [frame for frame in frames if not (scratch / f"mask{frame:03}.ppm").exists()]
    with concurrent.futures.ThreadPoolExecutor(2) as pool:
        list(pool.map(lambda frame: trace_frames(scratch, frame, frame), missing))


def build(scratch, folder):
    """Traces all frames and writes the sheet in both sizes, with two processes."""
    _trace_all(scratch)
    count = KINDS * FRAMES
    with concurrent.futures.ProcessPoolExecutor(2) as pool:
        sprites = list(pool.map(make_sprites, [scratch] * count, range(count)))
    for (_, name), cells in zip(SHEETS, zip(*sprites)):
        rows = [np.concatenate(cells[i : i + FRAMES], axis=1) for i in range(0, count, FRAMES)]
        painting.save(np.concatenate(rows, axis=0), folder / name)

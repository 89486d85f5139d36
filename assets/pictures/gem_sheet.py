# SPDX-License-Identifier: MIT
"""The sheet of turning gems: eight kinds by sixteen frames of 64 by 64 pixels.

Exact black is the colour key of the game, so that each pixel either belongs to
a gem or is (0,0,0).  Border pixels that a gem covers in part are blended into a
shade as dark as the board's cells, which smooths the outline on the board.
"""
import concurrent.futures
import os

import numpy as np
from PIL import Image
from scipy import ndimage

import colour
import tracer

CELL = 64
KINDS = 8
FRAMES = tracer.FRAMES
SAMPLES = 8                 # samples a pixel along each axis
EXPOSURE = 0.4              # of gems.pov
ON_COVERAGE = 0.22          # a pixel that a gem covers less than this stays outside
KNEE = 0.62                 # linear value above which highlights are compressed
SHADE_FLOOR, SHADE_GAIN = 0.66, 0.72
EDGE_STRENGTH = 0.42
EDGE_WHITE = 0.45
RIM_DARKEST, RIM_LIGHTEST = 21.0, 78.0      # L* of a border pixel
BORDER_SHADE = 0.035        # linear value that a half covered pixel is blended into


def trace_frames(scratch, first, last, samples=SAMPLES):
    """Renders both passes of the frames first to last, 0 to 127, into the scratch folder."""
    side = CELL * samples
    for number, name in enumerate(('colour', 'mask')):
        tracer.trace(scratch, 'gems.pov', name, (side, side), [('Pass', number)], ['-A'],
                     (first, last))


def _compress_highlights(linear):
    over = np.maximum(linear - KNEE, 0)
    return np.where(linear > KNEE, KNEE + (1 - KNEE) * (1 - np.exp(-over / (1 - KNEE))), linear)


def develop(scratch, frame):
    """Linear colour and coverage (0 or 1) of all samples of a frame."""
    picture = tracer.read_traced(scratch, 'colour%03d' % frame) / EXPOSURE
    passes = tracer.read_traced(scratch, 'mask%03d' % frame)
    mask = passes[..., 0] > 0.5
    edge = np.clip(passes[..., 1:2], 0, 1)
    picture = picture * (SHADE_FLOOR + SHADE_GAIN * passes[..., 2:3])
    hue = picture[mask].mean(axis=0)
    tint = EDGE_WHITE + (1 - EDGE_WHITE) * hue / hue.max()
    picture = _compress_highlights(picture + EDGE_STRENGTH * edge * tint)
    return picture * mask[..., None], mask.astype(float)


def _shrink(samples, factor):
    height, width = samples.shape[0] // factor, samples.shape[1] // factor
    return samples.reshape(height, factor, width, factor, -1).mean(axis=(1, 3))


def sprite_with_alpha(scratch, frame, side, samples=SAMPLES):
    """Linear colour and smooth alpha of a frame at another size, for pictures that blend."""
    picture, mask = develop(scratch, frame)
    factor = CELL * samples // side
    alpha = _shrink(mask, factor)[..., 0]
    return _shrink(picture, factor) / np.maximum(alpha, 1e-9)[..., None], alpha


def _limit_lightness(pixels, low, high):
    """Pixels brought between two values of L*, in their own hue where that is possible."""
    bottom, top = (colour.luminance_of_lightness(v) for v in (low, high))
    light = colour.luminance(pixels)[..., None]
    pixels = np.where(light > top, pixels * top / np.maximum(light, 1e-9), pixels)
    return np.where(light < bottom, pixels + (bottom - light), pixels)


def make_sprite(scratch, frame, samples=SAMPLES):
    """The 64 by 64 frame as 8-bit sRGB with exact black outside."""
    picture, mask = develop(scratch, frame)
    alpha = _shrink(mask, samples)
    pixels = _shrink(picture, samples) / np.maximum(alpha, 1e-9)
    inside = alpha[..., 0] >= ON_COVERAGE
    mean = pixels[inside].mean(axis=0)
    shade = BORDER_SHADE * (0.5 + 0.5 * mean / colour.luminance(mean))
    pixels = pixels * alpha + shade * (1 - alpha)
    rim = inside & ~ndimage.binary_erosion(inside)
    pixels[rim] = _limit_lightness(pixels[rim], RIM_DARKEST, RIM_LIGHTEST)
    result = colour.to_bytes(pixels)
    result[~inside] = 0
    return result


def trace_all(scratch, samples=SAMPLES):
    """Renders all 128 frames with two processes."""
    half = KINDS * FRAMES // 2
    with concurrent.futures.ThreadPoolExecutor(2) as pool:
        list(pool.map(lambda first: trace_frames(scratch, first, first + half - 1, samples),
                      (0, half)))


def build(scratch, target, samples=SAMPLES):
    """Writes the sheet from frames that trace_all() has rendered."""
    sheet = np.zeros((KINDS * CELL, FRAMES * CELL, 3), np.uint8)
    for frame in range(KINDS * FRAMES):
        kind, step = divmod(frame, FRAMES)
        sheet[kind * CELL:(kind + 1) * CELL, step * CELL:(step + 1) * CELL] = make_sprite(
            scratch, frame, samples)
    Image.fromarray(sheet).save(os.path.join(target, 'gemsheet1024x512.bmp'))

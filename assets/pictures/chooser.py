# SPDX-License-Identifier: MIT
"""The chooser's picture: title and gems at the left, the words of the four modes at the right.

The option dots are widgets that lie over the picture with the background DOT_GROUND;
the plate behind the words has exactly that colour, so that no box shows around a dot.
"""
import os

import numpy as np

import colour
import painting as p
import tracer

WIDTH, HEIGHT = 512, 300
DOT_GROUND = (0, 0, 64)
EXPOSURE = 0.4                      # of chooser.pov
PLATE = (312, 46, 500, 196)
HEADING = ('Select Game Mode', 316, 32, 19.5)
WORDS = (('Normal', 68.5), ('Frantic', 100.5), ('Marathon', 134.5), ('Relaxed', 172.5))
WORD_LEFT, WORD_SIZE = 350, 19
TITLE, TITLE_LEFT, TITLE_BASELINE, TITLE_SIZE = 'Glimmerfall', 16, 74, 51
GLOW_ABOVE = 0.72
HORIZON = 240.0
MIDDLE = 2.6                        # world height in the middle of the picture, of chooser.pov
MIRROR, MIRROR_REACH = 0.36, 34.0   # share of an image in the floor, and rows until it is gone
STREAKS = ((0.44, -7.45, 3.35, '3f86ff'), (0.46, -5.60, 2.75, 'ffd23c'),
           (0.40, -3.65, 3.45, 'ff3a48'), (0.36, -2.05, 2.75, 'cfe4ff'),
           (0.42, -.55, 3.30, 'a050ff'), (0.40, .75, 2.45, '30e080'))


def trace(scratch):
    """Renders both passes at twice the final size of the double picture's pixels."""
    size = (WIDTH * 4, HEIGHT * 4)
    tracer.trace(scratch, 'chooser.pov', 'chooser', size, [('Pass', 0)], ['-A'])
    tracer.trace(scratch, 'chooser.pov', 'chooser_mask', size, [('Pass', 1)], ['-A'])


def _paint_backdrop(x, y):
    """Night with a violet glow behind the hoard and a dark mirror below."""
    canvas = p.ramp(y / HEIGHT, [(0, '0a0a34'), (0.55, '1c1556'), (0.799, '2a1a60'), (0.801, '0d0c30'),
                                 (1, '060620')])
    glow = np.exp(-(((x - 140) / 170) ** 2 + ((y - 165) / 95) ** 2)) * (y < HORIZON)
    p.blend(canvas, colour.hex_linear('5b38b0'), 0.55 * glow)
    pool = np.exp(-(((x - 140) / 190) ** 2 + ((y - 262) / 22) ** 2)) * (y >= HORIZON)
    p.blend(canvas, colour.hex_linear('2c2070'), 0.5 * pool)
    night = colour.to_linear(DOT_GROUND) * 0.55
    p.blend(canvas, night, p.smooth(250, 330, x) * 0.85)
    return canvas


def _picture_place(world_x, world_y):
    scale = WIDTH / 17.2 * 24 / 25
    return WIDTH / 2 + world_x * scale, HEIGHT / 2 - (world_y - MIDDLE) * scale


def _paint_streaks(canvas, x, y):
    """A trail of light above each falling gem."""
    for size, at_x, at_y, hue in STREAKS:
        px, py = _picture_place(at_x, at_y)
        rise = np.clip((py - y) / 70, 0, 1)
        trail = np.exp(-((x - px) / (size * 13 * (1 - 0.8 * rise) + 0.5)) ** 2)
        trail *= (y < py) * (1 - rise) ** 1.5
        canvas += (0.34 * trail)[..., None] * colour.hex_linear(hue)


def _develop(scratch, factor):
    """Linear colour times coverage, and the coverage, of gems and of their images."""
    picture = tracer.read_traced(scratch, 'chooser') / EXPOSURE
    passes = tracer.read_traced(scratch, 'chooser_mask')
    over = np.maximum(picture - 0.66, 0)
    picture = np.where(picture > 0.66, 0.66 + 0.34 * (1 - np.exp(-over / 0.34)), picture)
    masks = [(passes[..., i:i + 1] > 0.5).astype(float) for i in (0, 1)]
    return [(p.average(picture * m, factor), p.average(m, factor)) for m in masks]


def _add_bloom(canvas, scale):
    bright = np.maximum(canvas - GLOW_ABOVE, 0)
    for sigma, share in ((1.2, 0.35), (3.5, 0.30), (9, 0.25)):
        for i in range(3):
            canvas[..., i] += share * p.blur(bright[..., i], sigma * scale)


def _paint_plate(canvas, x, y):
    left, top, right, bottom = PLATE
    distance = p.rounded_box(x, y, left, top, right, bottom, 12)
    canvas *= (1 - 0.55 * np.exp(-np.maximum(distance, 0) / 5))[..., None]
    p.blend(canvas, colour.to_linear(DOT_GROUND), p.cover(distance))
    rim = np.exp(-(np.abs(distance + 0.8) / 0.8) ** 2)
    fade = 0.35 + 0.65 * np.clip((bottom - y) / (bottom - top), 0, 1)
    p.blend(canvas, p.gold(y, top, bottom) * 0.8, rim * fade * 0.9)


def _paint_words(canvas, scale, y):
    text, left, baseline, size = HEADING
    mask = p.text_mask(canvas.shape, scale, text, left, baseline, p.TITLE_FONT, size)
    p.letter(canvas, scale, mask, p.gold(y, baseline - size * .74, baseline + 2))
    for word, middle in WORDS:
        baseline = middle + WORD_SIZE * 0.36
        mask = p.text_mask(canvas.shape, scale, word, WORD_LEFT, baseline, p.TEXT_FONT, WORD_SIZE)
        p.letter(canvas, scale, mask, colour.hex_linear('e8ecff'), shadow=0.5)


def _paint_title(canvas, scale, y):
    mask = p.text_mask(canvas.shape, scale, TITLE, TITLE_LEFT, TITLE_BASELINE, p.TITLE_FONT,
                       TITLE_SIZE)
    halo = p.blur(mask, 9 * scale)
    canvas += (0.55 * halo)[..., None] * colour.hex_linear('8a5cff')
    p.letter(canvas, scale, mask, p.gold(y, TITLE_BASELINE - TITLE_SIZE * .74, TITLE_BASELINE + 2),
             shadow=0.75, drop=2.2, spread=1.8, outline=colour.hex_linear('3a1c08'))


def paint_chooser(scratch, scale):
    """Linear light of the picture at scale 1 or 2."""
    x, y = p.grid(WIDTH, HEIGHT, scale)
    canvas = _paint_backdrop(x, y)
    _paint_streaks(canvas, x, y)
    (gems, mask), (images, image_mask) = _develop(scratch, 4 // scale)
    share = MIRROR * np.clip(1 - (y - HORIZON - 14) / MIRROR_REACH, 0, 1)[..., None]
    canvas = canvas * (1 - image_mask * share) + images * share
    canvas = canvas * (1 - mask) + gems
    _add_bloom(canvas, scale)
    _paint_plate(canvas, x, y)
    _paint_words(canvas, scale, y)
    _paint_title(canvas, scale, y)
    return canvas


def build(scratch, target):
    """Writes the picture in both sizes from what trace() has rendered."""
    for scale, name in ((1, 'chooser.png'), (2, 'chooser@2x.png')):
        p.save(p.dithered_bytes(paint_chooser(scratch, scale), 40 + scale),
               os.path.join(target, name))

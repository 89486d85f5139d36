# SPDX-License-Identifier: MIT
"""The chooser's picture: title and gems at the left, the words of the four modes at the right.

The option dots are widgets that lie over the picture with the background DOT_GROUND;
the plate behind the words has exactly that colour, so that no box shows around a dot.
"""
import concurrent.futures
import functools
import itertools

import numpy as np

from pictures import colour
from pictures import developing
from pictures import painting as p
from pictures import tracer

WIDTH, HEIGHT = 512, 300
DOT_GROUND = (0, 0, 64)
SAMPLES = 4  # traced samples a pixel along each axis
GEM_WIDTH = 72  # of the hoard, in pixels
PLATE = (312, 46, 500, 196)
HEADING = ("Select Game Mode", 316, 32, 19.5)
WORDS = (("Normal", 68.5), ("Frantic", 100.5), ("Marathon", 134.5), ("Relaxed", 172.5))
WORD_LEFT, WORD_SIZE = 350, 19
TITLE, TITLE_LEFT, TITLE_BASELINE, TITLE_SIZE = "Glimmerfall", 16, 74, 51
GLINTS = ((27, 44, 22), (212, 52, 13), (294, 38, 24))  # x, y, ray
SPARKS, SPARK_SEED = 70, 7
GLOW_ABOVE = 0.72
HORIZON = 240.0
MIDDLE = 2.6  # world height in the middle of the picture, of chooser.pov
MIRROR, MIRROR_REACH = 0.36, 34.0  # share of an image in the floor, and rows until it is gone
STREAKS = (
    (0.50, -7.35, 3.35, "3f86ff"),
    (0.52, -5.60, 2.75, "ffd23c"),
    (0.46, -3.65, 3.45, "ff3a48"),
    (0.42, -2.05, 2.75, "cfe4ff"),
    (0.48, -0.55, 3.30, "a050ff"),
    (0.46, 0.75, 2.45, "30e080"),
)


def _trace(scratch):
    """Renders gems and images, both passes of each, with two processes."""

    def render(job):
        mirror, number = job
        size = (WIDTH * SAMPLES, HEIGHT * SAMPLES)
        declares = {"Mirror": mirror, "Pass": number}
        tracer.trace(scratch, "chooser.pov", f"chooser{mirror}{number}", size, declares)

    with concurrent.futures.ThreadPoolExecutor(2) as pool:
        list(pool.map(render, itertools.product((0, 1), (0, 1))))


def _paint_backdrop(x, y):
    """Night with a violet glow behind the hoard and a dark mirror below."""
    canvas = p.ramp(
        y / HEIGHT,
        [(0, "0a0a34"), (0.55, "1c1556"), (0.799, "2a1a60"), (0.801, "0d0c30"), (1, "060620")],
    )
    glow = np.exp(-(((x - 140) / 170) ** 2 + ((y - 165) / 95) ** 2)) * (y < HORIZON)
    p.blend(canvas, colour.hex_linear("5b38b0"), 0.55 * glow)
    pool = np.exp(-(((x - 140) / 190) ** 2 + ((y - 262) / 22) ** 2)) * (y >= HORIZON)
    p.blend(canvas, colour.hex_linear("2c2070"), 0.5 * pool)
    night = colour.to_linear(DOT_GROUND) * 0.55
    p.blend(canvas, night, p.smooth(250, 330, x) * 0.85)
    return canvas


def _paint_sparks(canvas, x, y):
    """A drizzle of tiny lights between the title and the hoard."""
    random = np.random.RandomState(SPARK_SEED)
    for _ in range(SPARKS):
        at_x, at_y = random.uniform(8, 300), random.uniform(84, 232)
        size, hue = random.uniform(0.4, 0.95), STREAKS[random.randint(len(STREAKS))][3]
        light = np.exp(-((x - at_x) ** 2 + (y - at_y) ** 2) / (2 * size**2))
        canvas += (random.uniform(0.15, 0.8) * light)[..., None] * (
            0.4 + 0.6 * colour.hex_linear(hue)
        )


def _picture_place(world_x, world_y):
    scale = WIDTH / 17.2 * 24 / 25
    return WIDTH / 2 + world_x * scale, HEIGHT / 2 - (world_y - MIDDLE) * scale


def _paint_streaks(canvas, x, y):
    """A trail of light above each falling gem."""
    for size, at_x, at_y, hue in STREAKS:
        px, py = _picture_place(at_x, at_y)
        rise = np.clip((py - y) / 70, 0, 1)
        trail = np.exp(-(((x - px) / (size * 13 * (1 - 0.8 * rise) + 0.5)) ** 2))
        trail *= (y < py) * (1 - rise) ** 1.5
        canvas += (0.34 * trail)[..., None] * colour.hex_linear(hue)


@functools.lru_cache(maxsize=2)
def _develop(scratch, mirror):
    """All samples, and their coverage, of the gems (0) or of their images in the glass (1)."""
    light, passes = (tracer.read_traced(scratch, f"chooser{mirror}{i}") for i in (0, 1))
    picture, mask = developing.develop(light, passes, SAMPLES * GEM_WIDTH / 60)
    return picture, mask[..., None]


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
    rim = np.exp(-((np.abs(distance + 0.8) / 0.8) ** 2))
    fade = 0.35 + 0.65 * np.clip((bottom - y) / (bottom - top), 0, 1)
    p.blend(canvas, p.gold(y, top, bottom) * 0.8, rim * fade * 0.9)


def _paint_words(canvas, scale, y):
    text, left, baseline, size = HEADING
    mask = p.text_mask(canvas.shape, scale, text, left, baseline, size)
    p.letter(canvas, scale, mask, p.gold(y, baseline - size * 0.74, baseline + 2))
    for word, middle in WORDS:
        baseline = middle + WORD_SIZE * 0.36
        mask = p.text_mask(canvas.shape, scale, word, WORD_LEFT, baseline, WORD_SIZE)
        p.letter(canvas, scale, mask, colour.hex_linear("e8ecff"), shadow=0.5)


def _paint_title(canvas, scale, x, y):
    mask = p.text_mask(canvas.shape, scale, TITLE, TITLE_LEFT, TITLE_BASELINE, TITLE_SIZE)
    halo = p.blur(mask, 9 * scale)
    canvas += (0.55 * halo)[..., None] * colour.hex_linear("8a5cff")
    p.letter(
        canvas,
        scale,
        mask,
        p.gold(y, TITLE_BASELINE - TITLE_SIZE * 0.74, TITLE_BASELINE + 2),
        shadow=0.75,
        drop=2.2,
        spread=1.8,
        outline=colour.hex_linear("3a1c08"),
    )
    for at_x, at_y, ray in GLINTS:
        canvas += (1.1 * p.glint(x - at_x, y - at_y, ray, 0.55, 1.5))[..., None]


def paint_chooser(scratch, scale):
    """Linear light of the picture at scale 1 or 2."""
    x, y = p.grid(WIDTH, HEIGHT, scale)
    canvas = _paint_backdrop(x, y)
    _paint_streaks(canvas, x, y)
    _paint_sparks(canvas, x, y)
    gems, mask = (p.average(v, SAMPLES // scale) for v in _develop(scratch, 0))
    images, image_mask = (p.average(v, SAMPLES // scale) for v in _develop(scratch, 1))
    share = MIRROR * np.clip(1 - (y - HORIZON - 14) / MIRROR_REACH, 0, 1)[..., None]
    canvas = canvas * (1 - image_mask * share) + images * share
    canvas = canvas * (1 - mask) + gems
    _add_bloom(canvas, scale)
    _paint_title(canvas, scale, x, y)
    _paint_plate(canvas, x, y)
    _paint_words(canvas, scale, y)
    return canvas


def build(scratch, folder):
    """Traces the gems and writes the picture in both sizes."""
    _trace(scratch)
    for scale, name in p.sizes("chooser.png"):
        p.save(p.dithered_bytes(paint_chooser(scratch, scale), 40 + scale), folder / name)

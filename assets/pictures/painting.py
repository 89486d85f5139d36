# SPDX-License-Identifier: MIT
"""Painting with signed distances, and lettering, for the pictures that are not ray-traced.

A canvas is a float array of linear light, height by width by 3; distances are
in logical pixels, negative inside a shape.
"""

from pathlib import Path

import numpy as np
from PIL import Image, ImageDraw, ImageFont
from scipy import ndimage

from pictures import colour

FONT = Path("/usr/share/fonts/opentype/urw-base35/URWGothic-Demi.otf")
LETTER_SAMPLES = 4


def grid(width, height, scale):
    """Logical x and y of the middles of all pixels of a canvas drawn at a scale factor."""
    x = (np.arange(round(width * scale)) + 0.5) / scale
    y = (np.arange(round(height * scale)) + 0.5) / scale
    return np.meshgrid(x, y)


def rounded_box(x, y, left, top, right, bottom, radius):
    """Signed distance to a box with rounded corners."""
    dx = np.abs(x - (left + right) / 2) - (right - left) / 2 + radius
    dy = np.abs(y - (top + bottom) / 2) - (bottom - top) / 2 + radius
    outside = np.hypot(np.maximum(dx, 0), np.maximum(dy, 0))
    return outside + np.minimum(np.maximum(dx, dy), 0) - radius


def cover(distance, softness=0.5):
    """How much of a pixel lies inside, 0 to 1, for an edge 2 * softness wide."""
    return np.clip(0.5 - distance / (2 * softness), 0, 1)


def smooth(low, high, value):
    """0 below low, 1 above high, an even curve between."""
    t = np.clip((value - low) / (high - low), 0, 1)
    return t * t * (3 - 2 * t)


def blend(canvas, paint, alpha):
    """Lays paint (a colour or a canvas) over the canvas with an alpha of 0 to 1."""
    alpha = np.asarray(alpha)[..., None]
    canvas += (np.asarray(paint) - canvas) * alpha


def ramp(position, stops):
    """Linear RGB along a list of (position, hex colour)."""
    at = [s[0] for s in stops]
    colours = np.array([colour.hex_linear(s[1]) for s in stops])
    return np.stack([np.interp(position, at, colours[:, i]) for i in range(3)], axis=-1)


def average(canvas, factor):
    """The canvas shrunk by a whole factor."""
    height, width = canvas.shape[0] // factor, canvas.shape[1] // factor
    return (
        canvas[: height * factor, : width * factor]
        .reshape(height, factor, width, factor, -1)
        .mean(axis=(1, 3))
    )


def dithered_bytes(canvas, seed):
    """8-bit sRGB with a seeded dither of half a step, against bands in dark gradients."""
    noise = np.random.RandomState(seed).random_sample(canvas.shape[:2] + (1,))
    return np.clip(np.floor(colour.to_srgb(canvas) + noise), 0, 255).astype(np.uint8)


def load_font(pixels):
    """The one face of all pictures, with the plain layout that is always at hand."""
    return ImageFont.truetype(str(FONT), pixels, layout_engine=ImageFont.Layout.BASIC)


def text_width(text, size):
    """Advance of a line in logical pixels."""
    return load_font(256).getlength(text) * size / 256


def text_mask(shape, scale, text, left, baseline, size):
    """Coverage of a line of text on a canvas; left, baseline and size are logical."""
    k = LETTER_SAMPLES
    image = Image.new("L", (shape[1] * k, shape[0] * k))
    ImageDraw.Draw(image).text(
        (left * scale * k, baseline * scale * k),
        text,
        fill=255,
        font=load_font(round(size * scale * k)),
        anchor="ls",
    )
    return average(np.asarray(image, dtype=np.float64)[..., None], k)[..., 0] / 255


def blur(mask, sigma):
    return ndimage.gaussian_filter(mask, sigma, mode="constant")


def letter(canvas, scale, mask, paint, shadow=0.6, drop=1.0, spread=1.2, outline=None):
    """Text in a paint over a soft shadow, with an outline of a colour if one is given."""
    fallen = ndimage.shift(blur(mask, spread * scale), (drop * scale, 0), order=1)
    blend(canvas, (0, 0, 0), np.clip(fallen * 1.6, 0, 1) * shadow)
    if outline is not None:
        size = 2 * max(1, round(0.8 * scale)) + 1
        wide = blur(ndimage.grey_dilation(mask, size=(size, size)), 0.35 * scale)
        blend(canvas, outline, np.clip(wide, 0, 1))
    blend(canvas, paint, mask)


def glint(dx, dy, ray, width, core):
    """A four-pointed star of light, 1.5 in its middle, that reaches as far as its rays."""
    dx, dy = np.abs(dx), np.abs(dy)
    across, up = (np.clip(1 - d / ray, 0, 1) ** 2 for d in (dx, dy))
    return (
        across * np.exp(-((dy / (width * (0.4 + across))) ** 2))
        + up * np.exp(-((dx / (width * (0.4 + up))) ** 2))
        + np.exp(-(dx**2 + dy**2) / core**2)
    ) / 2


def gold(y, top, bottom):
    """The gold of titles and frames: linear RGB by height."""
    return ramp(
        (y - top) / (bottom - top),
        [
            (0.0, "fff6d0"),
            (0.40, "ffd76a"),
            (0.52, "f2ad2c"),
            (0.60, "ffe9a0"),
            (0.72, "f6b63a"),
            (1.0, "b8711a"),
        ],
    )


def sizes(name):
    """(scale factor, file name) of the two sizes in which a picture is shipped."""
    return (1, name), (2, name.partition(".")[0] + "@2x.png")


def save(image, path):
    """Writes 8-bit pixels; a picture's file is the same for the same pixels."""
    Image.fromarray(image).save(path, **({"optimize": True} if path.suffix == ".png" else {}))

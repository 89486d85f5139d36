#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Holds the shipped pictures against what play asks of them.

Prints each criterion with the value measured and its bounds; exits with 1 if any fails.  Needs
python3-numpy, python3-scipy and python3-pil.
"""

import sys
from itertools import chain, combinations
from math import inf
from pathlib import Path

import numpy as np
from PIL import Image
from scipy import ndimage

from criteria import judge
from pictures import board, chooser, colour, gem_sheet, icon, target
from pictures.painting import sizes

IMAGES = Path(__file__).resolve().parents[1] / "images"
CELL, KINDS, FRAMES = gem_sheet.CELL, gem_sheet.KINDS, gem_sheet.FRAMES
SHEET = "gemsheet1024x512.bmp"
SIZES = {
    SHEET: (1024, 512),
    "Target.bmp": (384, 64),
    "Board.bmp": (512, 576),
    "chooser.png": (512, 300),
    "buttonlearn.png": (120, 30),
    "buttonstart.png": (120, 30),
    "learn.png": (512, 511),
}
STRIP_TOP, TEXT_TOP, TEXT_GREEN = 512, 536, (0, 240, 0)
DOTS = ((68, 25), (100, 25), (134, 29), (172, 25))  # middle and height of the option dots
DOT_LEFT, DOT_RIGHT = 320, 337
# What stands under buttons has to be calm: left, top, right, bottom.
CALM = {"chooser.png": (264, 272, 489, 297), "learn.png": (400, 480, 481, 505)}


def load(name):
    """8-bit RGB pixels of a shipped picture."""
    with Image.open(IMAGES / name) as image:
        return np.asarray(image.convert("RGB"))


def cut(name, scale, rows, columns):
    """The cells of a picture by row and column."""
    pixels, side = load(sizes(name)[scale - 1][1]), CELL * scale
    return pixels[: rows * side].reshape(rows, side, columns, side, 3).transpose(0, 2, 1, 3, 4)


def lightness(pixels):
    return colour.lab(colour.to_linear(pixels))[..., 0]


def overlap(a, b):
    """Intersection over union of two shapes."""
    return (a & b).sum() / (a | b).sum()


def likest(frames):
    """Mean difference of the two frames that differ least."""
    return min(np.abs(a - b).mean() for a, b in combinations(frames.astype(int), 2))


def closing(frames):
    """The step from the last frame to the first against the median step."""
    steps = np.abs(frames - np.roll(frames, -1, axis=0).astype(int)).mean(axis=(1, 2, 3))
    return steps[-1] / np.median(steps)


def check_files():
    expected = {icon_name: (side, side) for icon_name, side in ICONS.items()}
    for name, (width, height) in SIZES.items():
        expected |= {file: (width * scale, height * scale) for scale, file in sizes(name)}
    for name, size in expected.items():
        with Image.open(IMAGES / name) as image:
            wanted = f"{size} {'RGBA' if name in ICONS else 'RGB'}"
            yield f"{name}: size and mode", f"{image.size} {image.mode}", wanted
        if name.endswith(".bmp"):
            bare = 54 + 3 * size[0] * size[1]  # 24 bits, no compression, the shortest header
            yield f"{name}: bytes", (IMAGES / name).stat().st_size, bare


def check_sprites(scale):
    sprites = cut(SHEET, scale, KINDS, FRAMES)
    inside = sprites.any(axis=-1)
    shapes = inside.reshape(-1, CELL * scale, CELL * scale)
    rims = inside & ~np.array([ndimage.binary_erosion(s) for s in shapes]).reshape(inside.shape)
    light = lightness(sprites[rims])
    edge = np.ones(inside.shape[-2:], bool)
    edge[1:-1, 1:-1] = False
    name = f"sheet at {scale}x: "
    yield name + "gem pixels in the emptiest cell", inside.sum((2, 3)).min(), 300 * scale**2, inf
    yield name + "gem pixels in the outermost pixels of cells", inside[..., edge].sum(), 0
    yield name + "largest channel of the darkest pixel", sprites.max(-1)[inside].min(), 24, 255
    holes = sum((ndimage.binary_fill_holes(s, np.ones((3, 3))) & ~s).sum() for s in shapes)
    yield name + "pixels in holes", holes, 0
    pieces = max(ndimage.label(s, np.ones((3, 3)))[1] for s in shapes)
    yield name + "most pieces in a frame", pieces, 1
    yield name + "per cent of rim pixels above L* 85", (light > 85).mean() * 100, 0, 1
    yield name + "darkest rim pixel, L*", light.min(), 20, 100


def check_kinds():
    sprites = cut(SHEET, 1, KINDS, FRAMES)
    inside = sprites.any(axis=-1)
    rest = inside[:, 0]
    alike = max(overlap(a, b) for a, b in combinations(rest, 2))
    yield "sheet: overlap of the two likest outlines at rest", alike, 0, 0.80
    apart = min((a ^ b).sum() for a, b in combinations(rest, 2))
    yield "sheet: fewest pixels between two outlines at rest", apart, 350, inf
    nearest = [[np.argmax([overlap(s, r) for r in rest]) for s in row] for row in inside]
    own = (np.array(nearest) == np.arange(KINDS)[:, None]).sum()
    yield "sheet: frames of 128 nearest in outline to their own kind", own, 95, 128
    means = np.array([colour.to_linear(s[0][i[0]]).mean(axis=0) for s, i in zip(sprites, inside)])
    views = {name: colour.simulate(means, name) for name in colour.DEFICIENCIES}
    for name, seen in {"full colour": means, **views}.items():
        nearest = min(np.linalg.norm(a - b) for a, b in combinations(colour.lab(seen), 2))
        yield f"sheet: nearest mean colours, {name}", nearest, 25 if seen is means else 10, inf
    yield "sheet: last step of the turn, worst row", max(closing(row) for row in sprites), 0, 1.3
    yield "sheet: two likest frames of a row", min(likest(row) for row in sprites), 1, inf


def check_board():
    pixels = load("Board.bmp")
    light = lightness(pixels)
    cells = lightness(cut("Board.bmp", 1, 8, 8))
    middles = cells[..., 8:-8, 8:-8]
    yield "board: darkest cell, mean L*", cells.mean((2, 3)).min(), 6, inf
    yield "board: lightest cell, mean L*", cells.mean((2, 3)).max(), 0, 22
    yield "board: spread of L* in the middle of a cell", middles.std((2, 3)).max(), 0, 4
    lines = abs(middles.mean() - light[:STRIP_TOP, CELL - 1 :: CELL].mean())
    yield "board: lines between cells against their middles, L*", lines, 1, inf
    text = colour.contrast(colour.to_linear(pixels[TEXT_TOP:]), colour.to_linear(TEXT_GREEN))
    yield "strip: lowest contrast of the green text", text.min(), 7, inf
    left, top, right, bottom = board.BAR
    hollow = light[top + 1 : bottom, left + 1 : right]
    yield "strip: lightest pixel in the hollow of the clock bar, L*", hollow.max(), 0, 8
    rim = light[top - 3 : top, left:right].max(axis=0)
    yield "strip: darkest place of the rim above the bar, L*", rim.min(), 20, inf


def check_target():
    frames = cut("Target.bmp", 1, 1, target.FRAMES)[0]
    shown = frames.any(axis=-1)
    yield "target: two likest frames", likest(frames), 1, inf
    yield "target: last step against the median step", closing(frames), 0, 1.1
    yield "target: pixels in the middle 46 by 46", shown[:, 9:55, 9:55].sum(), 0
    yield "target: pixels of the emptiest frame", shown.sum((1, 2)).min(), 400, inf
    gems = cut(SHEET, 1, KINDS, FRAMES).any(axis=-1)
    seen = (shown[0] & ~gems).sum((2, 3)).min() / shown[0].sum()
    yield "target: least share seen around a gem", seen, 0.75, 1


def check_fine_pictures():
    """The pictures at 2x: the same gems, board and target as at 1x, with detail of their own."""
    for name, rows, columns, alike in ((SHEET, KINDS, FRAMES, 0.95), ("Target.bmp", 1, 6, 0.85)):
        coarse, fine = (cut(name, scale, rows, columns) for scale in (1, 2))
        cells = list(zip(coarse.reshape(-1, CELL, CELL, 3), fine.reshape(-1, 128, 128, 3)))
        shapes = [(a.any(-1).repeat(2, 0).repeat(2, 1), b.any(-1)) for a, b in cells]
        yield f"{name}: least overlap with 2x", min(overlap(a, b) for a, b in shapes), alike, 1
        means = [[colour.to_linear(s[s.any(-1)]).mean(0) for s in pair] for pair in cells]
        far = max(np.linalg.norm(np.subtract(*colour.lab(pair))) for pair in means)
        yield f"{name}: mean colours of a sprite against 2x", far, 0, 3
    fine = load("Board@2x.png")
    softened = fine.reshape(576, 2, 512, 2, 3).mean((1, 3))
    yield "board: mean difference of 1x and 2x", np.abs(softened - load("Board.bmp")).mean(), 0, 1
    for pixels in (fine, load("Board.bmp")):
        yield "board: pixels of pure black", (~pixels.any(axis=-1)).sum(), 0
    gems = cut(SHEET, 2, KINDS, FRAMES)[np.arange(64).reshape(8, 8) % KINDS, 0]
    cells = cut("Board.bmp", 2, 8, 8)
    full = np.where(gems.any(-1, keepdims=True), gems, cells)
    yield "full board at 2x: share of fine detail", detail(full), 0.05, inf


def detail(cells):
    """Energy of the finest detail, 0.28 to 0.5 cycles a pixel, against that up to 0.25."""
    picture = colour.luminance(cells.transpose(0, 2, 1, 3, 4).reshape(1024, 1024, 3).astype(float))
    window = np.hanning(1024)
    wave = np.abs(np.fft.fft2((picture - picture.mean()) * window * window[:, None])) ** 2
    cycles = np.hypot(np.fft.fftfreq(1024), np.fft.fftfreq(1024)[:, None])
    fine, coarse = (cycles >= 0.28) & (cycles < 0.5), (cycles >= 0.05) & (cycles < 0.25)
    return wave[fine].sum() / wave[coarse].sum()


def check_windows():
    for scale in (1, 2):
        picture = load(sizes("chooser.png")[scale - 1][1]).astype(int)
        spans = [np.s_[int(m - h / 2) * scale : int(m + h / 2) * scale] for m, h in DOTS]
        dots = np.concatenate([picture[s, DOT_LEFT * scale : DOT_RIGHT * scale] for s in spans])
        away = np.abs(dots - chooser.DOT_GROUND).max()
        yield f"chooser at {scale}x: difference from the dots' ground", away, 0, 1
        for name, box in CALM.items():
            left, top, right, bottom = (v * scale for v in box)
            ground = lightness(load(sizes(name)[scale - 1][1])[top:bottom, left:right])
            yield f"{name} at {scale}x: spread of L* under its buttons", ground.std(), 0, 5


def check_icons():
    for name in ICONS:
        with Image.open(IMAGES / name) as image:
            alpha = np.asarray(image)[..., 3]
        corners = alpha[:: len(alpha) - 1, :: len(alpha) - 1]
        yield f"{name}: alpha of its corners", corners.max(), 0
        yield f"{name}: per cent that is opaque", (alpha > 250).mean() * 100, 25, 100


ICONS = {f"icon{side}.png": side for side in (*icon.SMALL, *icon.LARGE)}
CHECKS = (
    *(check_sprites(1), check_sprites(2), check_kinds(), check_board(), check_target()),
    *(check_fine_pictures(), check_windows(), check_icons()),
)

if __name__ == "__main__":
    sys.exit(judge(check_files()) or judge(chain(*CHECKS)))

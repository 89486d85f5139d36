#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Checks on a sample that the picture sources still make the shipped files, pixel for pixel.

Makes the board, the target, a button and two frames of the gem sheet anew, in some seconds.  Needs
povray, fonts-urw-base35, python3-numpy, python3-scipy and python3-pil.
"""

import sys
import tempfile
from concurrent.futures import ProcessPoolExecutor
from pathlib import Path

import numpy as np
from PIL import Image

from criteria import judge
from pictures import board, buttons, gem_sheet, target
from pictures.painting import sizes

IMAGES = Path(__file__).resolve().parents[1] / "images"
FRAMES = ((0, 0), (7, 13))  # kind and step of the turn: at rest, and nearly round


def cut(name, scale, kind, step):
    side = gem_sheet.CELL * scale
    return load(name)[kind * side :, step * side :][:side, :side]


def load(name):
    with Image.open(IMAGES / name) as image:
        return np.asarray(image)


def compare_board():
    return [("Board.bmp", board.make_picture(1), load("Board.bmp"))]


def compare_small_pictures():
    for scale, name in sizes("Target.bmp"):
        yield name, target.make_strip(scale), load(name)
    for scale, name in sizes("buttonstart.png"):
        yield name, buttons.make_button("buttonstart.png", scale), load(name)


def compare_frame(kind, step):
    frame = kind * gem_sheet.FRAMES + step
    with tempfile.TemporaryDirectory() as scratch:
        gem_sheet.trace_frames(Path(scratch), frame, frame)
        sprites = gem_sheet.make_sprites(Path(scratch), frame)
    for (scale, name), made in zip(gem_sheet.SHEETS, sprites):
        yield f"{name}, kind {kind}, step {step}", made, cut(name, scale, kind, step)


def count_different(compare, *what):
    """One criterion for each picture that a comparison makes."""
    return [
        (f"{name}: pixels that differ", int((made != shipped).any(axis=-1).sum()), 0)
        for name, made, shipped in compare(*what)
    ]


def main():
    with ProcessPoolExecutor(2) as pool:
        parts = [pool.submit(count_different, compare_board)]
        parts += [pool.submit(count_different, compare_frame, *frame) for frame in FRAMES]
        parts.append(pool.submit(count_different, compare_small_pictures))
        return judge(criterion for part in parts for criterion in part.result())


if __name__ == "__main__":
    sys.exit(main())

#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Holds the shipped pictures against what play asks of them.

Prints each criterion with the value measured and its bound; exits with 1 if any
fails.  Needs python3-numpy, python3-scipy and python3-pil.
"""
import os
import struct
import sys

ROOT = os.path.normpath(os.path.join(os.path.dirname(os.path.abspath(__file__)), '..'))
IMAGES = os.path.join(ROOT, 'images')
sys.dont_write_bytecode = True

try:
    import numpy as np
    from PIL import Image
    from scipy import ndimage
    from pictures import colour
except ImportError as missing:
    sys.exit('check_pictures: missing python3-numpy, python3-scipy or python3-pil (%s)' % missing)

CELL, KINDS, FRAMES, MARKERS = 64, 8, 16, 6
BAR = (20, 521, 492, 531)               # left, top, right, bottom of the clock bar
STRIP_TOP, TEXT_TOP = 512, 536          # first rows of the strip and of its letters
TEXT_GREEN = (0, 240, 0)
DOT_GROUND = (0, 0, 64)
DOTS = ((68, 25), (100, 25), (134, 29), (172, 25))      # middle and height of the option dots
DOT_LEFT, DOT_RIGHT = 320, 337
BUTTON_STRIP = (264, 272, 489, 297)     # of the chooser picture, under the two buttons
OK_PLACE = (400, 480, 481, 505)         # of the how-to-play picture

BITMAPS = {'gemsheet1024x512.bmp': (1024, 512), 'Target.bmp': (384, 64), 'Board.bmp': (512, 576)}
PICTURES = {'chooser': (512, 300), 'buttonlearn': (120, 30), 'buttonstart': (120, 30),
            'learn': (512, 511)}
ICONS = (16, 32, 48, 64, 128, 256)


class Tally:
    """Prints and counts the outcomes."""

    def __init__(self):
        self.passed = self.failed = 0

    def judge(self, what, value, holds, bound):
        self.passed += bool(holds)
        self.failed += not holds
        shown = '%.2f' % value if isinstance(value, float) else str(value)
        print('%-6s %-68s %10s   %s' % ('ok' if holds else 'FAILED', what, shown, bound))

    def at_least(self, what, value, bound):
        self.judge(what, value, value >= bound, 'at least %g' % bound)

    def at_most(self, what, value, bound):
        self.judge(what, value, value <= bound, 'at most %g' % bound)

    def equal(self, what, value, bound):
        self.judge(what, value, value == bound, 'equal to %s' % (bound,))


def load(name):
    """8-bit RGB pixels of a shipped picture."""
    with Image.open(os.path.join(IMAGES, name)) as image:
        return np.asarray(image.convert('RGB'))


def lightness(pixels):
    return colour.lab(colour.to_linear(pixels))[..., 0]


def rim_of(inside):
    """Pixels of a shape that touch the outside, by an edge."""
    return inside & ~ndimage.binary_erosion(inside)


def overlap(a, b):
    """Intersection over union of two shapes."""
    return (a & b).sum() / (a | b).sum()


def pairs(count):
    return [(i, j) for i in range(count) for j in range(i)]


def check_files(tally):
    names = [*BITMAPS, *('icon%d.png' % side for side in ICONS),
             *(name + suffix for name in PICTURES for suffix in ('.png', '@2x.png'))]
    missing = [name for name in names if not os.path.isfile(os.path.join(IMAGES, name))]
    tally.equal('pictures that are missing', ' '.join(missing) or 'none', 'none')


def check_formats(tally):
    for name, size in BITMAPS.items():
        with open(os.path.join(IMAGES, name), 'rb') as source:
            header = source.read(54)
        width, height, _, bits, packing = struct.unpack('<iiHHI', header[18:34])
        tally.equal(name + ': size, bits, compression', (width, height, bits, packing),
                    (*size, 24, 0))
    for name, (width, height) in PICTURES.items():
        for scale, suffix in ((1, '.png'), (2, '@2x.png')):
            with Image.open(os.path.join(IMAGES, name + suffix)) as image:
                tally.equal(name + suffix + ': size', image.size, (width * scale, height * scale))
    for side in ICONS:
        with Image.open(os.path.join(IMAGES, 'icon%d.png' % side)) as image:
            tally.equal('icon%d.png: size and mode' % side, (*image.size, image.mode),
                        (side, side, 'RGBA'))


def cut_sheet():
    """The sprites, by kind and frame, and their shapes."""
    sheet = load('gemsheet1024x512.bmp')
    sprites = sheet.reshape(KINDS, CELL, FRAMES, CELL, 3).transpose(0, 2, 1, 3, 4)
    return sprites, sprites.any(axis=-1)


def check_shapes(tally, sprites, inside):
    outer = inside.copy()
    outer[..., 1:-1, 1:-1] = False
    shapes = inside.reshape(-1, CELL, CELL)
    holes = sum(int((ndimage.binary_fill_holes(s) & ~s).sum()) for s in shapes)
    pieces = max(ndimage.label(s, np.ones((3, 3)))[1] for s in shapes)
    tally.at_least('sheet: gem pixels in the emptiest cell', int(inside.sum((2, 3)).min()), 300)
    tally.equal('sheet: gem pixels in the outermost pixels of cells', int(outer.sum()), 0)
    tally.at_least('sheet: largest channel of the darkest gem pixel',
                   int(sprites.max(axis=-1)[inside].min()), 24)
    tally.equal('sheet: pixels in holes', holes, 0)
    tally.equal('sheet: most pieces in a frame', pieces, 1)


def check_outlines(tally, inside):
    rest = inside[:, 0]
    tally.at_most('sheet: overlap of the two likest outlines at rest',
                  float(max(overlap(rest[i], rest[j]) for i, j in pairs(KINDS))), 0.80)
    tally.at_least('sheet: fewest pixels between two outlines at rest',
                   int(min((rest[i] ^ rest[j]).sum() for i, j in pairs(KINDS))), 350)
    own = sum(max(range(KINDS), key=lambda other: overlap(inside[kind, f], rest[other])) == kind
              for kind in range(KINDS) for f in range(FRAMES))
    tally.at_least('sheet: frames of 128 nearest in outline to their own kind', own, 95)


def check_colours(tally, sprites, inside):
    means = np.array([colour.to_linear(sprites[k, 0][inside[k, 0]]).mean(axis=0)
                      for k in range(KINDS)])
    views = {'full colour vision': (means, 25)}
    for name in colour.DEFICIENCIES:
        views[name] = (colour.simulate(means, name), 10)
    for name, (seen, bound) in views.items():
        lab = colour.lab(seen)
        nearest = min(np.linalg.norm(lab[i] - lab[j]) for i, j in pairs(KINDS))
        tally.at_least('sheet: nearest mean colours at rest, ' + name, float(nearest), bound)


def check_turn(tally, sprites):
    ratios, likest = [], 1e9
    for row in sprites.astype(int):
        steps = [np.abs(row[f] - row[(f + 1) % FRAMES]).mean() for f in range(FRAMES)]
        ratios.append(steps[-1] / np.median(steps))
        likest = min([likest] + [np.abs(row[i] - row[j]).mean() for i, j in pairs(FRAMES)])
    tally.at_most('sheet: last step of the turn against the median step, worst row',
                  float(max(ratios)), 1.3)
    tally.at_least('sheet: mean difference of the two likest frames of a row', float(likest), 1)


def check_rims(tally, sprites, inside):
    rims = [[rim_of(shape) for shape in row] for row in inside]
    light = np.concatenate([lightness(sprites[k, f])[rims[k][f]]
                            for k in range(KINDS) for f in range(FRAMES)])
    rest = min(lightness(sprites[k, 0])[rims[k][0]].min() for k in range(KINDS))
    tally.at_most('sheet: share of rim pixels above L* 85, in per cent',
                  float((light > 85).mean() * 100), 1)
    tally.at_least('sheet: darkest rim pixel of all frames, L*', float(light.min()), 20)
    tally.at_least('sheet: darkest rim pixel at rest, L*', float(rest), 20)


def check_board(tally):
    board = load('Board.bmp')
    light = lightness(board)
    cells = light[:STRIP_TOP].reshape(8, CELL, 8, CELL).transpose(0, 2, 1, 3)
    means = cells.mean(axis=(2, 3))
    tally.at_least('board: darkest cell, mean L*', float(means.min()), 6)
    tally.at_most('board: lightest cell, mean L*', float(means.max()), 22)
    tally.at_most('board: spread of L* in the middle of a cell, worst',
                  float(cells[..., 8:-8, 8:-8].std(axis=(2, 3)).max()), 4)
    middle, between = cells[..., 8:-8, 8:-8].mean(), light[:STRIP_TOP, 63::64].mean()
    tally.at_least('board: lines between cells against their middles, in L*',
                   float(abs(middle - between)), 1)
    tally.equal('board: pixels of pure black', int((~board.any(axis=-1)).sum()), 0)
    check_strip(tally, board)


def check_strip(tally, board):
    left, top, right, bottom = BAR
    ratio = colour.contrast(colour.to_linear(board[STRIP_TOP:]), colour.to_linear(TEXT_GREEN))
    tally.at_least('strip: lowest contrast of the green text', float(ratio[TEXT_TOP - STRIP_TOP:]
                                                                    .min()), 7)
    inner = lightness(board[top + 1:bottom, left + 1:right])
    tally.at_most('strip: lightest pixel in the hollow of the clock bar, L*', float(inner.max()), 8)
    rim = lightness(board[top - 3:top, left:right]).max(axis=0)
    tally.at_least('strip: darkest place of the rim above the bar, L*', float(rim.min()), 20)


def check_marker(tally):
    frames = load('Target.bmp').reshape(CELL, MARKERS, CELL, 3).transpose(1, 0, 2, 3).astype(int)
    steps = [np.abs(frames[i] - frames[(i + 1) % MARKERS]).mean() for i in range(MARKERS)]
    likest = min(np.abs(frames[i] - frames[j]).mean() for i, j in pairs(MARKERS))
    shown = frames.any(axis=-1)
    tally.at_least('marker: mean difference of the two likest frames', float(likest), 1)
    tally.at_most('marker: last step against the median step', float(steps[-1] / np.median(steps)),
                  1.1)
    tally.equal('marker: pixels in the middle 46 by 46', int(shown[:, 9:55, 9:55].sum()), 0)
    tally.at_least('marker: pixels of the emptiest frame', int(shown.sum(axis=(1, 2)).min()), 400)
    sprites, inside = cut_sheet()
    seen = min((shown[0] & ~inside[k, f]).sum() / shown[0].sum()
               for k in range(KINDS) for f in range(FRAMES))
    tally.at_least('marker: least share seen around a gem', float(seen), 0.75)


def check_windows(tally):
    for scale, suffix in ((1, '.png'), (2, '@2x.png')):
        chooser = load('chooser' + suffix).astype(int)
        worst = 0
        for middle, height in DOTS:
            box = chooser[int((middle - height / 2) * scale):int((middle + height / 2) * scale),
                          DOT_LEFT * scale:DOT_RIGHT * scale]
            worst = max(worst, int(np.abs(box - DOT_GROUND).max()))
        tally.at_most('chooser%s: difference from the dots\' ground' % suffix, worst, 1)
        check_calm(tally, 'chooser' + suffix, chooser, BUTTON_STRIP, scale)
        check_calm(tally, 'learn' + suffix, load('learn' + suffix), OK_PLACE, scale)


def check_calm(tally, name, pixels, box, scale):
    left, top, right, bottom = (v * scale for v in box)
    tally.at_most(name + ': spread of L* under its buttons',
                  float(lightness(pixels[top:bottom, left:right]).std()), 5)


def check_icons(tally):
    for side in ICONS:
        with Image.open(os.path.join(IMAGES, 'icon%d.png' % side)) as image:
            alpha = np.asarray(image)[..., 3]
        corners = int(max(alpha[0, 0], alpha[0, -1], alpha[-1, 0], alpha[-1, -1]))
        tally.equal('icon%d.png: alpha of its corners' % side, corners, 0)
        tally.at_least('icon%d.png: share that is opaque, in per cent' % side,
                       float((alpha > 250).mean() * 100), 25)


def check_contents(tally):
    """What the pixels show; needs files of the right formats."""
    sprites, inside = cut_sheet()
    check_shapes(tally, sprites, inside)
    check_outlines(tally, inside)
    check_colours(tally, sprites, inside)
    check_turn(tally, sprites)
    check_rims(tally, sprites, inside)
    check_board(tally)
    check_marker(tally)
    check_windows(tally)
    check_icons(tally)


def main():
    tally = Tally()
    for check in (check_files, check_formats, check_contents):
        if not tally.failed:
            check(tally)
    print('%d passed, %d failed' % (tally.passed, tally.failed))
    return 1 if tally.failed else 0


if __name__ == '__main__':
    sys.exit(main())

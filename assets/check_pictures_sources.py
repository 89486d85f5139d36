#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Checks that the picture sources still make the shipped files, pixel for pixel, on a sample.

Makes the board, the marker, the buttons, the small icons and a few frames of
the gem sheet anew, in well under a minute.  Needs povray, fonts-urw-base35,
python3-numpy, python3-scipy and python3-pil.
"""
import concurrent.futures
import os
import shutil
import sys
import tempfile
from pathlib import Path

ROOT = os.path.normpath(os.path.join(os.path.dirname(os.path.abspath(__file__)), '..'))
IMAGES = os.path.join(ROOT, 'images')
sys.dont_write_bytecode = True

try:
    import numpy as np
    from PIL import Image
    from pictures import board, buttons, gem_sheet, icon, painting, target, tracer
except ImportError as missing:
    sys.exit('check_pictures_sources: missing python3-numpy, python3-scipy or python3-pil (%s)'
             % missing)

# A kind and a step of the turn each: at rest, near the edge, from behind.
SAMPLE = ((0, 0), (3, 4), (5, 8), (7, 13))


def require_tools():
    missing = [package for package, found in (
        ('povray', shutil.which(tracer.TRACER)),
        ('fonts-urw-base35', painting.FONT.exists())) if not found]
    if missing:
        sys.exit('check_pictures_sources: missing ' + ' '.join(missing))


def load(path):
    with Image.open(path) as image:
        return np.asarray(image)


def count_different(made, shipped):
    """Pixels that differ, or all of them if the sizes do."""
    if made.shape != shipped.shape:
        return made.shape[0] * made.shape[1]
    return int((made != shipped).any(axis=-1).sum())


def compare_files(folder):
    """(name, pixels that differ) for each file that lies in the folder."""
    return [(name, count_different(load(os.path.join(folder, name)),
                                   load(os.path.join(IMAGES, name))))
            for name in sorted(os.listdir(folder))]


def compare_frames(scratch):
    """(name, pixels that differ) for the sample of the gem sheet."""
    outcomes = []
    frames = [kind * gem_sheet.FRAMES + step for kind, step in SAMPLE]
    with concurrent.futures.ThreadPoolExecutor(2) as pool:
        list(pool.map(lambda frame: gem_sheet.trace_frames(scratch, frame, frame), frames))
    for (kind, step), frame in zip(SAMPLE, frames):
        for (scale, name), made in zip(gem_sheet.SHEETS, gem_sheet.make_sprites(scratch, frame)):
            side = gem_sheet.CELL * scale
            shipped = load(os.path.join(IMAGES, name))[kind * side:(kind + 1) * side,
                                                       step * side:(step + 1) * side]
            outcomes.append(('%s, kind %d, step %d' % (name, kind, step),
                             count_different(made, shipped)))
    return outcomes


def make_icons(scratch, folder):
    icon.trace_motif(scratch, 0)
    for side in icon.SMALL:
        painting.save(icon.make_icon(scratch, 0, side), folder / ('icon%d.png' % side))


def main():
    require_tools()
    with tempfile.TemporaryDirectory() as scratch, tempfile.TemporaryDirectory() as folder:
        scratch, folder = Path(scratch), Path(folder)
        board.build(scratch, folder)
        target.build(scratch, folder)
        buttons.build(scratch, folder)
        make_icons(scratch, folder)
        outcomes = compare_files(folder) + compare_frames(scratch)
    for name, different in outcomes:
        print('%-6s %-44s %8d   pixels that differ, none allowed'
              % ('FAILED' if different else 'ok', name, different))
    failed = sum(different > 0 for _, different in outcomes)
    print('%d passed, %d failed' % (len(outcomes) - failed, failed))
    return 1 if failed else 0


if __name__ == '__main__':
    sys.exit(main())

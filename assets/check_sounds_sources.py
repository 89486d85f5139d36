#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Checks that the shipped sounds are what their sources make.

    assets/check_sounds_sources.py [--music]

Rebuilds every effect and compares it byte for byte. A piece carries the name of the
performance that it was made from, which must be what its source makes today; with
--music the pieces are rebuilt and compared as well, which needs what build-sounds
needs for them, a large soundfont among it. Every shipped file must have a source, and
every source its file.
"""
import argparse
import filecmp
import subprocess
import sys
import tempfile
from pathlib import Path

from check_sounds import probe
from criteria import judge
from music import perform, piece

ASSETS = Path(__file__).resolve().parent
ROOT = ASSETS.parent


def pair(folder, pattern, ending):
    """Return the shipped files that have a source, and the criterion that all have."""
    wanted = {path.stem + ending for path in (ASSETS / folder).glob(pattern)}
    shipped = {path.name for path in (ROOT / folder).glob("*")}
    odd = " ".join(sorted(wanted ^ shipped)) or "none"
    paths = [ROOT / folder / name for name in sorted(wanted & shipped)]
    return paths, (f"{folder}: files without a partner", odd, "none")


def compare(paths, scratch):
    """Rebuild these files and compare each with the shipped one."""
    command = [ASSETS / "build-sounds", "--out", scratch, *(path.stem for path in paths)]
    subprocess.run(command, check=True)
    for path in paths:
        same = filecmp.cmp(path, Path(scratch) / path.relative_to(ROOT), shallow=False)
        yield f"{path.stem}: rebuilt", "the same" if same else "differs", "the same"


def check_performance(path):
    """Check that a piece was made from its source as it stands."""
    work = piece.read_piece(ASSETS / "music" / (path.stem + ".piece"))
    name = perform.perform_piece(work).identify(work)
    return f"{path.stem}: performance", probe(path)["tags"]["comment"], name


def main():
    parser = argparse.ArgumentParser(description="Check the shipped sounds against their sources.")
    parser.add_argument("--music", action="store_true", help="rebuild the pieces as well")
    music = parser.parse_args().music
    effects, all_effects = pair("sounds", "*.sco", ".wav")
    pieces, all_pieces = pair("music", "*.piece", ".mp3")
    with tempfile.TemporaryDirectory() as scratch:
        rebuilt = compare(effects + pieces * music, scratch)
        return judge([all_effects, all_pieces, *rebuilt, *map(check_performance, pieces)])


if __name__ == "__main__":
    sys.exit(main())

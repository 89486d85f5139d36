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

from check_sounds import read_tags, report, results
from music import perform, piece

ASSETS = Path(__file__).resolve().parent
ROOT = ASSETS.parent


def pair(folder, pattern, ending):
    """Check that sources and shipped files belong together; return the files that do."""
    wanted = {path.stem + ending for path in (ASSETS / folder).glob(pattern)}
    shipped = {path.name for path in (ROOT / folder).glob("*")}
    odd = " ".join(sorted(wanted ^ shipped)) or "none"
    report(folder, "files without a partner", odd, "none", wanted and wanted == shipped)
    return [ROOT / folder / name for name in sorted(wanted & shipped)]


def compare(paths, scratch):
    """Rebuild these files and compare each with the shipped one."""
    command = [ASSETS / "build-sounds", "--out", scratch, *(path.stem for path in paths)]
    done = subprocess.run(command, capture_output=True, text=True, check=False)
    report("build-sounds", "ends well", done.returncode, 0, done.returncode == 0)
    print(done.stderr, end="")
    for path in paths:
        built = Path(scratch) / path.relative_to(ROOT)
        same = built.exists() and filecmp.cmp(path, built, shallow=False)
        report(path.stem, "rebuilt", "the same" if same else "differs", "the same", same)


def check_performance(path):
    """Check that a piece was made from its source as it stands."""
    work = piece.read_piece(ASSETS / "music" / (path.stem + ".piece"))
    name, carried = perform.perform_piece(work).identify(work), read_tags(path).get("comment")
    report(path.stem, "performance", str(carried), name, carried == name)


def main():
    parser = argparse.ArgumentParser(description="Check the shipped sounds against their sources.")
    parser.add_argument("--music", action="store_true", help="rebuild the pieces as well")
    effects, pieces = pair("sounds", "*.sco", ".wav"), pair("music", "*.piece", ".mp3")
    chosen = effects + pieces if parser.parse_args().music else effects
    with tempfile.TemporaryDirectory() as scratch:
        compare(chosen, scratch)
    for path in pieces:
        check_performance(path)
    print(f"{results['passed']} passed, {results['failed']} failed")
    return 1 if results["failed"] else 0


if __name__ == "__main__":
    sys.exit(main())

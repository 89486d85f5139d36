#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Checks that the shipped sounds are what their sources make.

Rebuilds every effect, every MIDI file and the shortest MP3 file into a scratch
folder and compares them byte for byte with the shipped ones. Every shipped file
must have a source, and every source its file.
"""
import filecmp
import pathlib
import shutil
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parents[2]
BUILD = ROOT / "assets/build-sounds"
PACKAGES = {"csound": "csound", "lame": "lame"}

results = {"passed": 0, "failed": 0}


def report(what, good, told):
    """Print one criterion and count it."""
    results["passed" if good else "failed"] += 1
    print(f"{'ok  ' if good else 'FAIL'}  {what:28} {told}")


def check_pairs():
    """Check that sources and shipped files belong together one to one."""
    for folder, pattern in (("sounds", "*.sco"), ("music", "*.piece")):
        sources = {path.stem for path in (ROOT / "assets" / folder).glob(pattern)}
        shipped = [path.stem for path in (ROOT / folder).glob("*")]
        odd = sorted(sources ^ set(shipped)) + sorted({n for n in shipped if shipped.count(n) > 1})
        report(f"{folder}: files and sources", sources and not odd,
               f"{len(shipped)} files, {len(sources)} sources, unpaired: {odd or 'none'}")


def choose_sample():
    """Return the shipped files to rebuild."""
    songs = sorted((ROOT / "music").glob("*.mp3"), key=lambda path: path.stat().st_size)
    scores = sorted((ROOT / "music").glob("*.mid"))
    return sorted((ROOT / "sounds").glob("*.wav")) + scores + songs[:1]


def compare_sample(sample, scratch):
    """Rebuild the sample and compare each file."""
    done = subprocess.run([BUILD, "--out", scratch, *(path.stem for path in sample)],
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
    report("the build", done.returncode == 0, done.stdout.strip()[-300:] or "no message")
    for path in sample:
        built = pathlib.Path(scratch) / path.relative_to(ROOT)
        same = built.exists() and filecmp.cmp(path, built, shallow=False)
        told = "the same" if same else "differ from the rebuilt file"
        report(str(path.relative_to(ROOT)), same, f"{path.stat().st_size} bytes {told}")


def main():
    missing = [f"{tool}: install {package}" for tool, package in PACKAGES.items()
               if not shutil.which(tool)]
    if missing:
        report("tools missing", False, "; ".join(missing))
    else:
        check_pairs()
        with tempfile.TemporaryDirectory() as scratch:
            compare_sample(choose_sample(), scratch)
    print(f"{results['passed']} passed, {results['failed']} failed")
    return 1 if results["failed"] else 0


if __name__ == "__main__":
    sys.exit(main())

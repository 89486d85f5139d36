#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Measures the running program: time to the chooser and to the first frame, what it costs the
machine at rest, paused and minimised, and frame times at rest and over track changes of each type
of file. Prints what it saw, as ratios to a frame of 21 ms where that is what matters; it judges
nothing."""

import argparse
import shutil
import subprocess
import sys
import time
from pathlib import Path

import numpy as np

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "tests/desktop"))
from desktop import CHOOSER, MAIN, Desktop, Game, wait_for
from load import measure_load

FRAME_MS = 21.0
TRACK_SECONDS = 2.0
WATCHED_SECONDS = 10.0
SETTLING_SECONDS = 20.0  # until the threads that opened the sounds have gone


class FrameTimes:
    """The frames that the program has begun since this was made, in milliseconds."""

    def __init__(self, path):
        self.path = path
        self.skip = self._count()

    def _count(self):
        return len(self.path.read_text().splitlines()) if self.path.exists() else 0

    def each(self):
        """By frame: when it began, in nanoseconds of CLOCK_MONOTONIC; how long it lasted and how
        long its thread ran, in milliseconds; and its page faults that waited for the disk."""
        lines = self.path.read_text().splitlines()[self.skip :]
        stamps = np.array(
            [[np.nan] * 3 if line == "-" else line.split() for line in lines], dtype=float
        )
        frames = np.hstack([stamps[:-1, :1], np.diff(stamps, axis=0) / (1e6, 1e3, 1)])
        return frames[np.isfinite(frames).all(axis=1)]

    def describe(self):
        times = self.each()[:, 1]
        half, most = np.percentile(times, (50, 99)) / FRAME_MS
        return (
            f"{len(times)} frames, median {half:.3f}, 99 % up to {most:.3f} of 21 ms, "
            f"longest {times.max():.1f} ms"
        )


def with_frame_log(game, library):
    log = game.desktop.folder / "frames.log"
    game.env.update(LD_PRELOAD=library, FRAME_LOG=str(log))
    return log


def measure_start(installed):
    with Desktop() as desktop:
        game = Game(desktop, installed)
        for run in ("first", "second", "third"):
            start = time.monotonic()
            game.start()
            wait_for("the chooser", lambda: desktop.windows(CHOOSER), step=0.002)
            shown = time.monotonic()
            time.sleep(0.5)
            desktop.key("Return")
            start_pressed = time.monotonic()
            wait_for("the main window", lambda: desktop.windows(MAIN), step=0.002)
            wait_for("the first frame", lambda: np.asarray(game.grab()).any(), step=0.002)
            waited = time.monotonic() - start_pressed
            print(f"{run} start: chooser after {shown - start:.2f} s, board {waited:.2f} s later")
            game.process.kill()
            game.process.wait()


def measure_rest(installed, library):
    """One row for each way in which the game can rest, first without music and then with it."""
    for music in ("no music", "music"):
        with Desktop() as desktop:
            game = Game(desktop, installed)
            log = with_frame_log(game, library)
            if music == "no music":
                shutil.rmtree(game.folder / "music")
            game.play("Relaxed")
            time.sleep(SETTLING_SECONDS)
            frames = FrameTimes(log)
            measure_load(game.process.pid, f"{music}, at rest")
            print(f"  {frames.describe()}")
            desktop.key("F4")
            time.sleep(SETTLING_SECONDS)
            measure_load(game.process.pid, f"{music}, paused")
            desktop.key("F4")
            desktop.run("xdotool", "windowminimize", str(desktop.window(MAIN)))
            time.sleep(SETTLING_SECONDS)
            measure_load(game.process.pid, f"{music}, minimised")


def make_tracks(folder, ending):
    """Two short tracks of a type."""
    for number, hertz in enumerate((330, 440)):
        track = folder / f"track{number}{ending}"
        if ending == ".mid":
            track.write_bytes(midi_notes(60 + number))
        else:
            tone = f"sine=frequency={hertz}:duration={TRACK_SECONDS}"
            command = ("ffmpeg", "-v", "error", "-f", "lavfi", "-i", tone, "-ac", "2", track)
            subprocess.run(command, check=True)


def midi_notes(pitch):
    """Standard MIDI File, format 0 (MIDI 1.0, MIDI Manufacturers Association): four beats, two a
    second."""
    notes = bytes([0, 0x90, pitch, 100, 0x60, 0x80, pitch, 0]) * 4 + b"\0\xff\x2f\0"
    return b"MThd\0\0\0\6\0\0\0\1\0\x60MTrk" + len(notes).to_bytes(4, "big") + notes


def measure_track_changes(installed, library):
    for ending in (".wav", ".mp3", ".wma", ".mid"):
        with Desktop() as desktop:
            game = Game(desktop, installed)
            log = with_frame_log(game, library)
            music = game.folder / "music"
            shutil.rmtree(music)
            music.mkdir()
            make_tracks(music, ending)
            game.play("Relaxed")
            frames = FrameTimes(log)
            time.sleep(WATCHED_SECONDS)
            print(f"track changes {ending}: {frames.describe()}")


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("folder", help="an installed game")
    parser.add_argument("frame_log", help="the library libframe_log.so")
    options = parser.parse_args()
    measure_start(options.folder)
    measure_rest(options.folder, options.frame_log)
    measure_track_changes(options.folder, options.frame_log)


if __name__ == "__main__":
    main()

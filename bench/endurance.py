#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Plays the real program for a long time, by mouse and keys from outside: all four modes, all
windows, pauses, hints and names of high scores, with sound and music on. Prints what the program
held over each five minutes, how long its frames were, and which of the long ones the machine
itself stalled: a process that does nothing but sleep was late at the same time."""

import argparse
import collections
import contextlib
import itertools
import os
import random
import sys
import time
from pathlib import Path
from statistics import median

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "tests/desktop"))
from desktop import CHOOSER, MAIN, MODES, Desktop, Game, swaps
from load import status_of
from measure import FrameTimes, with_frame_log
from play_by_keys import is_empty

LONG_FRAME_MS = 60
TOLD_EVERY_MINUTES = 5
GAME_MINUTES = 3  # a game that lasts longer is given up for a new one
OPTIONS_MENU = (85, -9)  # from the board's corner
VOLUME_STEPS = ("Up", "Down", "Page_Up", "Page_Down")
WINDOW_KEYS = (
    ("ctrl+s", "High Scores..."),
    ("F1", "Learn to Play..."),
    ("ctrl+a", "About Glimmerfall"),
)

Held = collections.namedtuple("Held", "minute memory files threads music")


class Holdings:
    """What a process holds over time: resident memory in kB, open files and threads. What plays
    just now needs more or less of them, so stretches of some minutes are compared, and in the end
    those in which the same type of music played."""

    def __init__(self, process):
        self.folder = Path(f"/proc/{process.pid}")
        self.seen = []

    def look(self, minute):
        status = status_of(self.folder)
        files = self.open_files()
        music = {Path(file).suffix for file in files if "/music/" in file}
        self.seen.append(
            Held(
                minute,
                int(status["VmRSS"].split()[0]),
                len(files),
                int(status["Threads"]),
                music.pop() if len(music) == 1 else None,
            )
        )

    def open_files(self):
        """The paths, as far as they are still open when they are looked at."""
        files = []
        for link in (self.folder / "fd").iterdir():
            with contextlib.suppress(FileNotFoundError):
                files.append(os.readlink(link))
        return files

    def tell(self, first, last):
        names = ("kB of memory", "files", "threads")
        columns = list(zip(*[held[1:4] for held in self.seen if first <= held.minute <= last]))
        print(
            f"minutes {first:.0f} to {last:.0f}: "
            + ", ".join(
                f"{median(values):.0f} {name} ({min(values)} to {max(values)})"
                for name, values in zip(names, columns)
            ),
            flush=True,
        )

    def compare(self):
        """The memory while a type of music was first heard after some minutes, and while last."""
        settled = [held for held in self.seen if held.minute >= TOLD_EVERY_MINUTES and held.music]
        for music in sorted({held.music for held in settled}):
            heard = [held for held in settled if held.music == music]
            first = [held for held in heard if held.minute <= heard[0].minute + TOLD_EVERY_MINUTES]
            last = [held for held in heard if held.minute >= heard[-1].minute - TOLD_EVERY_MINUTES]
            early, late = (median(held.memory for held in part) for part in (first, last))
            told = ", ".join(
                f"{memory:.0f} kB in minutes {part[0].minute:.0f} to {part[-1].minute:.0f}"
                for memory, part in ((early, first), (late, last))
            )
            print(f"while {music} plays: {told}, {late / early - 1:+.1%}")


class Stalls:
    """The moments at which the machine let nobody run, in nanoseconds of CLOCK_MONOTONIC: on each
    processor a process sleeps for 5 ms again and again and writes down when it woke 15 ms late or
    later."""

    WATCH = """if True:
        import os, sys, time
        os.sched_setaffinity(0, {int(sys.argv[1])})
        last = time.monotonic_ns()
        while True:
            time.sleep(0.005)
            now = time.monotonic_ns()
            if now - last > 20_000_000: print(last, now, flush=True)
            last = now
        """

    def __init__(self, desktop):
        self.paths = []
        for processor in os.sched_getaffinity(0):
            self.paths.append(desktop.folder / f"stalls{processor}.log")
            with open(self.paths[-1], "w") as log:
                desktop.spawn(sys.executable, "-c", self.WATCH, str(processor), stdout=log)

    def within(self, start, end):
        """The most milliseconds from `start` to `end` for which one of the processors stood."""
        return max(
            overlap([map(int, line.split()) for line in path.read_text().splitlines()], start, end)
            for path in self.paths
        )


def overlap(spans, start, end):
    """Milliseconds from `start` to `end` that lie within the spans, all in nanoseconds."""
    return sum(max(0, min(end, b) - max(start, a)) for a, b in spans) / 1e6


class Player:
    def __init__(self, desktop, game):
        self.desktop, self.game = desktop, game
        self.swaps = 0
        self.games, self.windows = collections.Counter(), collections.Counter()
        self.modes = itertools.cycle(MODES)
        self.choosing = []  # spans in which the chooser held the game, in nanoseconds

    def new_game(self, first=False):
        start = time.monotonic_ns()
        if not first:
            self.game.activate()
            self.desktop.key("F2")
        time.sleep(0.3)
        if not self.desktop.windows(CHOOSER):
            return False
        mode = next(self.modes)
        self.game.choose(mode)
        self.choosing.append((start, time.monotonic_ns()))
        self.games[mode] += 1
        self.until = time.monotonic() + GAME_MINUTES * 60
        return True

    def close(self, title):
        for window in self.desktop.windows(title):
            self.desktop.run("xdotool", "windowactivate", "--sync", str(window), check=False)
            self.desktop.key("Escape")
            self.windows[title] += 1

    def open_windows(self):
        for keys, title in random.sample(WINDOW_KEYS, len(WINDOW_KEYS)):
            self.game.activate()
            self.desktop.key(keys)
            time.sleep(0.3)
            self.close(title)
        self.open_options()
        self.game.activate()

    def open_options(self):
        """Opens the options, moves the music's volume and closes them."""
        left, top = self.game.place()
        self.desktop.click(left + OPTIONS_MENU[0], top + OPTIONS_MENU[1])
        time.sleep(0.3)
        for window in self.desktop.windows("Options Menu"):
            x, y, _, _ = self.desktop.place(window)
            self.desktop.click(x + 30, y + 90)
            self.desktop.key(random.choice(VOLUME_STEPS))
        self.close("Options Menu")

    def enter_name(self):
        if not self.desktop.windows("Login"):
            return
        self.desktop.run(
            "xdotool", "windowactivate", "--sync", str(self.desktop.windows("Login")[0])
        )
        self.desktop.type("Endurance")
        self.desktop.key("Return")
        time.sleep(0.3)
        self.close("High Scores...")
        self.game.activate()

    def pause(self):
        self.desktop.key("F4")
        time.sleep(0.5)
        self.desktop.key("F4")

    def step(self):
        """One thing that a player might do now."""
        self.enter_name()
        if is_empty(self.game):
            self.game.click(0)  # on to the next level, if it was one
            time.sleep(1.5)
            if is_empty(self.game):
                self.new_game()
            return
        if time.monotonic() > self.until and self.new_game():
            return
        kinds = self.game.sprites.read(self.game.grab())
        if None in kinds:
            time.sleep(0.1)
            return
        dice = random.random()
        if dice < 0.02:
            self.open_windows()
        elif dice < 0.04:
            self.pause()
        elif dice < 0.06:
            self.desktop.key("F3")
        else:
            legal = list(swaps(kinds))
            if legal:  # a game that is lost for want of a move stands still for a frame
                (self.game.swap if dice < 0.8 else self.game.drag)(*random.choice(legal))
                self.swaps += 1


def tell_long_frames(frames, stalls, choosing):
    """One line for each frame over the limit, with what held it up; none if the chooser did."""
    told = held = 0
    start = frames.each()[0, 0]
    for begin, length, ran, faults in frames.each():
        if length <= LONG_FRAME_MS:
            continue
        end = begin + length * 1e6
        if overlap(choosing, begin, end) > 0:
            held += 1
            continue
        told += 1
        print(
            f"minute {(begin - start) / 60e9:.1f}, a frame of {length:.0f} ms: its thread ran for "
            f"{ran:.0f} ms, waited for {faults:.0f} pages from disk, and a processor stood for "
            f"{stalls.within(begin, end):.0f} ms"
        )
    print(f"frames over {LONG_FRAME_MS} ms: {told}, and {held} that the chooser held")


def restart_sound(desktop):
    desktop.sound_server.kill()
    desktop.sound_server.wait()
    time.sleep(5)
    desktop.start_sound()
    print("the sound server was killed and started anew", flush=True)


def watch(player, process, minutes, kill_sound):
    start = time.monotonic()
    held, told = Holdings(process), 0
    while (passed := (time.monotonic() - start) / 60) < minutes:
        assert process.poll() is None, f"the program ended with {process.returncode}"
        player.step()
        held.look(passed)
        if passed >= told + TOLD_EVERY_MINUTES:
            held.tell(told, told + TOLD_EVERY_MINUTES)
            told += TOLD_EVERY_MINUTES
        if kill_sound and passed >= minutes / 2:
            kill_sound = False
            restart_sound(player.desktop)
    held.tell(told, minutes)
    held.compare()
    print(f"{dict(player.games)} games, {player.swaps} swaps, {dict(player.windows)} windows")


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("folder", help="an installed game")
    parser.add_argument("frame_log", help="the library libframe_log.so")
    parser.add_argument("minutes", type=float)
    parser.add_argument("--kill-sound", action="store_true", help="end the sound server half-way")
    options = parser.parse_args()
    seed = time.time_ns() % 1_000_000
    print(f"seed {seed}")
    random.seed(seed)
    with Desktop() as desktop:
        game = Game(desktop, options.folder)
        log = with_frame_log(game, options.frame_log)
        game.start()
        desktop.window(CHOOSER)
        player = Player(desktop, game)
        player.new_game(first=True)
        desktop.window(MAIN)
        game.ready()
        frames, stalls = FrameTimes(log), Stalls(desktop)
        watch(player, game.process, options.minutes, options.kill_sound)
        print(frames.describe())
        tell_long_frames(frames, stalls, player.choosing)
        game.activate()
        desktop.key("ctrl+q")
        print(f"exit code {game.ended()}")


if __name__ == "__main__":
    main()

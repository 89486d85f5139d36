#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Plays the real program for a long time, by mouse and keys from outside: all four modes, all
windows, pauses, hints and names of high scores, with sound and music on. Prints what the program
held after a while and at the end, and how long its frames were.

Usage: endurance.py FOLDER FRAME_LOG MINUTES [--kill-sound]"""

import argparse
import random
import time
from pathlib import Path

import numpy as np

from desktop import CHOOSER, MAIN, MODES, Desktop, Game, legal_swap
from measure import FrameTimes, with_frame_log

SETTLED_MINUTES = 5  # what the program holds by then is what it is measured by
LONG_FRAME_MS = 60
GAME_MINUTES = 3  # a game that lasts longer is given up for a new one
WINDOW_KEYS = (("ctrl+s", "High Scores..."), ("F1", "Learn to Play..."), ("ctrl+a", "About Glimmerfall"))


class Held:
    """What a process holds: resident memory in kB, open files and threads."""

    def __init__(self, process):
        folder = Path(f"/proc/{process.pid}")
        status = dict(line.split(":", 1) for line in (folder / "status").read_text().splitlines())
        self.memory = int(status["VmRSS"].split()[0])
        self.threads = int(status["Threads"])
        self.files = len(list((folder / "fd").iterdir()))

    def __str__(self):
        return f"{self.memory} kB, {self.files} files, {self.threads} threads"


class Player:
    def __init__(self, desktop, game):
        self.desktop, self.game = desktop, game
        self.games = self.swaps = self.windows = 0

    def new_game(self, first=False):
        if not first:
            self.game.activate()
            self.desktop.key("F2")
        time.sleep(0.3)
        if not self.desktop.windows(CHOOSER):
            return False
        self.game.choose(random.choice(list(MODES)))
        self.games += 1
        self.until = time.monotonic() + GAME_MINUTES * 60
        return True

    def close(self, title):
        for window in self.desktop.windows(title):
            self.desktop.run("xdotool", "windowactivate", "--sync", str(window), check=False)
            self.desktop.key("Escape")
            self.windows += 1

    def open_windows(self):
        for keys, title in random.sample(WINDOW_KEYS, len(WINDOW_KEYS)):
            self.game.activate()
            self.desktop.key(keys)
            time.sleep(0.3)
            self.close(title)
        self.game.activate()

    def enter_name(self):
        if not self.desktop.windows("Login"):
            return
        self.desktop.run("xdotool", "windowactivate", "--sync", str(self.desktop.windows("Login")[0]))
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
        picture = self.game.grab()
        if self.game.sprites.is_empty(picture):
            self.game.click(0)  # on to the next level, if it was one
            time.sleep(1.5)
            if self.game.sprites.is_empty(self.game.grab()):
                self.new_game()
            return
        if time.monotonic() > self.until and self.new_game():
            return
        kinds = self.game.sprites.read(picture)
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
            a, b = legal_swap(kinds)
            (self.game.swap if dice < 0.8 else self.game.drag)(a, b)
            self.swaps += 1


def watch(player, frames, process, minutes, kill_sound):
    start = time.monotonic()
    settled = None
    while time.monotonic() - start < minutes * 60:
        assert process.poll() is None, f"the program ended with {process.returncode}"
        player.step()
        passed = (time.monotonic() - start) / 60
        if settled is None and passed >= min(SETTLED_MINUTES, minutes / 2):
            settled = Held(process)
            print(f"after {passed:.1f} minutes: {settled}", flush=True)
        if kill_sound and passed >= minutes / 2:
            kill_sound = False
            player.desktop.sound_server.kill()
            player.desktop.sound_server.wait()
            time.sleep(5)
            player.desktop.start_sound()
            print("the sound server was killed and started anew", flush=True)
    end = Held(process)
    times = frames.between()
    print(f"at the end: {end}; memory {100 * (end.memory / settled.memory - 1):+.1f} %")
    print(f"{player.games} games, {player.swaps} swaps, {player.windows} windows; {frames.describe()}")
    print(f"frames over {LONG_FRAME_MS} ms: {int((times > LONG_FRAME_MS).sum())}")


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("folder")
    parser.add_argument("frame_log")
    parser.add_argument("minutes", type=float)
    parser.add_argument("--kill-sound", action="store_true")
    options = parser.parse_args()
    seed = time.time_ns() % 1_000_000
    print(f"seed {seed}")
    random.seed(seed)
    with Desktop() as desktop:
        log = with_frame_log(desktop, options.frame_log)
        game = Game(desktop, options.folder)
        game.start()
        desktop.window(CHOOSER)
        player = Player(desktop, game)
        player.new_game(first=True)
        desktop.window(MAIN)
        game.dealt()
        watch(player, FrameTimes(log), game.process, options.minutes, options.kill_sound)
        game.activate()
        desktop.key("ctrl+q")
        print(f"exit code {game.ended()}")


if __name__ == "__main__":
    main()

#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Plays whole games of the real program with keys alone, from the chooser to the high scores: in
each mode named until the clock has run out, in Relaxed until no move is left (up to an hour). There
each move is the one that leaves the fewest others."""

import argparse
import collections
import sys
import time
from pathlib import Path

import numpy as np

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "tests/desktop"))
from desktop import BOARD, CHOOSER, MAIN, MODES, Desktop, Game, swaps

# Won before the hands are taken off.
LEVELS = {"Normal": 1, "Frantic": 0, "Marathon": 0, "Relaxed": 1000}
FRANTIC_SWAPS = 8
NAME = "Keys Alone"


def is_empty(game):
    """Whether no gem stands or flies on the board; the message covers its middle."""
    rows = [*range(192), *range(448, 512)]
    picture = np.asarray(game.grab()).astype(np.int16)
    return np.abs(picture - game.sprites.board)[rows].max() <= 24


def moves_left(kinds, a, b):
    """A guess at the moves behind this one: those of the board with the two gems exchanged."""
    kinds = list(kinds)
    kinds[a], kinds[b] = kinds[b], kinds[a]
    return len(list(swaps(kinds)))


class KeyPlayer:
    def __init__(self, desktop, game, mode):
        self.desktop, self.game, self.mode = desktop, game, mode
        self.swaps = self.levels = 0

    def wants_to_play(self):
        return (
            self.levels < LEVELS[self.mode]
            or self.mode == "Marathon"
            or (self.mode == "Frantic" and self.swaps < FRANTIC_SWAPS)
        )

    def choose(self):
        self.desktop.focused(CHOOSER)
        self.desktop.key("Tab", "Tab", "space", *["Down"] * list(MODES).index(self.mode), "Return")
        self.desktop.gone(CHOOSER)
        self.game.ready()

    def swap(self, a, b):
        """Goes to the cell from the corner, picks it and swaps it with its neighbour."""
        arrow = {1: "Right", -1: "Left", BOARD: "Down", -BOARD: "Up"}[b - a]
        way = ["Right"] * (a % BOARD) + ["Down"] * (a // BOARD)
        self.desktop.key("Home", "Page_Up", *way, "Return", arrow)

    def step(self):
        kinds = self.game.sprites.read(self.game.grab())
        moves = [] if None in kinds else list(swaps(kinds))
        if not moves or not self.wants_to_play():
            time.sleep(0.1)
            return
        self.swap(*min(moves, key=lambda move: moves_left(kinds, *move)))
        self.swaps += 1
        time.sleep(0.4)

    def went_on(self):
        """Enter leads from a won level to the next board, and from a lost game nowhere."""
        time.sleep(1)
        self.desktop.key("Return")
        time.sleep(1)
        return not is_empty(self.game)

    def play(self):
        while True:
            self.step()
            if not is_empty(self.game):
                continue
            if self.enter_name() or not self.went_on():
                break
            self.levels += 1
        print(f"{self.mode}: {self.swaps} swaps, {self.levels} levels won", flush=True)

    def enter_name(self):
        """Whether the game asked for a name; it is typed, and the table closed again."""
        time.sleep(1)
        if not self.desktop.windows("Login"):
            return False
        self.desktop.focused("Login")
        self.desktop.type(NAME)
        self.desktop.key("Return")
        self.desktop.focused("High Scores...")
        self.desktop.key("Return")
        self.desktop.gone("High Scores...")
        self.desktop.focused(MAIN)
        return True


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("folder", help="an installed game")
    parser.add_argument("modes", nargs="+", choices=MODES)
    parser.add_argument("--scale", type=float)
    options = parser.parse_args()
    with Desktop(scale=options.scale) as desktop:
        desktop.move(2, 2)
        game = Game(desktop, options.folder).start()
        for number, mode in enumerate(options.modes):
            if number > 0:
                desktop.key("F2")
            player = KeyPlayer(desktop, game, mode)
            player.choose()
            player.play()
        names = collections.Counter(
            path.read_text().strip() for path in game.folder.glob("scorename*1.gwk")
        )
        print(f"first places: {dict(names)}")
        desktop.key("ctrl+q")
        print(f"exit code {game.ended()}")


if __name__ == "__main__":
    main()

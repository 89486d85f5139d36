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

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "tests/desktop"))
from desktop import MAIN, MODES, Desktop, Game, legal_swaps, wait_for

# Won before the hands are taken off.
LEVELS = {"Normal": 1, "Frantic": 0, "Marathon": 0, "Relaxed": 1000}
FRANTIC_SWAPS = 8
NAME = "Keys Alone"


def moves_left(kinds, a, b):
    """A guess at the moves behind this one: those of the board with the two gems exchanged."""
    kinds = list(kinds)
    kinds[a], kinds[b] = kinds[b], kinds[a]
    return len(legal_swaps(kinds))


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

    def board_is_empty(self):
        return self.game.sprites.is_empty(self.game.grab())

    def step(self):
        kinds = self.game.sprites.read(self.game.grab())
        moves = [] if None in kinds else legal_swaps(kinds)
        if not moves or not self.wants_to_play():
            time.sleep(0.1)
            return
        self.game.swap_by_keys(*min(moves, key=lambda move: moves_left(kinds, *move)))
        self.swaps += 1
        time.sleep(0.4)

    def went_on(self):
        """Enter leads from a won level to the next board, and from a lost game nowhere."""
        time.sleep(1)
        self.desktop.key("Return")
        time.sleep(1)
        return not self.board_is_empty()

    def play(self):
        while True:
            self.step()
            if not self.board_is_empty():
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
        wait_for("the name to take keys", lambda: self.desktop.active() == "Login")
        self.desktop.type(NAME)
        self.desktop.key("Return")
        wait_for("the high scores to take keys", lambda: self.desktop.active() == "High Scores...")
        self.desktop.key("Return")
        wait_for("the high scores to go", lambda: not self.desktop.windows("High Scores..."))
        wait_for("the board to take keys", lambda: self.desktop.active() == MAIN)
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
            game.choose_by_keys(mode)
            game.dealt()
            KeyPlayer(desktop, game, mode).play()
        names = collections.Counter(
            path.read_text().strip() for path in game.folder.glob("scorename*1.gwk")
        )
        print(f"first places: {dict(names)}")
        desktop.key("ctrl+q")
        print(f"exit code {game.ended()}")


if __name__ == "__main__":
    main()

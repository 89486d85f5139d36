#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Plays Relaxed from what a screen reader is told, with keys alone and without a look at the
screen, and prints what was said. It listens as a reader does: to the names of what gets the focus
and of the notifications that show. Only for the proof is the board that was heard compared with
the picture.

Needs the packages python3-pyatspi, at-spi2-core and dbus."""

import argparse
import os
import re
import sys
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "tests/desktop"))
from desktop import BOARD, Desktop, Game, legal_swap, wait_for

GEMS = (
    "white circle",
    "green rectangle",
    "orange diamond",
    "red triangle",
    "purple oval",
    "blue drop",
    "yellow star",
    "pink heart",
)
CELL_NAME = r"(.*), column (\d), row (\d)"
ARROWS = {"Left": -1, "Right": 1, "Up": -BOARD, "Down": BOARD}
REST_SECONDS = 5


class Ear:
    """What a reader would speak, in order; and the fingers that press keys meanwhile."""

    def __init__(self, desktop):
        # pylint: disable-next=import-outside-toplevel
        import pyatspi  # here, since it connects to the session that the program runs in

        self.pyatspi, self.desktop = pyatspi, desktop
        self.waiting, self.loud = [], True
        pyatspi.Registry.registerEventListener(
            self.take, "object:state-changed:focused", "object:state-changed:showing"
        )

    def take(self, event):
        spoken = event.type == "object:state-changed:focused" or (
            event.source.getRole() == self.pyatspi.ROLE_NOTIFICATION
        )
        if spoken and event.detail1:
            self.waiting.append(event.source.name)

    def listen(self):
        """All words that have come and were not yet heard."""
        # pylint: disable-next=import-outside-toplevel
        from gi.repository import GLib

        while GLib.MainContext.default().iteration(False):
            pass
        words, self.waiting = self.waiting, []
        return words

    def hear(self, pattern):
        """The match of the next words that `pattern` finds; those before it are heard as well."""

        def found():
            words = self.listen()
            while words:
                spoken = words.pop(0)
                self.say(f"    {spoken}")
                if match := re.search(pattern, spoken):
                    self.waiting = words + self.waiting
                    return match
            return None

        return wait_for(f"the words {pattern!r}", found, step=0.005)

    def press(self, key):
        self.say(key)
        self.desktop.key(key)

    def say(self, line):
        if self.loud:
            print(line, flush=True)

    def find(self, name):
        """The first thing of this name in the program's tree."""
        # pylint: disable-next=no-value-for-parameter
        program = next(p for p in self.pyatspi.Registry.getDesktop(0) if p.name == "Glimmerfall")
        return self.pyatspi.findDescendant(program, lambda thing: thing.name == name)


class Listener:
    """A player who hears."""

    def __init__(self, ear):
        self.ear, self.at = ear, None

    def start(self):
        self.ear.hear("^Start$")
        for key, words in (
            ("Tab", "Learn to Play"),
            ("Tab", "Normal"),
            ("Down", "Frantic"),
            ("Down", "Marathon"),
            ("Down", "Relaxed"),
        ):
            self.ear.press(key)
            self.ear.hear(f"^{words}$")
        self.ear.press("Return")
        self.ear.hear("^Level 1, 17 matches left$")
        self.go("Right", 1)

    def go(self, key, there):
        """Presses a key and hears the kind of the cell `there`."""
        self.ear.press(key)
        while True:
            gem, column, row = self.ear.hear(CELL_NAME).groups()
            if int(column) - 1 + BOARD * (int(row) - 1) == there:
                self.at = there
                return GEMS.index(gem)

    def go_to(self, cell):
        while self.at % BOARD != cell % BOARD:
            key = "Right" if self.at % BOARD < cell % BOARD else "Left"
            self.go(key, self.at + ARROWS[key])
        while self.at != cell:
            key = "Down" if self.at < cell else "Up"
            self.go(key, self.at + ARROWS[key])

    def read_board(self):
        """The kinds of all cells, each heard as the cursor comes to it, row by row to and fro."""
        self.ear.loud = False
        self.go_to(1)
        kinds = {0: self.go("Left", 0)}
        for row in range(BOARD):
            steps = ["Right" if row % 2 == 0 else "Left"] * (BOARD - 1)
            for key in ["Down"] * (row > 0) + steps:
                there = self.at + ARROWS[key]
                kinds[there] = self.go(key, there)
        self.ear.loud = True
        return [kinds[cell] for cell in range(BOARD * BOARD)]

    def swap(self, a, b):
        self.go_to(a)
        self.ear.press("Return")
        self.ear.hear(", selected$")
        self.ear.press(next(key for key, step in ARROWS.items() if step == b - a))
        self.at = b
        won, score = self.ear.hear(r"^Cleared \d+ gems.*?(won)?\. Score (\d+)").groups()
        if won:
            self.ear.hear("^Enter leads to the next level$")
            time.sleep(1)  # the message takes no click in its first half second
            self.ear.press("Return")
            self.ear.hear(r"^Level \d+, \d+ matches left")
        return int(score)


def play(ear, game, count):
    player = Listener(ear)
    player.start()
    score = 0
    for number in range(1, count + 1):
        kinds = player.read_board()
        if number == 1:
            assert kinds == game.at_rest(), "what was heard is not what the board shows"
        a, b = legal_swap(kinds)
        ear.say(f"-- swap {number}: the board was heard, {GEMS[kinds[a]]} in cell {a} goes to {b}")
        after = player.swap(a, b)
        assert after > score, "the score that was told did not rise"
        score = after
    ear.press("t")
    ear.hear(f"^No clock. Score {score}. Level ")
    ear.listen()
    time.sleep(REST_SECONDS)
    assert (idle := ear.listen()) == [], f"told while nothing happened: {idle}"
    line = [label.name for label in ear.find("Score:").parent]
    print(f"status line in the tree: {' '.join(line)}")
    assert str(score) in line
    assert player.read_board() == game.at_rest(), "what was heard is not what the board shows"


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("folder", help="an installed game")
    parser.add_argument("--swaps", type=int, default=10)
    options = parser.parse_args()
    if "INSIDE_SESSION" not in os.environ:
        os.environ["INSIDE_SESSION"] = "1"
        os.execvp("dbus-run-session", ["dbus-run-session", "--", sys.executable, *sys.argv])
    with Desktop() as desktop:
        desktop.move(2, 2)
        desktop.env["QT_LINUX_ACCESSIBILITY_ALWAYS_ON"] = "1"
        ear = Ear(desktop)
        game = Game(desktop, options.folder).start()
        play(ear, game, options.swaps)
        desktop.key("ctrl+q")
        print(f"exit code {game.ended()}")


if __name__ == "__main__":
    main()

# SPDX-License-Identifier: MIT
"""A round of the real program from the chooser to a high score, for the proofs beside this file."""

import sys
import time
from pathlib import Path

import numpy as np

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "tests/desktop"))
from desktop import MAIN, legal_swap, wait_for

NAME = "Ruby Opal"
SWAPS = 4  # enough for more than the 100 points of a table's starting places
CLOCK_SECONDS = 10
END_SECONDS = 6  # shaking, flight and the first half second of the message
WATCHED_SECONDS = 0.5


def moves(game):
    """Whether the picture changes; in Frantic the clock's bar never stands."""
    before = np.asarray(game.grab())
    time.sleep(WATCHED_SECONDS)
    return bool((np.asarray(game.grab()) != before).any())


def pause(game):
    game.desktop.key("F4")
    wait_for("the pause", lambda: not moves(game))
    game.desktop.key("F4")
    wait_for("the end of the pause", lambda: moves(game))


def swap(game):
    board = game.at_rest()
    game.swap(*legal_swap(board))
    wait_for("the gems to fall", lambda: game.at_rest() != board)


def enter_name(desktop):
    desktop.focused("Login")
    desktop.type(NAME)
    desktop.key("Return")
    desktop.focused("High Scores...")
    desktop.key("Escape")


def place_of_score(folder):
    """Where the name stands in the Frantic table."""
    return next(
        place
        for place in range(1, 11)
        if (folder / f"scorenamefr{place}.gwk").read_bytes() == f"{NAME}\r\n".encode()
    )


def quit_game(game):
    game.desktop.focused(MAIN)
    game.desktop.key("ctrl+q")
    code = game.ended()
    assert code == 0, f"the game ended with {code}"


def play_round(game, folder):
    """Plays the program that stands at its chooser; the scores lie in `folder`."""
    game.choose("Frantic")
    game.desktop.focused(MAIN)
    game.at_rest()
    pause(game)
    for _ in range(SWAPS):
        swap(game)
    wait_for(
        "the end of the game", lambda: game.desktop.windows("Login"), CLOCK_SECONDS + END_SECONDS
    )
    enter_name(game.desktop)
    print(f"  paused, {SWAPS} swaps, the name stands at place {place_of_score(folder)}", flush=True)
    quit_game(game)

#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Games of the real program with a clock: its beep, its end, the name of a high score and a pause;
and the music beside them.

Usage: test_rounds.py FOLDER [test ...], FOLDER being an installed game."""

import shutil
import struct

from desktop import MAIN, RealProgram, Recording, file_level, legal_swap, loudest, run_tests
from desktop import steady, wait_for
from test_game import EFFECT_LEVEL, EXACT

MUSIC_LEVEL = -9.0  # dB below the file
TRACK_SECONDS = 1.4  # of the sound that is played as music, and a little more


class Clock(RealProgram):
    def test_round_with_a_beep_and_a_high_score(self):
        self.game.swap(*legal_swap(self.game.play("Frantic").at_rest()))
        self.game.ready()
        recording = Recording(self.desktop)
        beep, *others = (
            file_level(self.game.folder / f"sounds/{name}.wav")
            for name in ("timerbeep", "explode", "gameover")
        )
        self.assertGreater(beep, max(others) + EFFECT_LEVEL + 1, "the beep would not stand out")
        wait_for("the beep at full level", lambda: loudest(recording.samples()) > beep - EXACT)
        self.desktop.focused("Login")
        self.assertLess(loudest(recording.samples()), beep + EXACT)
        self.desktop.type("Ruby Opal")
        self.desktop.key("Return")
        self.desktop.focused("High Scores...")
        self.assertEqual((self.game.folder / "scorenamefr1.gwk").read_bytes(), b"Ruby Opal\r\n")
        score = struct.unpack("<d", (self.game.folder / "scorefr1.gwk").read_bytes()[:8])[0]
        self.assertGreaterEqual(score, 50)

    def test_pause_stops_picture_and_clock_and_can_be_left(self):
        self.game.play("Normal")
        for leave in ("F4", "F2", "ctrl+q"):
            self.game.shows_motion()
            self.desktop.key("F4")
            wait_for("the pause", steady(lambda: self.game.grab().tobytes(), 1.0))
            self.desktop.key(leave)
            if leave == "F2":
                self.game.choose("Normal")
                self.desktop.focused(MAIN)
        self.assertEqual(self.game.ended(), 0)


class Music(RealProgram):
    def test_level_and_next_track(self):
        track = self.game.folder / "music/track.WAV"
        shutil.copy(self.game.folder / "sounds/combo2.wav", track)
        level = file_level(track) + MUSIC_LEVEL
        self.game.start().choose("Relaxed")
        self.desktop.window(MAIN)
        recording = Recording(self.desktop)
        for which in ("a track", "the next track"):
            wait_for(which, lambda: loudest(recording.more(TRACK_SECONDS)) > level - EXACT)
        self.assertLess(loudest(recording.samples()), level + EXACT)
        self.quit()


if __name__ == "__main__":
    run_tests()

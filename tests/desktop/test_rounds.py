#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Whole rounds of the real program: the clock and its beep, pause, both ends of a game, the name of
a high score, music, the small windows, and clicks at every scale factor.

Usage: test_rounds.py FOLDER [test ...], FOLDER being an installed game."""

import struct
import sys
import time
import unittest
import wave
from pathlib import Path

import numpy as np

import test_game
from desktop import CHOOSER, SAMPLE_RATE, legal_swap, loudest, wait_for
from test_game import EFFECT_LEVEL, SILENCE, RealProgram, file_level

MUSIC_LEVEL = -9.0  # dB below the file
EXACT = 0.3  # dB, of which the recording's own resolution takes a part
FRANTIC_SECONDS = 10
END_SECONDS = 6  # shaking, flight and the first half second of the message


def write_tone(path, seconds, hertz, level=0.25):
    """A tone with 5 ms of rise and fall, the same on both sides."""
    t = np.arange(int(seconds * SAMPLE_RATE)) / SAMPLE_RATE
    edge = np.minimum(1, np.minimum(t, t[::-1]) / 0.005)
    samples = (level * edge * np.sin(2 * np.pi * hertz * t) * 32767).astype("<i2")
    with wave.open(str(path), "wb") as file:
        file.setnchannels(2)
        file.setsampwidth(2)
        file.setframerate(SAMPLE_RATE)
        file.writeframes(np.repeat(samples, 2).tobytes())


class FranticRound(RealProgram):
    mode = "Frantic"

    def score_of(self, place):
        return struct.unpack("<d", (self.game.folder / f"scorefr{place}.gwk").read_bytes()[:8])[0]

    def empty_board(self):
        return self.game.sprites.is_empty(self.game.grab())

    def run_out(self):
        wait_for("the end of the game", self.empty_board, FRANTIC_SECONDS + END_SECONDS)

    def test_round_with_a_high_score(self):
        self.game.swap_by_keys(*legal_swap(self.game.at_rest()))
        self.run_out()
        wait_for("the name to take keys", lambda: self.desktop.active() == "Login")
        self.desktop.type("Ruby Opal")
        self.desktop.key("Return")
        self.desktop.window("High Scores...")
        self.assertEqual((self.game.folder / "scorenamefr1.gwk").read_bytes(), b"Ruby Opal\r\n")
        best = self.score_of(1)
        self.assertGreaterEqual(best, 50)
        self.quit()
        self.game.play("Frantic")
        self.assertEqual(self.score_of(1), best)
        self.run_out()
        time.sleep(1)
        self.assertFalse(self.desktop.windows("Login"), "a score of 0 asked for a name")
        self.desktop.key("F2")
        self.game.choose("Relaxed")
        self.game.at_rest()
        self.quit()

    def test_beep_at_full_level(self):
        recording = self.desktop.record()
        time.sleep(FRANTIC_SECONDS - 2)
        self.run_out()
        beep = file_level(self.game.folder / "sounds/timerbeep.wav")
        louder = [
            file_level(self.game.folder / f"sounds/{name}.wav") + EFFECT_LEVEL
            for name in ("explode", "gameover")
        ]
        self.assertGreater(beep, max(louder) + 1, "the beep would not stand out in this recording")
        self.assertAlmostEqual(loudest(recording.stop()), beep, delta=EXACT)


class Pausing(RealProgram):
    mode = "Normal"

    def picture(self):
        return np.asarray(self.game.grab())

    def moves(self):
        before = self.picture()
        time.sleep(1.0)
        return bool((self.picture() != before).any())

    def test_pause_stops_picture_and_clock(self):
        self.assertTrue(self.moves(), "the clock's bar stands")
        self.desktop.key("F4")
        time.sleep(0.4)
        self.assertFalse(self.moves())
        self.desktop.key("F4")
        time.sleep(0.4)
        self.assertTrue(self.moves())

    def test_quit_and_new_game_during_a_pause(self):
        for pause_and_new_game in ("key F4 sleep 0.4 key F2", "key --delay 0 F4 F2"):
            self.desktop.run("xdotool", *pause_and_new_game.split())
            self.game.choose("Normal")
            self.game.dealt()
            self.assertTrue(self.moves(), "the pause went on into the new game")
        self.desktop.key("F4")
        time.sleep(0.4)
        self.quit()


class Music(RealProgram):
    keep_music = True
    starts = False

    def setUp(self):
        super().setUp()
        self.music = self.game.folder / "music"
        self.shipped = next(self.music.glob("*.mp3")).read_bytes()
        for file in self.music.iterdir():
            file.unlink()

    def heard(self, seconds):
        recording = self.desktop.record()
        time.sleep(seconds)
        return recording.stop()

    def test_level_and_next_track(self):
        tone = self.music / "tone.WAV"
        write_tone(tone, 2.0, 440)
        self.game.play("Relaxed")
        samples = self.heard(6)
        self.assertAlmostEqual(loudest(samples), file_level(tone) + MUSIC_LEVEL, delta=EXACT)
        seconds = [
            loudest(samples[i : i + SAMPLE_RATE // 2])
            for i in range(0, len(samples) - SAMPLE_RATE // 2, SAMPLE_RATE // 2)
        ]
        self.assertGreater(
            min(seconds), SILENCE, f"a track was not followed by the next: {seconds}"
        )
        self.assertLess(loudest(samples[:, :1] - samples[:, 1:]), SILENCE, "left and right differ")

    def test_mp3_is_heard_without_the_libraries_of_video(self):
        (self.music / "shipped.mp3").write_bytes(self.shipped)
        self.game.play("Relaxed")
        self.assertGreater(loudest(self.heard(4)), SILENCE)
        mapped = Path(f"/proc/{self.game.process.pid}/maps").read_bytes()
        self.assertNotIn(b"libavcodec", mapped)
        self.quit()

    def test_damaged_track_ends_the_music_and_nothing_else(self):
        (self.music / "broken.mp3").write_bytes(b"not music at all" * 100)
        self.game.play("Relaxed")
        self.assertLess(loudest(self.heard(1)), SILENCE)
        self.quit()


class Windows(RealProgram):
    def test_all_windows_at_once_while_the_game_goes_on(self):
        self.game.click(0)
        for keys, title in (
            ("ctrl+s", "High Scores..."),
            ("F1", "Learn to Play..."),
            ("ctrl+a", "About Glimmerfall"),
        ):
            self.game.activate()
            self.desktop.key(keys)
            self.desktop.window(title)
        self.game.activate()

        def spinning():
            return np.asarray(self.game.grab())[:64, :64]

        before = spinning()
        wait_for("the game behind the windows", lambda: np.any(spinning() != before))
        self.assertEqual(len(self.desktop.windows("About Glimmerfall")), 1)
        self.quit()

    def test_scores_are_reset_after_a_question(self):
        left, top = self.game.place()
        self.desktop.click(left + 85, top - 9)
        options = self.desktop.window("Options Menu")
        for answer, default in (("n", False), ("y", True)):
            x, y, _, _ = self.desktop.place(options)
            self.desktop.click(x + 190, y + 60)
            self.desktop.window("Reset Scores")
            time.sleep(0.3)
            self.desktop.key("alt+" + answer)
            if answer == "n":
                self.desktop.window("Glimmerfall")
                time.sleep(0.3)
                self.desktop.key("Return")
            wait_for("the answer to be taken", lambda: not self.desktop.windows("Reset Scores"))
            time.sleep(0.5)
            scores = sorted(self.game.folder.glob("score*.gwk"))
            self.assertEqual(len(scores), 80 if default else 0)
        self.assertEqual(
            (self.game.folder / "scorenamema10.gwk").read_bytes(), b"Norvane Games\r\n"
        )


class ClosedChooser(RealProgram):
    starts = False

    def test_program_ends(self):
        self.game.start()
        self.desktop.close(CHOOSER)
        self.assertEqual(self.game.ended(), 0)


class ScaledByTwo(RealProgram):
    scale = 2

    def test_clicks_hit_the_right_gems(self):
        board = self.game.at_rest()
        a, b = legal_swap(board)
        self.game.swap(a, b)
        self.settle(board)
        self.quit()


class ScaledByHalfMore(ScaledByTwo):
    scale = 1.5


if __name__ == "__main__":
    test_game.installed = sys.argv.pop(1)
    unittest.main(verbosity=2)

#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""The real program in a real window, played with a real mouse and heard through a sound server.

Usage: test_game.py FOLDER [test ...], FOLDER being an installed game."""

import subprocess
from pathlib import Path

from desktop import CHOOSER, MAIN, RealProgram, Recording, file_level, has_run, legal_swap
from desktop import loudest, run_tests, swaps, wait_for

SILENCE = -70.0  # dB
EFFECT_LEVEL = -10.0  # dB below the file
EXACT = 0.3  # dB, of which the recording's own resolution takes a part

WINDOWS = {"ctrl+s": "High Scores...", "F1": "Learn to Play...", "ctrl+a": "About Glimmerfall"}


class Playing(RealProgram):
    def setUp(self):
        if self.game.process is None:
            self.game.play("Relaxed")
        self.board = self.game.ready()

    def test_swaps_by_click_and_by_drag(self):
        for swap in (self.game.swap, self.game.drag):
            swap(*next(swaps(self.board, legal=False)))
            self.assertEqual(self.game.ready(), self.board)
            swap(*legal_swap(self.board))
            self.check_change()

    def check_change(self):
        before, self.board = self.board, self.game.ready()
        self.assertNotEqual(self.board, before)
        self.assertFalse(has_run(self.board), "a run was left standing")

    def test_menu_is_used_with_the_mouse(self):
        left, top = self.game.place()
        self.desktop.click(left + 20, top - 10)
        wait_for("the menu", self.game.spinning)
        self.desktop.key("h")
        wait_for("the hint of the menu", lambda: len(self.game.spinning()) == 1)

    def test_play_sound_silences_and_wakes_the_effects(self):
        recording = Recording(self.desktop)
        self.desktop.key("ctrl+p")
        wait_for("silence", lambda: loudest(recording.more(0.5)) < SILENCE)
        start = len(recording.samples())
        self.game.pick(10)
        recording.more(1.0)
        self.assertLess(loudest(recording.samples(start)), SILENCE)
        self.desktop.key("ctrl+p")
        self.hear_pick(recording)

    def test_sound_server_dies_and_returns(self):
        self.desktop.sound_server.kill()
        self.desktop.sound_server.wait()
        self.game.swap(*legal_swap(self.board))
        self.check_change()
        self.desktop.start_sound()
        self.hear_pick(Recording(self.desktop))

    def hear_pick(self, recording):
        level = file_level(self.game.folder / "sounds/select.wav") + EFFECT_LEVEL

        def pick():
            self.desktop.key("Escape")
            self.game.click(10)
            return loudest(recording.more(0.7)) > level - EXACT

        wait_for("a pick to be heard", pick)
        self.assertLess(loudest(recording.samples()), level + EXACT)


class Scaled(RealProgram):
    """The whole game with its music."""

    left_out = ()
    scale = 1.5

    def test_clicks_hit_the_right_gems_and_music_is_heard(self):
        before = self.game.play("Relaxed").at_rest()
        self.game.swap(*legal_swap(before))
        board = self.game.ready()
        self.assertNotEqual(board, before)
        self.desktop.key("ctrl+p")
        recording = Recording(self.desktop)
        wait_for("the music", lambda: loudest(recording.more(2.0)) > SILENCE)
        mapped = Path(f"/proc/{self.game.process.pid}/maps").read_text()
        self.assertIn("mpg123", mapped)
        self.assertNotIn("libavcodec", mapped, "the libraries of video are loaded for an MP3")
        self.game.swap(*legal_swap(board))
        self.quit()


class ScaledByTwo(RealProgram):
    scale = 2

    def test_all_windows_at_once_while_the_game_goes_on(self):
        self.game.play("Relaxed").pick(0)
        for keys, title in WINDOWS.items():
            self.game.activate()
            self.desktop.key(keys)
            self.desktop.focused(title)
        self.game.activate()
        self.game.shows_motion()
        self.desktop.close(MAIN)
        self.assertEqual(self.game.ended(), 0)


class Failing(RealProgram):
    """What is missing is told, and nothing crashes."""

    def told(self, title):
        self.game.start().choose("Relaxed")
        self.desktop.focused(title)
        self.desktop.key("Return")
        self.desktop.gone(title)

    def test_no_sound_device_ends_the_program(self):
        self.game.env = {"ALSOFT_DRIVERS": "pulse", "PULSE_SERVER": "none"}
        self.addCleanup(self.game.env.clear)
        self.told("Glimmerfall")
        self.assertEqual(self.game.ended(), 1)

    def test_missing_bitmap_is_told_and_the_window_stays(self):
        sheet = self.game.folder / "images/gemsheet1024x512.bmp"
        away = sheet.rename(self.desktop.folder / "away.bmp")
        self.addCleanup(away.rename, sheet)
        self.told("This is uncalled-for!-------")
        self.quit()

    def test_closed_chooser_ends_the_program(self):
        self.game.start()
        self.desktop.close(CHOOSER)
        self.assertEqual(self.game.ended(), 0)

    def test_no_display_is_one_clear_line(self):
        result = subprocess.run(
            ["env", "-u", "DISPLAY", "-u", "WAYLAND_DISPLAY", self.game.folder / "glimmerfall"],
            text=True,
            capture_output=True,
            check=False,
        )
        self.assertEqual(result.returncode, 1)
        self.assertEqual(result.stderr, "glimmerfall: no window can be opened: no display\n")


if __name__ == "__main__":
    run_tests()

#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""The real program in a real window, played with a real mouse and heard through a sound server.

Usage: test_game.py FOLDER [test ...], FOLDER being an installed game."""

import shutil
import subprocess
import sys
import time
import unittest
import wave

import numpy as np

from desktop import MAIN, Desktop, Game, illegal_swap, legal_swap, loudest, runs, swaps, wait_for

installed = None
SILENCE = -70.0  # dB
EFFECT_LEVEL = -10.0  # dB below the file


def file_level(path):
    with wave.open(str(path)) as file:
        data = np.frombuffer(file.readframes(file.getnframes()), dtype="<i2")
        return loudest(data.reshape(-1, file.getnchannels()) / 32768.0)


class RealProgram(unittest.TestCase):
    """A desktop and the game's folder; without music unless a test says otherwise."""

    keep_music = False
    mode = "Relaxed"
    starts = True
    scale = None

    def setUp(self):
        self.desktop = self.enterContext(Desktop(scale=self.scale))
        self.game = Game(self.desktop, installed)
        if not self.keep_music:
            shutil.rmtree(self.game.folder / "music")
        if self.starts:
            self.game.play(self.mode)

    def quit(self):
        self.game.activate()
        self.desktop.key("ctrl+q")
        self.assertEqual(self.game.ended(), 0)

    def settle(self, before):
        """The board once it rests again and differs from `before`."""
        return wait_for("another board", lambda: (k := self.game.at_rest()) != before and k)


class Playing(RealProgram):
    def test_swaps_by_click_and_by_drag(self):
        board = self.game.at_rest()
        self.assertFalse(runs(board))
        for swap in (self.game.swap, self.game.drag):
            swap(*legal_swap(board))
            after = self.settle(board)
            self.assertFalse(runs(after), "a run was left standing")
            board = after
        for swap in (self.game.swap, self.game.drag):
            swap(*illegal_swap(board))
            time.sleep(1.2)
            self.assertEqual(self.game.at_rest(), board, "a swap without a run changed the board")
        self.quit()

    def test_every_press_of_every_button_counts(self):
        def spins():
            return None in self.game.sprites.read(self.game.grab())

        for button in (1, 2, 3):
            self.game.click(27, button)
            wait_for("the picked gem to spin", spins)
            self.game.click(27, button)
            self.game.at_rest()
        self.desktop.run("xdotool", "click", "--repeat", "2", "--delay", "30", "1")
        self.game.at_rest()

    def test_a_picked_gem_shows_its_target(self):
        quiet = np.asarray(self.game.grab()).astype(int)
        self.game.click(0)
        self.desktop.move(2, 2)
        time.sleep(0.3)
        rim = np.abs(np.asarray(self.game.grab()).astype(int) - quiet)[:64, :64]
        rim[6:58, 6:58] = 0
        self.assertGreater(rim.max(), 60)


class Menu(RealProgram):
    def test_hot_keys_and_mouse(self):
        board = self.game.at_rest()
        self.desktop.key("F3")
        hinted = wait_for("the hinted gem to spin", self.spinning)
        self.assertEqual(len(hinted), 1)
        self.assertTrue(any(legal and hinted[0] in (a, b) for a, b, legal in swaps(board)))
        self.game.click(hinted[0])
        self.game.at_rest()
        self.pick_from_menu("Hint")
        wait_for("the hint of the menu", self.spinning)

    def spinning(self):
        return [i for i, k in enumerate(self.game.sprites.read(self.game.grab())) if k is None]

    def pick_from_menu(self, entry):
        left, top = self.game.place()
        self.desktop.click(left + 20, top - 10)
        time.sleep(0.3)
        self.desktop.key({"Hint": "h", "Quit": "q"}[entry])

    def test_play_sound_silences_and_wakes_the_effects(self):
        self.desktop.key("ctrl+p")
        time.sleep(0.2)
        self.assertLess(self.heard_pick(), SILENCE)
        self.desktop.key("ctrl+p")
        time.sleep(0.2)
        expected = file_level(self.game.folder / "sounds/select.wav") + EFFECT_LEVEL
        self.assertAlmostEqual(self.heard_pick(), expected, delta=0.5)

    def heard_pick(self):
        recording = self.desktop.record()
        self.game.click(10)
        time.sleep(0.8)
        level = loudest(recording.stop())
        self.game.click(10)
        return level


class Ending(RealProgram):
    def check_end(self, act):
        start = time.monotonic()
        act()
        self.assertEqual(self.game.ended(), 0)
        return time.monotonic() - start

    def test_close_box(self):
        self.check_end(lambda: self.desktop.close(MAIN))

    def test_quit_by_menu_in_the_midst_of_a_swap(self):
        self.game.swap(*legal_swap(self.game.at_rest()))
        self.check_end(lambda: self.desktop.key("ctrl+q"))


class Failing(RealProgram):
    """What is missing is told, and nothing crashes."""

    starts = False

    def answer(self, title):
        self.desktop.window(title)
        time.sleep(0.2)
        self.desktop.key("Return")

    def begin(self):
        self.game.start()
        self.game.choose("Relaxed")

    def test_missing_effect_ends_the_program(self):
        (self.game.folder / "sounds/combo5.wav").unlink()
        self.begin()
        self.answer("Glimmerfall")
        self.assertEqual(self.game.ended(), 1)

    def test_damaged_effect_ends_the_program(self):
        (self.game.folder / "sounds/select.wav").write_bytes(b"RIFF\xff\xff\xff\xffWAVE")
        self.begin()
        self.answer("Glimmerfall")
        self.assertEqual(self.game.ended(), 1)

    def test_missing_bitmap_is_told_and_the_window_stays(self):
        (self.game.folder / "images/gemsheet1024x512.bmp").write_bytes(b"BM")
        self.begin()
        self.answer("This is uncalled-for!-------")
        time.sleep(0.5)
        self.assertIsNone(self.game.process.poll())
        self.quit()

    def test_sound_server_dies_and_returns(self):
        self.begin()
        self.game.dealt()
        self.desktop.sound_server.kill()
        self.desktop.sound_server.wait()
        for _ in range(3):
            self.game.click(20)
            self.game.click(20)
        board = self.game.at_rest()
        self.game.swap(*legal_swap(board))
        self.settle(board)
        self.quit()


class WithoutSound(RealProgram):
    starts = False

    def setUp(self):
        self.desktop = self.enterContext(Desktop(sound=False))
        self.desktop.env["ALSOFT_DRIVERS"] = "pulse"
        self.game = Game(self.desktop, installed)

    def test_no_sound_device_ends_the_program(self):
        self.game.start()
        self.game.choose("Normal")
        self.desktop.window("Glimmerfall")
        time.sleep(0.2)
        self.desktop.key("Return")
        self.assertEqual(self.game.ended(), 1)


class WithoutDisplay(unittest.TestCase):
    def test_one_clear_line(self):
        command, environment = f"{installed}/glimmerfall", {"PATH": "/usr/bin"}
        result = subprocess.run(
            command, env=environment, text=True, capture_output=True, check=False
        )
        self.assertEqual(result.returncode, 1)
        self.assertEqual(result.stderr, "glimmerfall: no window can be opened: no display\n")


if __name__ == "__main__":
    installed = sys.argv.pop(1)
    unittest.main(verbosity=2)

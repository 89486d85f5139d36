#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""The game's folder as a player has it: moved, started from anywhere, not to be written, unpacked
over an older one, and added to the menu.

Usage: test_folder.py FOLDER [test ...], FOLDER being an installed game."""

import os
import struct
import subprocess
import sys
from pathlib import Path

import test_game
from desktop import CHOOSER, legal_swap
from test_game import RealProgram

ENTRY = "org.glimmerfall.Glimmerfall"
# Where the tests run as root, the program still has to heed the rights of a folder.
AS_ANYBODY = ("setpriv", "--bounding-set=-dac_override") if os.getuid() == 0 else ()


class MovedFolder(RealProgram):
    starts = False

    def setUp(self):
        super().setUp()
        moved = self.desktop.folder / 'my "games" $1 \\n (ä 100%)'
        self.game.folder.rename(moved)
        self.game.folder = moved

    def test_plays_from_any_working_directory(self):
        self.game.start(cwd="/")
        self.game.choose("Relaxed")
        board = self.game.dealt()
        self.game.swap(*legal_swap(board))
        self.settle(board)
        self.quit()

    def test_starter_lays_out_scores_once(self):
        mine = self.game.folder / "scorema3.gwk"
        mine.write_bytes(struct.pack("<d", 4321))
        self.game.process = self.desktop.spawn(self.game.folder / "start-glimmerfall", cwd="/")
        self.desktop.window(CHOOSER)
        self.assertEqual(len(list(self.game.folder.glob("score*.gwk"))), 79)
        self.assertEqual(struct.unpack("<d", mine.read_bytes())[0], 4321)

    def test_menu_entry_and_metadata_are_valid_and_the_entry_goes_again(self):
        data = self.desktop.folder / "data"
        environment = os.environ | {"XDG_DATA_HOME": str(data)}
        change = lambda word: subprocess.run([self.game.folder / "menu-entry", word], env=environment,
                                             check=True, capture_output=True)
        change("add")
        entry = data / f"applications/{ENTRY}.desktop"
        subprocess.run(["desktop-file-validate", entry], check=True)
        subprocess.run(["appstreamcli", "validate", "--no-net", self.game.folder / f"share/{ENTRY}.metainfo.xml"],
                       check=True, capture_output=True)
        self.assertEqual(len(list(data.glob(f"icons/hicolor/*/apps/{ENTRY}.png"))), 6)
        self.desktop.spawn("gio", "launch", str(entry))
        self.desktop.window(CHOOSER)
        change("remove")
        self.assertEqual([path for path in data.rglob("*") if path.is_file()], [])


class ReadOnlyFolder(RealProgram):
    starts = False

    def test_plays_and_writes_nothing(self):
        self.game.folder.chmod(0o555)
        before = sorted(self.game.folder.rglob("*"))
        self.game.start(*AS_ANYBODY)
        self.game.choose("Frantic")
        self.game.dealt()
        self.desktop.key("ctrl+s")
        self.desktop.window("High Scores...")
        self.desktop.key("Escape")
        self.assertEqual(sorted(self.game.folder.rglob("*")), before)
        self.quit()


class NewerOverOlder(RealProgram):
    starts = False

    def test_scores_stay(self):
        subprocess.run([self.game.folder / "share/lay-out-scores", self.game.folder], check=True)
        (self.game.folder / "scorefr1.gwk").write_bytes(struct.pack("<d", 987))
        held = lambda: {path.name: path.read_bytes() for path in self.game.folder.glob("score*.gwk")}
        before = held()
        package = self.desktop.folder / "newer.tar.gz"
        subprocess.run(["tar", "-czf", package, "-C", Path(test_game.installed), "."], check=True)
        subprocess.run(["tar", "-xzf", package, "-C", self.game.folder], check=True)
        subprocess.run([self.game.folder / "share/lay-out-scores", self.game.folder], check=True)
        self.assertEqual(held(), before)
        self.assertEqual(len(before), 80)


if __name__ == "__main__":
    test_game.installed = sys.argv.pop(1)
    test_game.unittest.main(verbosity=2)

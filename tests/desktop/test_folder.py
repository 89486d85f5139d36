#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""The game's folder as a player has it: moved, started from anywhere, not to be written, added to
the menu, and laid out by the command of an installed system.

Usage: test_folder.py FOLDER SYSTEM [test ...], FOLDER being an installed game and SYSTEM the same
game as the files that a system has below /usr."""

import os
import shutil
import struct
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

from desktop import CHOOSER, MAIN, RealProgram, run_tests, wait_for

ENTRY = "org.glimmerfall.Glimmerfall"
# Where the tests run as root, the program still has to heed the rights of a folder.
AS_ANYBODY = ("setpriv", "--bounding-set=-dac_override") if os.getuid() == 0 else ()


class MovedFolder(RealProgram):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.game.folder = cls.game.folder.rename(cls.desktop.folder / 'my "games" $1 \\n (ä 100%)')

    def close_chooser(self):
        self.desktop.close(CHOOSER)
        self.desktop.gone(CHOOSER)

    def test_plays_from_any_working_directory_and_writes_nothing_where_it_must_not(self):
        self.game.folder.chmod(0o555)
        self.addCleanup(self.game.folder.chmod, 0o755)
        before = sorted(self.game.folder.rglob("*"))
        self.game.start(*AS_ANYBODY, cwd="/").choose("Frantic")
        self.game.ready()
        self.desktop.key("ctrl+s")
        self.desktop.focused("High Scores...")
        self.quit()
        self.assertEqual(sorted(self.game.folder.rglob("*")), before)

    def test_starter_lays_out_scores_once(self):
        for file in self.game.folder.glob("score*"):
            file.unlink()
        mine = self.game.folder / "scorema3.gwk"
        mine.write_bytes(struct.pack("<d", 4321))
        self.desktop.spawn(self.game.folder / "start-glimmerfall", cwd="/")
        self.close_chooser()
        self.assertEqual(len(list(self.game.folder.glob("score*.gwk"))), 79)
        self.assertEqual(struct.unpack("<d", mine.read_bytes())[0], 4321)

    def test_menu_entry_and_metadata_are_valid_and_the_entry_goes_again(self):
        data = self.desktop.folder / "data"
        environment = os.environ | {"XDG_DATA_HOME": str(data)}

        def run(*command):
            subprocess.run(command, env=environment, check=True, capture_output=True)

        run(self.game.folder / "menu-entry", "add")
        entry = data / f"applications/{ENTRY}.desktop"
        run("desktop-file-validate", entry)
        metainfo = self.game.folder / f"share/{ENTRY}.metainfo.xml"
        run("appstreamcli", "validate", "--no-net", metainfo)
        self.assertEqual(len(list(data.glob(f"icons/hicolor/*/apps/{ENTRY}.png"))), 6)
        self.desktop.spawn("gio", "launch", str(entry))
        self.close_chooser()
        run(self.game.folder / "menu-entry", "remove")
        self.assertEqual([path for path in data.rglob("*") if path.is_file()], [])


class Command(unittest.TestCase):
    """`glimmerfall` of an installed system, where the program only tells the path of its start."""

    def setUp(self):
        self.root = Path(self.enterContext(tempfile.TemporaryDirectory()))
        self.system = shutil.copytree(system, self.root / "usr", symlinks=True)
        self.program = self.system / "lib/glimmerfall/glimmerfall"
        self.program.write_text('#!/bin/sh\necho "$0"\n')
        self.own = self.root / "ann/.local/share/glimmerfall"

    def start(self, player, *before):
        """The folder that the program was started in, and the complaint."""
        home = self.root / player
        home.mkdir(exist_ok=True)
        ours = ("env", "-u", "XDG_DATA_HOME", f"HOME={home}")
        command = [*ours, *before, self.system / "games/glimmerfall"]
        result = subprocess.run(command, capture_output=True, text=True, check=True)
        return Path(result.stdout.strip()).parent, result.stderr

    def test_renews_what_it_laid_and_nothing_of_the_player(self):
        shipped, music = self.system / "share/games/glimmerfall/music", self.own / "music"
        for track in shipped.iterdir():
            track.unlink()
        for name in "abc":
            (shipped / name).touch()

        score = struct.pack("<d", 987)

        def upgrade():
            for name in "bc":
                (shipped / name).unlink()
            for name in "no":
                (shipped / name).touch()

        def replace():
            (music / "b").unlink()
            (music / "b").touch()

        # What happens before a start, and then the tracks that were laid and those of the player.
        for what, act, laid, mine in (
            ("first use", lambda: None, "abc", ""),
            ("a track added", (music / "n").touch, "abc", "n"),
            ("a track taken away", (music / "a").unlink, "bc", "n"),
            ("a track replaced", replace, "c", "bn"),
            ("an upgrade", upgrade, "o", "bn"),
        ):
            with self.subTest(what):
                act()
                self.assertEqual(self.start("ann"), (self.own, ""))
                links = {path.name: path.is_symlink() for path in music.iterdir()}
                self.assertEqual(links, dict.fromkeys(laid, True) | dict.fromkeys(mine, False))
                scores = [path.read_bytes() for path in self.own.glob("score*")]
                self.assertEqual(len(scores), 80)
                self.assertEqual(what == "first use", score not in scores)
                (self.own / "score1.gwk").write_bytes(score)

    def test_two_players_have_two_folders(self):
        folders = {self.start(player)[0] for player in ("ann", "ben")}
        self.assertEqual(len({os.stat(folder / "score1.gwk").st_ino for folder in folders}), 2)

    def test_home_that_cannot_be_written(self):
        home = self.root / "ann"
        home.mkdir()
        for locked in (home, self.own):
            with self.subTest(locked):
                locked.chmod(0o555)
                folder, complaint = self.start("ann", *AS_ANYBODY)
                self.assertEqual(folder, self.program.parent)
                self.assertRegex(complaint, f"^glimmerfall: .*{self.own} cannot .*\n$")
                locked.chmod(0o755)
                self.assertEqual(self.start("ann"), (self.own, ""))


class LaidOutFolder(RealProgram):
    def test_program_keeps_its_scores_beside_the_link(self):
        score = self.desktop.folder / ".local/share/glimmerfall/scorere1.gwk"
        self.game.process = self.desktop.spawn(Path(system) / "games/glimmerfall")
        self.game.choose("Relaxed")
        shown = self.desktop.run("xprop", "-id", str(self.desktop.focused(MAIN)), "WM_CLASS")
        entry = (Path(system) / f"share/applications/{ENTRY}.desktop").read_text()
        named = entry.split("StartupWMClass=")[1].strip()
        self.assertIn(f'"{named}"', shown)
        score.unlink()
        self.desktop.key("ctrl+s")
        wait_for("the table to be read", score.exists)


if __name__ == "__main__":
    system = sys.argv.pop(2)
    run_tests()

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
from pathlib import Path

import test_game
from desktop import CHOOSER, MAIN, legal_swap, wait_for
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

        def change(word):
            command = [self.game.folder / "menu-entry", word]
            subprocess.run(command, env=environment, check=True, capture_output=True)

        change("add")
        entry = data / f"applications/{ENTRY}.desktop"
        subprocess.run(["desktop-file-validate", entry], check=True)
        metainfo = self.game.folder / f"share/{ENTRY}.metainfo.xml"
        validate = ("appstreamcli", "validate", "--no-net", metainfo)
        subprocess.run(validate, check=True, capture_output=True)
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


class Command(test_game.unittest.TestCase):
    """`glimmerfall` of an installed system, where the program only tells the path of its start."""

    def setUp(self):
        scratch = tempfile.TemporaryDirectory()
        self.addCleanup(scratch.cleanup)
        self.root = Path(scratch.name)
        self.system = shutil.copytree(system, self.root / "usr", symlinks=True)
        self.program = self.system / "lib/glimmerfall/glimmerfall"
        self.program.write_text('#!/bin/sh\necho "$0"\n')

    def start(self, player, *before):
        """The folder that the program was started in, and the complaint."""
        home = self.root / player
        home.mkdir(exist_ok=True)
        environment = {key: value for key, value in os.environ.items() if key != "XDG_DATA_HOME"}
        result = subprocess.run(
            [*before, self.system / "games/glimmerfall"],
            capture_output=True,
            text=True,
            check=True,
            env=environment | {"HOME": str(home)},
        )
        return Path(result.stdout.strip()).parent, result.stderr

    def test_renews_what_it_laid_and_nothing_of_the_player(self):
        shipped = self.system / "share/games/glimmerfall/music"
        for track in list(shipped.iterdir())[3:]:
            track.unlink()
        a, b, c = sorted(track.name for track in shipped.iterdir())
        own = self.root / "ann/.local/share/glimmerfall"
        music = own / "music"

        def upgrade():
            for name in (b, c):
                (shipped / name).unlink()
            for name in ("new.mp3", "newer.mp3"):
                (shipped / name).touch()

        laid, mine = True, False
        story = (
            ("first use", lambda: None, {a: laid, b: laid, c: laid}),
            (
                "a score",
                lambda: (own / "score1.gwk").write_bytes(struct.pack("<d", 987)),
                {a: laid, b: laid, c: laid},
            ),
            (
                "a track added",
                (music / "new.mp3").touch,
                {a: laid, b: laid, c: laid, "new.mp3": mine},
            ),
            ("a track taken away", (music / a).unlink, {b: laid, c: laid, "new.mp3": mine}),
            (
                "a track replaced",
                lambda: ((music / b).unlink(), (music / b).touch()),
                {b: mine, c: laid, "new.mp3": mine},
            ),
            ("an upgrade", upgrade, {b: mine, "new.mp3": mine, "newer.mp3": laid}),
        )
        for what, act, tracks in story:
            with self.subTest(what):
                act()
                scores = {path.name: path.read_bytes() for path in own.glob("score*")}
                self.assertEqual(self.start("ann"), (own, ""))
                self.assertEqual({path.name: path.is_symlink() for path in music.iterdir()}, tracks)
                after = {path.name: path.read_bytes() for path in own.glob("score*")}
                self.assertEqual(after, scores or after)
                self.assertEqual(len(after), 80)
                self.assertTrue(
                    (own / "images/Board.bmp").exists() and (own / "sounds/select.wav").exists()
                )

    def test_two_players_have_two_folders(self):
        folders = {self.start(player)[0] for player in ("ann", "ben")}
        self.assertEqual(len({os.stat(folder / "score1.gwk").st_ino for folder in folders}), 2)

    def test_home_that_cannot_be_written(self):
        home = self.root / "ann"
        own = home / ".local/share/glimmerfall"
        home.mkdir()
        for locked in (home, own):
            with self.subTest(locked):
                locked.chmod(0o555)
                folder, complaint = self.start("ann", *AS_ANYBODY)
                self.assertEqual(folder, self.program.parent)
                self.assertRegex(complaint, f"^glimmerfall: .*{own} cannot .*\n$")
                locked.chmod(0o755)
                self.assertEqual(self.start("ann"), (own, ""))


class LaidOutFolder(RealProgram):
    starts = False

    def test_program_keeps_its_scores_beside_the_link(self):
        own = self.desktop.folder / ".local/share/glimmerfall"
        self.game.process = self.desktop.spawn(Path(system) / "games/glimmerfall")
        self.game.choose("Relaxed")
        self.game.dealt()
        (own / "scorere1.gwk").unlink()
        self.desktop.key("ctrl+s")
        wait_for("the table to be read", (own / "scorere1.gwk").exists)
        shown = self.desktop.run("xprop", "-id", str(self.desktop.window(MAIN)), "WM_CLASS")
        entry = (Path(system) / f"share/applications/{ENTRY}.desktop").read_text()
        named = entry.split("StartupWMClass=")[1].strip()
        self.assertIn(f'"{named}"', shown)


if __name__ == "__main__":
    test_game.installed, system = sys.argv.pop(1), sys.argv.pop(1)
    test_game.unittest.main(verbosity=2)

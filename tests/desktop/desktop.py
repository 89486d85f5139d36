# SPDX-License-Identifier: MIT
"""A desktop for the real program: a screen in memory with a window manager, a sound server whose
output is recorded, and a player who sees the screen and moves the mouse.

What cannot be started is an error, never a skip. Nobody acts after a fixed time: a test waits for
what must be so, or relies on the order in which the program handles what it is sent. Screen, sound
server and folder are made anew for each desktop, so that any number of them can be up."""

import contextlib
import os
import shutil
import subprocess
import sys
import tempfile
import time
import unittest
import wave
from pathlib import Path

import numpy as np
from PIL import Image, ImageGrab

CELL = 64
BOARD = 8
SURFACE = (512, 576)
PATIENCE = 30.0  # seconds until a thing that should come soon is given up, on a busy machine too
REST = 0.15  # seconds for which a board at rest does not change
SPIN_FRAMES = 4  # more than a gem shows within one cell on its way
MODES = {"Normal": 76, "Frantic": 108, "Marathon": 142, "Relaxed": 180}  # heights in the chooser
CHOOSER = "Norvane Games Presents..."
MAIN = "Glintworks"
SAMPLE_RATE = 44100


def wait_for(what, condition, patience=PATIENCE, step=0.02):
    """The first true answer of `condition`; AssertionError when it does not come."""
    end = time.monotonic() + patience
    while time.monotonic() < end:
        answer = condition()
        if answer:
            return answer
        time.sleep(step)
    raise AssertionError(f"waited {patience:.0f} s in vain for {what}; {Desktop.tell_failure()}")


def steady(look, seconds):
    """A condition: what `look` gives is true and has been the same for so long."""
    last, since = None, 0.0

    def condition():
        nonlocal last, since
        now, answer = time.monotonic(), look()
        if answer != last:
            last, since = answer, now
        return answer if now - since >= seconds else None

    return condition


class Desktop:
    """Screen, window manager and sound server, all of its own. Use it in a `with` statement."""

    shown = None  # the one that is up

    @classmethod
    def tell_failure(cls):
        file, name = tempfile.mkstemp(prefix="glimmerfall-", suffix=".png")
        os.close(file)
        cls.shown.grab().save(name)
        return f"the screen is in {name}"

    def __init__(self, size=(1280, 1300), scale=None):
        self.size, self.scale = size, scale

    def __enter__(self):
        with contextlib.ExitStack() as stack:
            self.stack = stack
            self.folder = Path(stack.enter_context(tempfile.TemporaryDirectory()))
            self.env = {
                k: v for k, v in os.environ.items() if not k.startswith(("QT_", "ALSOFT", "PULSE"))
            }
            self.env |= {"XDG_RUNTIME_DIR": str(self.folder), "HOME": str(self.folder)}
            self.env |= {"LC_ALL": "C.UTF-8", "QT_SCALE_FACTOR": str(self.scale or 1)}
            self._start_screen()
            self._start_manager()
            self.start_sound()
            self.stack = stack.pop_all()
        return self

    def __exit__(self, *_):
        self.stack.close()

    def spawn(self, *command, **more):
        more = {"stderr": subprocess.DEVNULL, "env": self.env} | more
        process = subprocess.Popen(command, **more)
        self.stack.callback(process.wait)
        self.stack.callback(process.kill)
        return process

    def run(self, *command, check=True):
        done = subprocess.run(command, env=self.env, check=check, capture_output=True, text=True)
        return done.stdout

    def _start_screen(self):
        width, height = self.size
        screen = f"-displayfd 1 -screen 0 {width}x{height}x24 -nolisten tcp -noreset"
        with self.spawn("Xvfb", *screen.split(), stdout=subprocess.PIPE).stdout as pipe:
            number = pipe.readline()
        assert number, "the screen in memory did not start"
        self.env["DISPLAY"] = self.display = f":{int(number)}"
        Desktop.shown = self

    def _start_manager(self):
        # Without bindings of its own it swallows no key, and no click waits for it behind a key.
        settings = self.folder / "openbox.xml"
        settings.write_text('<openbox_config xmlns="http://openbox.org/3.4/rc"/>')
        self.spawn("openbox", "--sm-disable", "--config-file", settings, stdout=subprocess.DEVNULL)
        asked = ("xprop", "-root", "_NET_SUPPORTING_WM_CHECK")
        wait_for("the window manager", lambda: "window id" in self.run(*asked, check=False))

    def start_sound(self):
        self.sound_server = self.spawn(
            *"pulseaudio -n --daemonize=no --exit-idle-time=-1 --use-pid-file=no".split(),
            "--load=module-null-sink sink_name=out rate=44100",
            "--load=module-native-protocol-unix",
        )
        asked = ("pactl", "list", "short", "sinks")
        wait_for("the sound server", lambda: "out" in self.run(*asked, check=False))

    def grab(self, box=None):
        return ImageGrab.grab(bbox=box, xdisplay=self.display).convert("RGB")

    def windows(self, title):
        search = ("xdotool", "search", "--onlyvisible", "--name", f"^{title}$")
        return [int(window) for window in self.run(*search, check=False).split()]

    def window(self, title):
        return wait_for(f"the window '{title}'", lambda: self.windows(title))[0]

    def gone(self, title):
        wait_for(f"the window '{title}' to go", lambda: not self.windows(title))

    def focused(self, title):
        """The window, once it has the keyboard."""
        window = self.window(title)
        asked = ("xdotool", "getwindowfocus")
        wait_for(
            f"the focus of '{title}'", lambda: self.run(*asked, check=False).strip() == str(window)
        )
        return window

    def place(self, window):
        """Left, top, width and height of a window's client area."""
        lines = self.run("xwininfo", "-id", str(window)).splitlines()
        fields = dict(line.strip().split(": ", 1) for line in lines if ": " in line)
        names = ("Absolute upper-left X", "Absolute upper-left Y", "Width", "Height")
        return tuple(int(fields[name]) for name in names)

    def move(self, x, y, *more):
        self.run("xdotool", "mousemove", str(round(x)), str(round(y)), *map(str, more))

    def click(self, x, y, button=1):
        self.move(x, y, "click", button)

    def key(self, *keys):
        self.run("xdotool", "key", *keys)

    def close(self, title):
        """Uses the close box of a window; a hot key of the window manager can get lost."""
        self.run("wmctrl", "-i", "-c", hex(self.window(title)))

    def type(self, text):
        self.run("xdotool", "type", "--delay", "5", text)


class Recording:
    """What is heard from now on, as samples from -1 to 1 of two channels."""

    def __init__(self, desktop):
        self.path = desktop.folder / "heard.raw"
        form = "--raw --format=s16le --rate=44100 --channels=2 --latency-msec=20"
        with open(self.path, "wb") as file:
            desktop.spawn("parec", "-d", "out.monitor", *form.split(), stdout=file)
        wait_for("the recording", lambda: len(self.samples()))

    def samples(self, start=0):
        """What has been recorded until now, from a sample on."""
        data = np.fromfile(self.path, dtype="<i2", offset=4 * start)
        return data[: len(data) // 2 * 2].reshape(-1, 2) / 32768.0

    def more(self, seconds):
        """What is recorded from now on, once it is so long."""
        start, enough = len(self.samples()), int(seconds * SAMPLE_RATE)
        wait_for(f"{seconds} s more of the recording", lambda: len(self.samples(start)) >= enough)
        return self.samples(start)


def loudest(samples, window=0.05):
    """Level of the loudest stretch of `window` seconds, in dB below full scale (RMS)."""
    size = int(window * SAMPLE_RATE)
    energy = np.concatenate([[0.0], np.cumsum((samples**2).mean(axis=1))])
    return 10 * np.log10(max([1e-20, *(energy[size:] - energy[:-size]) / size]))


def file_level(path):
    with wave.open(str(path)) as file:
        data = np.frombuffer(file.readframes(file.getnframes()), dtype="<i2")
        return loudest(data.reshape(-1, file.getnchannels()) / 32768.0)


class Game:
    """The installed program, run from a copy of its folder, and a player in front of it."""

    def __init__(self, desktop, installed, left_out=()):
        self.desktop = desktop
        self.folder = desktop.folder / "game"
        if not self.folder.exists():
            shutil.copytree(installed, self.folder, ignore=shutil.ignore_patterns(*left_out))
        self.scale = desktop.scale or 1
        self.sprites = Sprites(self.folder)
        self.process = None
        self.env = {}  # what the program's own environment has beside the desktop's

    def start(self, *before, **more):
        command = (*before, str(self.folder / "glimmerfall"))
        self.process = self.desktop.spawn(*command, env=self.desktop.env | self.env, **more)
        return self

    def choose(self, mode):
        """Picks a mode in the chooser and presses Start."""
        left, top, _, _ = self.desktop.place(self.desktop.focused(CHOOSER))
        self.desktop.click(left + 336 * self.scale, top + MODES[mode] * self.scale)
        self.desktop.click(left + 452 * self.scale, top + 292 * self.scale)
        self.desktop.gone(CHOOSER)

    def play(self, mode):
        """Starts the program, or a new game where it runs; waits until the board takes picks."""
        if self.process is None or self.process.poll() is not None:
            self.start()
        else:
            self.activate()
            self.desktop.key("F2")
        self.choose(mode)
        self.ready()
        return self

    def ready(self):
        """The kinds of the board, once it takes picks: it heeds a hint. What was clicked or pressed
        before is over then, for events keep their order."""
        self.activate()
        moving, frames = [], set()

        def hinted():
            nonlocal moving
            self.desktop.key("F3")
            before, (picture, moving) = moving, self.look()
            if len(moving) != 1 or moving != before:
                frames.clear()
            frames.add(picture)
            return len(frames) >= SPIN_FRAMES

        wait_for("a hint", hinted)
        self.desktop.key("Escape")
        return self.at_rest()

    def activate(self):
        """Raises the main window and gives it the keyboard."""
        self.desktop.run("xdotool", "windowactivate", str(self.desktop.window(MAIN)))
        self.desktop.focused(MAIN)

    def place(self):
        """Left and top of the board on the screen, below the menu bar."""
        left, top, _, height = self.desktop.place(self.desktop.window(MAIN))
        return left, top + height - round(SURFACE[1] * self.scale)

    def grab(self):
        left, top = self.place()
        width, height = (round(side * self.scale) for side in SURFACE)
        picture = self.desktop.grab((left, top, left + width, top + height))
        return picture.resize(SURFACE, Image.BOX) if self.scale != 1 else picture

    def look(self):
        """The dots of the board, and the cells in which no gem rests: where play stands still only
        that of the picked gem, which spins."""
        picture = self.grab().crop((0, 0, *[BOARD * CELL] * 2))
        kinds = self.sprites.read(picture)
        return picture.tobytes(), [cell for cell, kind in enumerate(kinds) if kind is None]

    def spinning(self):
        return self.look()[1]

    def shows_motion(self):
        before = self.grab()
        wait_for("the picture to change", lambda: self.grab() != before)

    def at_rest(self):
        """The kinds of all cells, once a gem rests in each of them and nothing moves."""

        def kinds():
            found = self.sprites.read(self.grab())
            return None not in found and found

        return wait_for("the board at rest", steady(kinds, REST))

    def point(self, cell):
        left, top = self.place()
        row, column = divmod(cell, BOARD)
        return left + (column + 0.5) * CELL * self.scale, top + (row + 0.5) * CELL * self.scale

    def click(self, cell, button=1):
        self.desktop.click(*self.point(cell), button)

    def pick(self, cell):
        self.click(cell)
        wait_for(f"the gem of cell {cell} to spin", lambda: self.spinning() == [cell])

    def swap(self, a, b):
        self.click(a)
        self.click(b)
        self.desktop.move(2, 2)

    def drag(self, a, b):
        ax, ay = self.point(a)
        bx, by = self.point(b)
        self.desktop.move(ax, ay, "mousedown", 1)
        self.desktop.move((ax + bx) / 2, (ay + by) / 2)
        self.desktop.move(bx, by, "mouseup", 1)
        self.desktop.move(2, 2)

    def ended(self, patience=PATIENCE):
        """The exit code, once the program has ended."""
        wait_for("the program to end", lambda: self.process.poll() is not None, patience)
        return self.process.returncode


class Sprites:
    """Reads gems back from a picture of the board."""

    MIDDLE = slice(9, 55, 2)  # the target of the picked gem shows only in the rim of a cell
    TOLERANCE = 12.0

    def __init__(self, folder):
        sheet, self.board = (
            np.asarray(Image.open(folder / "images" / name).convert("RGB")).astype(np.int16)
            for name in ("gemsheet1024x512.bmp", "Board.bmp")
        )
        gems, cells = self._cells(sheet, 1), self._cells(self.board)[:, None]
        self.rest = np.where(gems.any(axis=-1, keepdims=True), gems, cells)  # by cell and kind

    def _cells(self, picture, columns=BOARD):
        part = picture[: BOARD * CELL, : columns * CELL]
        squares = part.reshape(BOARD, CELL, columns, CELL, 3).swapaxes(1, 2)
        return squares[:, :, self.MIDDLE, self.MIDDLE].reshape(BOARD * columns, -1, 3)

    def read(self, picture):
        """By cell the kind at rest, or None where no gem rests."""
        cells = self._cells(np.asarray(picture).astype(np.int16))[:, None]
        errors = np.abs(cells - self.rest).mean(axis=(2, 3))
        return [int(e.argmin()) if e.min() < self.TOLERANCE else None for e in errors]


def has_run(kinds):
    """Whether three of a kind stand in a line."""
    rows = [kinds[start : start + BOARD] for start in range(0, BOARD * BOARD, BOARD)]
    lines = (*rows, *zip(*rows))
    return any(line[i] == line[i + 1] == line[i + 2] for line in lines for i in range(BOARD - 2))


def swaps(kinds, legal=True):
    """The swaps of unlike neighbours that make a run, or those that make none, as (a, b)."""
    for a in range(BOARD * BOARD):
        for b in [a + 1] * (a % BOARD < BOARD - 1) + [a + BOARD] * (a < BOARD * (BOARD - 1)):
            swapped = list(kinds)
            swapped[a], swapped[b] = kinds[b], kinds[a]
            if kinds[a] != kinds[b] and has_run(swapped) == legal:
                yield a, b


def legal_swap(kinds):
    return next(swaps(kinds))


class RealProgram(unittest.TestCase):
    """A desktop and a copy of the game for each class, in which the program runs on from test to
    test; one that ends it leaves it to the next to start it again."""

    installed = None  # the folder of the game
    left_out = ("*.mp3",)
    scale = None

    @classmethod
    def setUpClass(cls):
        cls.desktop = cls.enterClassContext(Desktop(scale=cls.scale))
        # The library's own 60 ms are broken up on a busy machine; a third of a second is not.
        buffers = cls.desktop.folder / "alsoft.conf"
        buffers.write_text("[general]\nperiods = 8\nperiod_size = 2048\n")
        cls.desktop.env["ALSOFT_CONF"] = str(buffers)
        cls.game = Game(cls.desktop, cls.installed, cls.left_out)

    def quit(self):
        self.game.activate()
        self.desktop.key("ctrl+q")
        self.assertEqual(self.game.ended(), 0)


def run_tests():
    """Runs a suite on the installed game whose folder is the first argument."""
    RealProgram.installed = sys.argv.pop(1)
    unittest.main(verbosity=2)

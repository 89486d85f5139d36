# SPDX-License-Identifier: MIT
"""A desktop for the real program: a screen in memory with a window manager, a sound server whose
output is recorded, and a player who sees the screen and moves the mouse.

Used by the suites beside it. Whatever cannot be started is an error, never a skip."""

import os
import shutil
import signal
import subprocess
import tempfile
import time
import wave
from pathlib import Path

import numpy as np
from PIL import Image, ImageGrab

CELL = 64
BOARD = 8
SURFACE = (512, 576)
PATIENCE = 15.0  # seconds until a thing that should come soon is given up
MODES = {"Normal": 76, "Frantic": 108, "Marathon": 142, "Relaxed": 180}  # heights in the chooser
CHOOSER = "Norvane Games Presents..."
MAIN = "Glintworks"
SAMPLE_RATE = 44100
DEAL_REST = 0.8  # seconds from the last gem's landing to the end of the deal, and a little more


def wait_for(what, condition, patience=PATIENCE, step=0.02):
    """The first true answer of `condition`; AssertionError when it does not come."""
    end = time.monotonic() + patience
    while time.monotonic() < end:
        answer = condition()
        if answer:
            return answer
        time.sleep(step)
    raise AssertionError(
        f"waited {patience:.0f} s in vain for {what}; {Desktop.picture_of_failure()}"
    )


class Desktop:
    """Screen, window manager and sound server, all of its own. Use it in a `with` statement."""

    shown = None  # the one that is up

    @classmethod
    def picture_of_failure(cls):
        if cls.shown is None:
            return "there is no screen"
        with tempfile.NamedTemporaryFile(
            prefix="glimmerfall-", suffix=".png", delete=False
        ) as file:
            cls.shown.grab().save(file)
        return f"the screen is in {file.name}"

    def __init__(self, size=(1280, 1300), scale=None, sound=True):
        self.size, self.scale, self.sound = size, scale, sound
        self.processes = []

    def __enter__(self):
        self.folder = Path(tempfile.mkdtemp(prefix="glimmerfall-"))
        self.env = {
            k: v for k, v in os.environ.items() if not k.startswith(("QT_", "ALSOFT", "PULSE"))
        }
        self.env.update(XDG_RUNTIME_DIR=str(self.folder), HOME=str(self.folder), LC_ALL="C.UTF-8")
        if self.scale:
            self.env["QT_SCALE_FACTOR"] = str(self.scale)
        try:
            self._start_screen()
            Desktop.shown = self
            if self.sound:
                self.start_sound()
        except BaseException:
            self.__exit__(None, None, None)
            raise
        return self

    def __exit__(self, *_):
        Desktop.shown = None
        for process in reversed(self.processes):
            if process.poll() is None:
                process.terminate()
                try:
                    process.wait(5)
                except subprocess.TimeoutExpired:
                    process.kill()
        shutil.rmtree(self.folder, ignore_errors=True)

    def spawn(self, *command, **more):
        more.setdefault("stderr", subprocess.DEVNULL)
        more.setdefault("env", self.env)
        process = subprocess.Popen(command, **more)
        self.processes.append(process)
        return process

    def run(self, *command, check=True):
        done = subprocess.run(command, env=self.env, check=check, capture_output=True, text=True)
        return done.stdout

    def _start_screen(self):
        read, write = os.pipe()
        width, height = self.size
        screen = f"-displayfd {write} -screen 0 {width}x{height}x24 -nolisten tcp -noreset"
        self.spawn("Xvfb", *screen.split(), pass_fds=[write])
        os.close(write)
        with os.fdopen(read) as pipe:
            number = pipe.readline().strip()
        assert number, "the screen in memory did not start"
        self.display = ":" + number
        self.env["DISPLAY"] = self.display
        self._start_manager()

    def _start_manager(self):
        log = open(self.folder / "openbox.log", "w+", encoding="utf-8")
        manager = self.spawn("openbox", "--sm-disable", stdout=log, stderr=log)

        def manages():
            assert manager.poll() is None, f"the window manager ended, see {log.name}"
            shown = self.run("xprop", "-root", "_NET_SUPPORTING_WM_CHECK", check=False)
            return "window id" in shown

        with log:
            wait_for("the window manager", manages)

    def start_sound(self):
        self.sound_server = self.spawn(
            *"pulseaudio -n --daemonize=no --exit-idle-time=-1 --use-pid-file=no".split(),
            "--load=module-null-sink sink_name=out rate=44100",
            "--load=module-native-protocol-unix",
        )

        def plays():
            return "out" in self.run("pactl", "list", "short", "sinks", check=False)

        wait_for("the sound server", plays)

    def record(self):
        """Starts a recording of all that is heard; its stop() gives samples from -1 to 1."""
        return Recording(self)

    def grab(self, box=None):
        return ImageGrab.grab(bbox=box, xdisplay=self.display).convert("RGB")

    def windows(self, title):
        search = ("xdotool", "search", "--onlyvisible", "--name", f"^{title}$")
        return [int(window) for window in self.run(*search, check=False).split()]

    def window(self, title, patience=PATIENCE):
        return wait_for(f"the window '{title}'", lambda: self.windows(title), patience)[0]

    def focused(self, title):
        """The window, once it has the keyboard."""
        window = self.window(title)
        wait_for(
            f"the focus of '{title}'",
            lambda: self.run("xdotool", "getwindowfocus", check=False).strip() == str(window),
        )
        return window

    def place(self, window):
        """Left, top, width and height of a window's client area."""
        lines = self.run("xwininfo", "-id", str(window)).splitlines()
        fields = dict(line.strip().split(": ", 1) for line in lines if ": " in line)
        names = ("Absolute upper-left X", "Absolute upper-left Y", "Width", "Height")
        return tuple(int(fields[name]) for name in names)

    def move(self, x, y):
        self.run("xdotool", "mousemove", str(round(x)), str(round(y)))

    def click(self, x, y, button=1):
        self.run("xdotool", "mousemove", str(round(x)), str(round(y)), "click", str(button))

    def key(self, *keys):
        self.run("xdotool", "key", *keys)

    def active(self):
        """The title of the window that takes the keys."""
        return self.run("xdotool", "getactivewindow", "getwindowname", check=False).strip()

    def close(self, title):
        """Uses the close box of a window; a hot key of the window manager can get lost."""
        self.run("wmctrl", "-i", "-c", hex(self.window(title)))

    def type(self, text):
        self.run("xdotool", "type", "--delay", "5", text)


class Recording:
    def __init__(self, desktop):
        self.path = desktop.folder / "heard.wav"
        form = "--file-format=wav --format=s16le --rate=44100 --channels=2"
        self.process = desktop.spawn("parec", "-d", "out.monitor", *form.split(), str(self.path))
        wait_for("the recording", lambda: self.path.exists() and self.path.stat().st_size > 44)

    def stop(self):
        self.process.send_signal(signal.SIGINT)
        self.process.wait(5)
        with wave.open(str(self.path)) as file:
            data = file.readframes(file.getnframes())
        return np.frombuffer(data, dtype="<i2").reshape(-1, 2) / 32768.0


def loudest(samples, window=0.05):
    """Level of the loudest stretch of `window` seconds, in dB below full scale (RMS)."""
    size = int(window * SAMPLE_RATE)
    energy = np.concatenate([[0.0], np.cumsum((samples**2).mean(axis=1))])
    if len(energy) <= size:
        return -200.0
    return 10 * np.log10(max((energy[size:] - energy[:-size]).max() / size, 1e-20))


class Game:
    """The installed program, run from a copy of its folder, and a player in front of it."""

    def __init__(self, desktop, installed):
        self.desktop = desktop
        self.folder = desktop.folder / "game"
        if not self.folder.exists():
            shutil.copytree(installed, self.folder)
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
        chooser = self.desktop.window(CHOOSER)
        left, top, _, _ = self.desktop.place(chooser)
        self.desktop.click(left + 336 * self.scale, top + MODES[mode] * self.scale)
        time.sleep(0.1)
        self.desktop.click(left + 452 * self.scale, top + 292 * self.scale)
        wait_for("the chooser to go", lambda: not self.desktop.windows(CHOOSER))

    def choose_by_keys(self, mode):
        wait_for("the chooser to take keys", lambda: self.desktop.active() == CHOOSER)
        self.desktop.key("Tab", "Tab", "space", *["Down"] * list(MODES).index(mode), "Return")
        wait_for("the chooser to go", lambda: not self.desktop.windows(CHOOSER))

    def play(self, mode):
        """Starts the program and a game, and waits until the board stands."""
        self.start()
        self.choose(mode)
        self.dealt()
        return self

    def dealt(self):
        """The kinds of a new board, once it takes picks."""
        self.desktop.window(MAIN)
        kinds = self.at_rest()
        time.sleep(DEAL_REST)
        return kinds

    def activate(self):
        self.desktop.run("xdotool", "windowactivate", "--sync", str(self.desktop.window(MAIN)))

    def place(self):
        """Left and top of the board on the screen, below the menu bar."""
        left, top, _, height = self.desktop.place(self.desktop.window(MAIN))
        return left, top + height - round(SURFACE[1] * self.scale)

    def grab(self):
        left, top = self.place()
        width, height = (round(side * self.scale) for side in SURFACE)
        picture = self.desktop.grab((left, top, left + width, top + height))
        return picture.resize(SURFACE, Image.BOX) if self.scale != 1 else picture

    def at_rest(self, patience=PATIENCE):
        """The kinds of all cells, once two looks in a row agree and a gem rests in every cell."""
        last = []

        def look():
            kinds = self.sprites.read(self.grab())
            agreed = kinds == last and all(k is not None for k in kinds)
            last[:] = kinds
            return kinds if agreed else None

        return wait_for("the board at rest", look, patience, step=0.15)

    def point(self, cell):
        left, top = self.place()
        row, column = divmod(cell, BOARD)
        return left + (column + 0.5) * CELL * self.scale, top + (row + 0.5) * CELL * self.scale

    def click(self, cell, button=1):
        self.desktop.click(*self.point(cell), button)
        time.sleep(0.05)

    def swap(self, a, b):
        self.click(a)
        self.click(b)
        self.desktop.move(2, 2)

    def swap_by_keys(self, a, b):
        """Goes to the cell from the corner, picks it and swaps it with its neighbour."""
        arrow = {1: "Right", -1: "Left", BOARD: "Down", -BOARD: "Up"}[b - a]
        self.desktop.key(
            "Home", "Page_Up", *["Right"] * (a % BOARD), *["Down"] * (a // BOARD), "Return", arrow
        )

    def drag(self, a, b):
        ax, ay = self.point(a)
        bx, by = self.point(b)
        way = f"mousemove {ax:.0f} {ay:.0f} mousedown 1 " + " ".join(
            f"mousemove {x:.0f} {y:.0f}" for x, y in (((ax + bx) / 2, (ay + by) / 2), (bx, by))
        )
        self.desktop.run("xdotool", *way.split(), "mouseup", "1")
        self.desktop.move(2, 2)

    def ended(self, patience=PATIENCE):
        """The exit code, once the program has ended."""
        try:
            return self.process.wait(patience)
        except subprocess.TimeoutExpired:
            raise AssertionError("the program did not end") from None


class Sprites:
    """Reads gems back from a picture of the board."""

    def __init__(self, folder):
        sheet, board = (
            np.asarray(Image.open(folder / "images" / name).convert("RGB")).astype(np.int16)
            for name in ("gemsheet1024x512.bmp", "Board.bmp")
        )
        self.board = board
        self.rest = [
            self._on_board(sheet[k * CELL : (k + 1) * CELL, :CELL], board) for k in range(8)
        ]

    @staticmethod
    def _on_board(sprite, board):
        solid = sprite.any(axis=2)[..., None]
        cells = [board[i // BOARD * CELL :, i % BOARD * CELL :][:CELL, :CELL] for i in range(64)]
        return [np.where(solid, sprite, cell) for cell in cells]

    def is_empty(self, picture):
        """Whether no gem stands or flies on the board; the message covers its middle."""
        pixels = np.asarray(picture).astype(np.int16)[:512]
        differs = np.abs(pixels - self.board[:512]).max(axis=2) > 24
        return not differs[:192].any() and not differs[448:].any()

    def read(self, picture, tolerance=12.0):
        """By cell the kind at rest, or None where no gem rests. The picked gem's target shows only
        in the cell's rim, so the middle decides."""
        pixels = np.asarray(picture).astype(np.int16)
        kinds = []
        for i in range(64):
            cell = pixels[i // BOARD * CELL :, i % BOARD * CELL :][:CELL, :CELL]
            errors = [np.abs(cell - rest[i])[9:55, 9:55].mean() for rest in self.rest]
            best = int(np.argmin(errors))
            kinds.append(best if errors[best] < tolerance else None)
        return kinds


def runs(kinds):
    """Cells that stand in a run of three or more."""
    found = set()
    rows = [[x + 8 * y for x in range(8)] for y in range(8)]
    for line in (*rows, *zip(*rows)):
        for i in range(6):
            triple = line[i : i + 3]
            if len({kinds[c] for c in triple}) == 1:
                found.update(triple)
    return found


def swaps(kinds):
    """All swaps of neighbours as (a, b, legal)."""
    for a in range(64):
        for b in [a + 1] * (a % 8 < 7) + [a + 8] * (a < 56):
            swapped = list(kinds)
            swapped[a], swapped[b] = kinds[b], kinds[a]
            yield a, b, bool(runs(swapped))


def legal_swaps(kinds):
    return [(a, b) for a, b, legal in swaps(kinds) if legal]


def legal_swap(kinds):
    return legal_swaps(kinds)[0]


def illegal_swap(kinds):
    return next((a, b) for a, b, legal in swaps(kinds) if not legal and kinds[a] != kinds[b])

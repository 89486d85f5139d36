# SPDX-License-Identifier: MIT
"""The desktop of the real-program tests under Wayland: sway without a screen or a card, with a
keyboard and a pointer that a program moves. sway refuses to run as root."""

import array
import json
import socket
import struct
import sys
import tempfile
import time
from pathlib import Path

from PIL import Image

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "tests/desktop"))
# pylint: disable=wrong-import-position
from desktop import Desktop, wait_for

CONFIG = """
output HEADLESS-1 resolution %dx%d
xwayland disable
default_border normal
for_window [app_id=".*"] floating enable
"""

# Key codes of the kernel's input events, by the names that xdotool gives the keys.
KEYS = {
    name: code
    for first, names in (
        (1, ["Escape"]),
        (16, "qwertyuiop"),
        (28, ["Return", "ctrl"]),
        (30, "asdfghjkl"),
        (42, ["shift"]),
        (44, "zxcvbnm"),
        (56, ["alt", "space"]),
        (59, [f"F{i}" for i in range(1, 11)]),
    )
    for code, name in enumerate(names, first)
}
MODIFIERS = {"shift": 1, "ctrl": 4, "alt": 8}
LEFT_BUTTON = 0x110  # the right and the middle one follow
BUTTONS = {1: LEFT_BUTTON, 2: LEFT_BUTTON + 2, 3: LEFT_BUTTON + 1}

KEYMAP = b"""xkb_keymap {
  xkb_keycodes { include "evdev" };
  xkb_types { include "complete" };
  xkb_compat { include "complete" };
  xkb_symbols { include "pc+us" };
};\0"""


class Seat:
    """A Wayland client with a virtual pointer and a virtual keyboard. Requests and events are words
    of 32 bits: object, size and opcode, arguments; see the protocols wayland,
    wlr-virtual-pointer-unstable-v1 and virtual-keyboard-unstable-v1."""

    DISPLAY = 1

    def __init__(self, path, size):
        self.size = size
        self.last_id = self.DISPLAY
        self.received = b""
        self.socket = socket.socket(socket.AF_UNIX)
        self.socket.connect(str(path))
        self.registry = self.create(self.DISPLAY, 1)
        self.names = {interface: name for name, interface in self.settle()}
        seat = self.bind("wl_seat")
        self.pointer = self.create(self.bind("zwlr_virtual_pointer_manager_v1"), 0, seat)
        self.keyboard = self.create(self.bind("zwp_virtual_keyboard_manager_v1"), 0, seat)
        with tempfile.TemporaryFile() as keymap:
            keymap.write(KEYMAP)
            keymap.flush()
            self.request(self.keyboard, 0, 1, len(KEYMAP), file=keymap)
        self.settle()

    def create(self, object_id, opcode, *arguments):
        """The object that a request makes, whose identifier is its last argument."""
        self.last_id += 1
        self.request(object_id, opcode, *arguments, self.last_id)
        return self.last_id

    def bind(self, interface):
        text = interface.encode() + b"\0"
        padding = b"\0" * (-len(text) % 4)
        return self.create(self.registry, 0, self.names[interface], len(text), text + padding, 1)

    def request(self, object_id, opcode, *arguments, file=None):
        body = b"".join(a if isinstance(a, bytes) else struct.pack("=I", a) for a in arguments)
        head = struct.pack("=II", object_id, 8 + len(body) << 16 | opcode)
        files = (
            []
            if file is None
            else [(socket.SOL_SOCKET, socket.SCM_RIGHTS, array.array("i", [file.fileno()]))]
        )
        self.socket.sendmsg([head + body], files)

    def settle(self):
        """Waits until all requests are done; gives the announced globals as (name, interface)."""
        callback = self.create(self.DISPLAY, 0)
        announced = []
        while True:
            object_id, opcode, body = self.event()
            if object_id == callback:
                return announced
            assert (object_id, opcode) != (self.DISPLAY, 0), f"sway refused a request: {body}"
            if (object_id, opcode) == (self.registry, 0):
                name, length = struct.unpack_from("=II", body)
                announced.append((name, body[8 : 7 + length].decode()))

    def event(self):
        while (
            len(self.received) < 8
            or len(self.received) < struct.unpack_from("=IHH", self.received)[2]
        ):
            data = self.socket.recv(4096)
            assert data, "sway ended"
            self.received += data
        object_id, opcode, size = struct.unpack_from("=IHH", self.received)
        body, self.received = self.received[8:size], self.received[size:]
        return object_id, opcode, body

    def point(self, opcode, *arguments):
        milliseconds = int(time.monotonic() * 1000) & 0xFFFFFFFF
        self.request(self.pointer, opcode, milliseconds, *arguments)
        self.request(self.pointer, 4)  # the end of a frame of events
        self.settle()

    def move(self, x, y):
        self.point(1, round(x), round(y), *self.size)

    def button(self, button, pressed):
        self.point(2, BUTTONS[button], int(pressed))

    def key(self, combination):
        *held, last = combination.split("+")
        self.request(self.keyboard, 2, sum(MODIFIERS[name] for name in held), 0, 0, 0)
        for pressed in (1, 0):
            self.request(
                self.keyboard, 1, int(time.monotonic() * 1000) & 0xFFFFFFFF, KEYS[last], pressed
            )
        self.request(self.keyboard, 2, 0, 0, 0, 0)
        self.settle()


class SwayDesktop(Desktop):
    """Answers as the desktop under X11 does."""

    def _start_screen(self):
        self.folder.chmod(0o700)
        config = self.folder / "sway.config"
        config.write_text(CONFIG % self.size)
        for name in ("DISPLAY", "WAYLAND_DISPLAY", "SWAYSOCK"):
            self.env.pop(name, None)
        self.env.update(
            XDG_SESSION_TYPE="wayland",
            WLR_BACKENDS="headless",
            WLR_LIBINPUT_NO_DEVICES="1",
            WLR_RENDERER="pixman",
        )
        self.spawn("sway", "-c", str(config), stdout=open(self.folder / "sway.log", "w"))
        display = wait_for(
            "the compositor",
            lambda: next(
                (path for path in self.folder.glob("wayland-*") if path.suffix != ".lock"), None
            ),
        )
        self.env["WAYLAND_DISPLAY"] = display.name
        self.env["SWAYSOCK"] = str(
            wait_for("sway's commands", lambda: next(self.folder.glob("sway-ipc.*"), None))
        )
        self.seat = Seat(display, self.size)

    def grab(self, box=None):
        path = self.folder / "seen.ppm"
        self.run("grim", "-t", "ppm", str(path))
        picture = Image.open(path).convert("RGB")
        return picture.crop(box) if box else picture

    def _views(self):
        """All windows as sway describes them."""
        waiting = [json.loads(self.run("swaymsg", "-t", "get_tree"))]
        while waiting:
            node = waiting.pop()
            waiting += node["nodes"] + node["floating_nodes"]
            if node.get("app_id") and node["visible"]:
                yield node

    def windows(self, title):
        return [view["id"] for view in self._views() if view["name"] == title]

    def focused(self, title):
        return wait_for(
            f"the focus of '{title}'",
            lambda: next(
                (view["id"] for view in self._views() if view["name"] == title and view["focused"]),
                None,
            ),
        )

    def app_id(self, title):
        return next(view["app_id"] for view in self._views() if view["name"] == title)

    def place(self, window):
        view = next(view for view in self._views() if view["id"] == window)
        outer, inner = view["rect"], view["window_rect"]
        return outer["x"] + inner["x"], outer["y"] + inner["y"], inner["width"], inner["height"]

    def move(self, x, y):
        self.seat.move(x, y)

    def click(self, x, y, button=1):
        self.seat.move(x, y)
        self.seat.button(button, True)
        self.seat.button(button, False)

    def key(self, *keys):
        for combination in keys:
            self.seat.key(combination)

    def type(self, text):
        for letter in text:
            self.seat.key(
                {" ": "space"}.get(
                    letter, "shift+" + letter.lower() if letter.isupper() else letter
                )
            )

    def close(self, title):
        self.run("swaymsg", f"[con_id={self.window(title)}] kill")

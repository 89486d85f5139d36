# SPDX-License-Identifier: MIT
"""The desktop of the real-program tests under Wayland: sway in a window as large as the screen
in memory, whose mouse and keys it takes. sway refuses to run as root."""

import json
import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "tests/desktop"))
from desktop import Desktop, wait_for

CONFIG = """
output X11-1 resolution %dx%d
xwayland disable
default_border normal
for_window [app_id=".*"] floating enable
"""


class SwayDesktop(Desktop):
    """Answers as the desktop under X11 does."""

    def _start_manager(self):
        self.folder.chmod(0o700)
        config = self.folder / "sway.config"
        config.write_text(CONFIG % self.size)
        self.spawn(
            *("sway", "--config", config),
            env=self.env | {"WLR_BACKENDS": "x11", "WLR_RENDERER": "pixman"},
            stdout=open(self.folder / "sway.log", "w"),
        )
        commands = wait_for("sway", lambda: next(self.folder.glob("sway-ipc.*"), None))
        display = next(self.folder.glob("wayland-*[0-9]")).name
        self.env.update(SWAYSOCK=str(commands), WAYLAND_DISPLAY=display, XDG_SESSION_TYPE="wayland")

    def _views(self):
        """All windows as sway describes them."""
        waiting = [json.loads(self.run("swaymsg", "-t", "get_tree"))]
        while waiting:
            node = waiting.pop()
            waiting += node["nodes"] + node["floating_nodes"]
            if node.get("app_id") and node["visible"]:
                yield node

    def _view(self, window):
        return next(view for view in self._views() if view["id"] == window)

    def windows(self, title):
        return [view["id"] for view in self._views() if view["name"] == title]

    def focused(self, title):
        window = self.window(title)
        wait_for(f"the focus of '{title}'", lambda: self._view(window)["focused"])
        return window

    def app_id(self, title):
        return self._view(self.window(title))["app_id"]

    def place(self, window):
        view = self._view(window)
        outer, inner = view["rect"], view["window_rect"]
        return outer["x"] + inner["x"], outer["y"] + inner["y"], inner["width"], inner["height"]

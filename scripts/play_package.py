# SPDX-License-Identifier: MIT
"""The part of scripts/prove-package that plays in its machine: the folder of a minimal Debian in
which first.deb and newer.deb lie in /srv."""

import re
import subprocess
import sys
from pathlib import Path

from PIL import ImageChops

from played_round import place_of_score, play_round, quit_game
from desktop import CHOOSER, MAIN, Desktop, Game, Recording, Sprites, loudest, wait_for

SILENCE = -70.0  # dB
HEARD_SECONDS = 4
COLOURS_OF_TEXT = 16  # more than those of a window without its text
INSTALLED = "/usr/lib/glimmerfall"
ENTRY = "/usr/share/applications/org.glimmerfall.Glimmerfall.desktop"
machine = Path(sys.argv[1])


def inside(*command):
    settings = "PATH=/usr/sbin:/usr/bin:/sbin:/bin", "DEBIAN_FRONTEND=noninteractive"
    command = ("chroot", machine, "env", "-i", *settings, *command)
    result = subprocess.run(command, capture_output=True, text=True, check=False)
    assert result.returncode == 0, f"{' '.join(map(str, command))}: {result.stderr}"
    return result.stdout


def apt(*words):
    inside("apt-get", "-q", "-y", "--no-install-recommends", *words)


def own_folder(player):
    return machine / f"home/{player}/.local/share/glimmerfall"


class Player(Game):
    """A plain user of the machine, in front of a screen of their own."""

    # pylint: disable-next=super-init-not-called # which copies a folder of the game
    def __init__(self, desktop, name):
        self.desktop, self.name = desktop, name
        self.scale = 1
        self.sprites = Sprites(machine / "usr/share/games/glimmerfall")
        if not (machine / "home" / name).exists():
            inside("useradd", "--create-home", name)
        sounds = f"/tmp/sound-{desktop.display[1:]}"
        module = ("module-native-protocol-unix", "auth-anonymous=1", f"socket={machine}{sounds}")
        desktop.run("pactl", "load-module", *module)
        self.settings = f"export DISPLAY={desktop.display} PULSE_SERVER=unix:{sounds}"

    # pylint: disable-next=arguments-differ
    def start(self, command="glimmerfall", **more):
        login = ("chroot", machine, "su", "--login", self.name)
        self.process = self.desktop.spawn(
            *login, "--command", f"{self.settings}; {command}", **more
        )
        self.desktop.window(CHOOSER)
        return self

    def table(self):
        """The high scores as they are shown."""
        self.desktop.key("ctrl+s")
        left, top, width, height = self.desktop.place(self.desktop.focused("High Scores..."))
        looks = [None]

        def painted():
            looks.append(self.desktop.grab((left, top, left + width, top + height)))
            return (
                len(looks[-1].getcolors(width * height)) > COLOURS_OF_TEXT
                and looks[-1] == looks[-2]
            )

        wait_for("the table to be painted", painted, step=0.2)
        self.desktop.key("Escape")
        return looks[-1]

    def look_up_scores(self, command="glimmerfall"):
        self.start(command)
        self.choose("Frantic")
        self.desktop.focused(MAIN)
        picture = self.table()
        quit_game(self)
        return picture


def first_player(name="ann"):
    """Installs the package and plays: gives what must be the same ever after."""
    apt("install", "/srv/first.deb")
    media = [
        package
        for package in inside("dpkg-query", "-W", "-f", "${Package} ").split()
        if package.startswith("gstreamer")
    ]
    print(f"Installed by apt alone; of the media library: {' '.join(media)}.", flush=True)
    with Desktop() as desktop:
        player = Player(desktop, name).start()
        play_round(player, own_folder(name))
        print("The command starts the game, and a score is entered.", flush=True)
        shown = player.look_up_scores()
    return shown, scores(name)


def scores(player):
    return {path.name: path.read_bytes() for path in own_folder(player).glob("score*.gwk")}


def hear_music():
    with Desktop() as desktop:
        player = Player(desktop, "ann").start()
        player.choose("Relaxed")
        desktop.focused(MAIN)
        player.at_rest()
        desktop.key("ctrl+p")
        level = loudest(Recording(desktop).more(HEARD_SECONDS))
        assert level > SILENCE, f"no music: {level:.0f} dB"
        quit_game(player)
    print(
        f"The music is heard, at {level:.0f} dB, with the package's dependencies alone.", flush=True
    )


def upgrade(shown):
    music = own_folder("ann") / "music"
    (music / "mine.mp3").write_bytes(b"mine")
    before = {path.name for path in music.iterdir()}
    apt("install", "/srv/newer.deb")
    apt("install", "libglib2.0-bin")  # to start the game by its desktop entry
    with Desktop() as desktop:
        after_upgrade = Player(desktop, "ann").look_up_scores(f"gio launch {ENTRY}")
    assert not ImageChops.difference(shown, after_upgrade).getbbox(), "the table looks different"
    after = {path.name for path in music.iterdir()}
    assert (
        "mine.mp3" in after and len(before - after) == len(after - before) == 1
    ), f"{before} became {after}"
    print(
        f"After an upgrade the desktop entry starts the game and the table looks the same; of the "
        f"tracks {before - after} went, {after - before} came, and the player's own stayed.",
        flush=True,
    )


def second_player(shown):
    with Desktop() as desktop:
        other = Player(desktop, "ben").look_up_scores()
    assert ImageChops.difference(shown, other).getbbox(), "two players have one table"
    print("A second player's table is another.", flush=True)


def full_home(name):
    """A home whose one page of memory holds what the sound library wants there."""
    home = machine / "home" / name
    subprocess.run(["mount", "-t", "tmpfs", "-o", "size=4k,mode=777", "none", home], check=True)
    cookie = home / ".config/pulse/cookie"
    cookie.parent.mkdir(parents=True)
    cookie.write_bytes(bytes(256))
    return home


def play_without_home(name, *more):
    with Desktop() as desktop:
        player = Player(desktop, name)
        home = full_home(name)
        if more:
            subprocess.run(["mount", *more, home], check=True)
        errors = open(desktop.folder / "errors", "w+")
        player.start(stderr=errors)
        subprocess.check_output(["pgrep", "-f", f"^{INSTALLED}/glimmerfall"])
        player.choose("Frantic")
        desktop.focused(MAIN)
        player.at_rest()
        quit_game(player)
        errors.seek(0)
        complaint = errors.read()
        assert re.fullmatch("glimmerfall: .*cannot be written.*\n", complaint), complaint
        assert not list(home.rglob("score*")), "a score was kept"
    print(
        f"From a home that is {'read-only' if more else 'full'} it plays and says: {complaint}",
        end="",
        flush=True,
    )


def purge(kept):
    apt("purge", "glimmerfall")
    left = inside(
        "find", "/usr", "/etc", "/var", "/opt", "-xdev", "-iname", "*glimmerfall*"
    ).split()
    assert not left, f"a purge leaves {left}"
    assert scores("ann") == kept, "a purge changed the scores"
    print(
        "After a purge only the players' folders are left, with the name at place "
        f"{place_of_score(own_folder('ann'))}.",
        flush=True,
    )


def main():
    shown, kept = first_player()
    hear_music()
    upgrade(shown)
    second_player(shown)
    play_without_home("cat")
    play_without_home("dan", "-o", "remount,ro")
    purge(kept)


if __name__ == "__main__":
    main()

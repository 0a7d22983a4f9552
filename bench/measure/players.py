"""Other ways to play a clip: each waits, and plays the file that it is told, or a clip of its own for a key."""

import importlib.util
import os
import shutil
import subprocess
import sys
import time
from dataclasses import dataclass
from pathlib import Path
from typing import Callable

from harness.private_user import PrivateUser
from harness.processes import end
from lines import Lines

PEERS = Path(__file__).parents[1] / "peers"


def _built(program: str) -> Callable[[Path], list[str | Path] | None]:
    return lambda programs: [programs / program] if (programs / program).exists() else None


def _script(name: str, module: str) -> Callable[[Path], list[str | Path] | None]:
    def command(_: Path) -> list[str | Path] | None:
        check = subprocess.run([sys.executable, "-c", module], capture_output=True)
        return [sys.executable, "-B", PEERS / name] if check.returncode == 0 else None

    return command


def _spawned_mpg123(_: Path) -> list[str | Path] | None:
    # Waits for the one before, too: a player that is spawned can only be killed, and two at a time are no answer.
    loop = 'echo ready; while read -r file; do mpg123 -q -o pulse "$file" & done'
    return ["sh", "-c", loop] if shutil.which("mpg123") else None


def _bucklespring(_: Path) -> list[str | Path] | None:
    program = shutil.which("buckle", path=f"{os.environ.get('PATH', os.defpath)}:/usr/games")
    return [program] if program and importlib.util.find_spec("Xlib") else None


class Player:
    """A running one."""

    def __init__(self, user: PrivateUser, command: list[str | Path]) -> None:
        self._process = user.start(
            command, stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=user.log(f"player-{Path(command[0]).name}")
        )
        Lines(self._process.stdout).wait_for("ready")

    def play(self, file: Path) -> int:
        """Tells it to play a file, and returns when it was told (ns of the monotonic clock)."""
        told = time.monotonic_ns()
        os.write(self._process.stdin.fileno(), f"{file}\n".encode())
        return told

    def close(self) -> None:
        end(self._process)


class KeyPlayer(Player):
    """A running one that answers each key of its display with a clip of its own."""

    KEY = "Control_L"  # alone it changes nothing in other programs

    def __init__(self, user: PrivateUser, command: list[str | Path]) -> None:
        from Xlib import XK
        from Xlib.display import Display

        log = user.log(f"player-{Path(command[0]).name}")
        self._process = user.start(command, stdout=log, stderr=subprocess.STDOUT)
        self._display = Display(user.environment["DISPLAY"])
        self._key = self._display.keysym_to_keycode(XK.string_to_keysym(self.KEY))

    def play(self, _: Path) -> int:
        """Strikes the key, and returns when it was pressed (ns of the monotonic clock)."""
        from Xlib import X
        from Xlib.ext import xtest

        pressed = time.monotonic_ns()
        xtest.fake_input(self._display, X.KeyPress, self._key)
        xtest.fake_input(self._display, X.KeyRelease, self._key)
        self._display.sync()  # the display tells those who record its keys when it answers someone
        return pressed

    def close(self) -> None:
        self._display.close()
        super().close()


@dataclass(frozen=True)
class Kind:
    """A way to play: how it is named, the command that waits, none where it is not installed, and how it is told."""

    name: str
    command: Callable[[Path], list[str | Path] | None]
    player: type[Player] = Player


FLOOR = Kind("floor", _built("bench-pulse"))
PEER_KINDS = (
    Kind("spawned mpg123", _spawned_mpg123),
    Kind("GStreamer playbin", _script("gstreamer.py", "import gi; gi.require_version('Gst', '1.0')")),
    Kind("SDL_mixer", _script("sdl_mixer.py", "import pygame.mixer")),
    Kind("OpenAL Soft", _built("bench-openal")),
    Kind("QMediaPlayer", _built("bench-qmediaplayer")),
    Kind("bucklespring", _bucklespring, KeyPlayer),
)

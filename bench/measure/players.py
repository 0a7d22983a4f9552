"""Other ways to play a clip: each waits, and plays the file that it is told."""

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


@dataclass(frozen=True)
class Kind:
    """A way to play: how it is named, and the command that waits; none where it is not installed."""

    name: str
    command: Callable[[Path], list[str | Path] | None]


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


FLOOR = Kind("floor", _built("bench-pulse"))
PEER_KINDS = (
    Kind("spawned mpg123", _spawned_mpg123),
    Kind("GStreamer playbin", _script("gstreamer.py", "import gi; gi.require_version('Gst', '1.0')")),
    Kind("SDL_mixer", _script("sdl_mixer.py", "import pygame.mixer")),
    Kind("OpenAL Soft", _built("bench-openal")),
    Kind("QMediaPlayer", _built("bench-qmediaplayer")),
)


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

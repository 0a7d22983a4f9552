"""A private sound server."""

import signal
import subprocess
from pathlib import Path
from subprocess import STDOUT

from harness.desktop import Desktop
from harness.waiting import wait_until


class SoundServer:
    """A sound server whose only device is a sink that nobody hears but the recorder."""

    def __init__(self, desktop: Desktop) -> None:
        self._desktop = desktop
        self._server = desktop.start(
            [Path(__file__).parent / "sound-server"],
            stdout=desktop.log("sound-server"),
            stderr=STDOUT,
        )
        wait_until(self._answers, "the sound server")

    def _answers(self) -> bool:
        answer = subprocess.run(["pactl", "info"], env=self._desktop.environment, capture_output=True, check=False)
        return answer.returncode == 0

    def freeze(self) -> None:
        self._server.send_signal(signal.SIGSTOP)

    def thaw(self) -> None:
        self._server.send_signal(signal.SIGCONT)

    def kill(self) -> None:
        """Ends the server the hard way, as a crash does."""
        self._server.kill()
        self._server.wait()

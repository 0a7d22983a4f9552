"""The simulated laptop, driven by lines on its standard input."""

from pathlib import Path
from subprocess import PIPE, STDOUT

from harness.desktop import Desktop
from harness.waiting import wait_until


class SimulatedLaptop:
    """A laptop that rests on a table until it is told otherwise."""

    def __init__(self, desktop: Desktop, programs: Path, *options: str) -> None:
        self._file = desktop.folder / "laptop.log"
        self._began = self._file.stat().st_size if self._file.exists() else 0
        command = [programs / "quiverly-simulate", "--verbose", *options]
        self._process = desktop.start(command, stdin=PIPE, stdout=desktop.log("laptop"), stderr=STDOUT)
        self.wait_for("ready")

    def said(self) -> str:
        """What this laptop told so far."""
        return self._file.read_bytes()[self._began :].decode()

    def wait_for(self, text: str) -> None:
        """Waits until the laptop has told something."""

        def look() -> bool:
            if self._process.poll() is not None:
                raise RuntimeError(f"the simulated laptop ended: {self.said()}")
            return text in self.said()

        wait_until(look, f"the simulated laptop to say “{text}”")

    def clients(self) -> int:
        """How many are connected."""
        said = self.said()
        return said.count(" came") - said.count(" left ")

    def tell(self, command: str) -> None:
        assert self._process.stdin
        self._process.stdin.write(command.encode() + b"\n")
        self._process.stdin.flush()

    def slap(self, peak: float) -> None:
        """Slaps the laptop; `peak` in g."""
        self.tell(f"slap {peak}")

    def quit(self) -> None:
        self.tell("quit")
        self._process.wait(60)

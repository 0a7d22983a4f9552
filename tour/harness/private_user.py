"""A private user: folders, programs and session bus apart from those of everyone else on the machine."""

import os
import shutil
import subprocess
import tempfile
from contextlib import ExitStack
from pathlib import Path
from typing import IO, Self, Sequence

from harness.processes import end, launch

# Nothing else of the developer's own session reaches the programs under test.
INHERITED = ("PATH", "ASAN_OPTIONS", "UBSAN_OPTIONS", "TSAN_OPTIONS", "LSAN_OPTIONS")


class PrivateUser:
    """The user's folders stand below `folder`; programs are started in `environment`. Everything ends with close()."""

    def __init__(self) -> None:
        self._closing = ExitStack()
        # Below /tmp, because the path of a socket holds 107 bytes and no more.
        self.folder = Path(tempfile.mkdtemp(prefix="quiverly-", dir="/tmp"))
        self._closing.callback(shutil.rmtree, self.folder, ignore_errors=True)
        for folder in (self.home, self.data, self.configuration, self.runtime):
            folder.mkdir(mode=0o700)
        (self.configuration / "pulse").mkdir()
        (self.configuration / "pulse" / "client.conf").write_text("autospawn = no\n")
        inherited = {name: os.environ[name] for name in INHERITED if name in os.environ}
        self.environment = inherited | {
            "LANG": "C.UTF-8",
            "HOME": str(self.home),
            "XDG_DATA_HOME": str(self.data),
            "XDG_CONFIG_HOME": str(self.configuration),
            "XDG_CACHE_HOME": str(self.folder / "cache"),
            "XDG_RUNTIME_DIR": str(self.runtime),
        }
        try:
            self.environment["DBUS_SESSION_BUS_ADDRESS"] = self._start_bus()
        except BaseException:
            self.close()
            raise

    def __enter__(self) -> Self:
        return self

    def __exit__(self, *_: object) -> None:
        self.close()

    def close(self) -> None:
        self._closing.close()

    @property
    def home(self) -> Path:
        return self.folder / "home"

    @property
    def data(self) -> Path:
        return self.folder / "data"

    @property
    def configuration(self) -> Path:
        return self.folder / "config"

    @property
    def runtime(self) -> Path:
        return self.folder / "run"

    def start(self, command: Sequence[str | Path], **options: object) -> subprocess.Popen[bytes]:
        """Starts a program in the user's environment; it ends with the user at the latest."""
        process = launch(command, self.environment, **options)
        self._closing.callback(end, process)
        return process

    def log(self, name: str) -> IO[bytes]:
        """A file for what a program says; `logs` reads them all."""
        return self._closing.enter_context((self.folder / f"{name}.log").open("ab"))

    def logs(self) -> str:
        """What all programs said so far, for the report of a failure."""
        texts = ((path.stem, path.read_text(errors="replace")) for path in sorted(self.folder.glob("*.log")))
        return "\n".join(f"--- {name}\n{text}" for name, text in texts if text)

    def _start_bus(self) -> str:
        told, tell = os.pipe()
        self.start(
            ["dbus-daemon", "--session", "--nofork", "--nopidfile", f"--print-address={tell}"],
            pass_fds=[tell],
            stdout=self.log("bus"),
            stderr=subprocess.STDOUT,
        )
        return self._first_line(told, tell, "the session bus")

    def _first_line(self, told: int, tell: int, who: str) -> str:
        os.close(tell)
        with os.fdopen(told) as answers:
            line = answers.readline().strip()
        if not line:
            raise RuntimeError(f"{who} does not start\n{self.logs()}")
        return line

"""A private desktop: display, window manager, session bus, folders."""

import os
import shutil
import subprocess
import tempfile
from contextlib import ExitStack
from pathlib import Path
from typing import IO, Sequence

from harness.processes import end, launch
from harness.waiting import wait_until

# Nothing else of the developer's own session reaches the programs under test.
INHERITED = ("PATH", "ASAN_OPTIONS", "UBSAN_OPTIONS", "TSAN_OPTIONS", "LSAN_OPTIONS")


class Desktop:
    """One user at one screen, apart from every other desktop on the machine. Everything ends with close().

    The folders of the user stand below `folder`; programs are started in `environment`.
    """

    def __init__(self, width: int = 1024, height: int = 768) -> None:
        self._closing = ExitStack()
        # Below /tmp, because the path of a socket holds 107 bytes and no more.
        self.folder = Path(tempfile.mkdtemp(prefix="quiverly-", dir="/tmp"))
        self._closing.callback(shutil.rmtree, self.folder, ignore_errors=True)
        try:
            self.environment = self._make_user()
            self.environment["DISPLAY"] = self._start_display(width, height)
            self.environment["DBUS_SESSION_BUS_ADDRESS"] = self._start_bus()
            self._start_window_manager()
        except BaseException:
            self.close()
            raise

    def __enter__(self) -> "Desktop":
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
        """Starts a program on this desktop; it ends with the desktop at the latest."""
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

    def opened_pages(self) -> list[str]:
        """The addresses that programs on this desktop wanted opened, in order."""
        pages = self.folder / "opened-pages"
        return pages.read_text().splitlines() if pages.exists() else []

    def wait_for_pages(self, count: int) -> None:
        wait_until(lambda: len(self.opened_pages()) >= count, f"{count} opened pages")

    def active_window(self) -> str:
        """The title of the window in front; empty when there is none."""
        identifier = self._ask("xprop", "-root", "-notype", "_NET_ACTIVE_WINDOW").stdout.decode().split()[-1]
        answer = self._ask("xprop", "-id", identifier, "-notype", "WM_NAME").stdout.decode()
        return answer.partition(" = ")[2].strip().strip('"')

    def close_window(self, title: str) -> None:
        """Closes a window as a click into the corner of its frame does."""
        wait_until(lambda: self._ask("wmctrl", "-F", "-c", title).returncode == 0, f"the window “{title}”")

    def screenshot(self, file: Path) -> None:
        """Writes what the screen shows, once nothing moves, to a picture file."""
        shown = b""

        def at_rest() -> bool:
            nonlocal shown
            before, shown = shown, self._picture()
            return shown == before

        wait_until(at_rest, "a screen on which nothing moves", interval=0.1)
        subprocess.run(["convert", "ppm:-", str(file)], input=shown, check=True)

    def lose_display(self) -> None:
        self._display.kill()
        self._display.wait()

    def _make_user(self) -> dict[str, str]:
        for folder in (self.home, self.data, self.configuration, self.runtime):
            folder.mkdir(mode=0o700)
        (self.configuration / "pulse").mkdir()
        (self.configuration / "pulse" / "client.conf").write_text("autospawn = no\n")
        programs = self.folder / "bin"
        programs.mkdir()
        opener = programs / "xdg-open"
        opener.write_text(f'#!/bin/sh\nprintf "%s\\n" "$1" >>"{self.folder}/opened-pages"\n')
        opener.chmod(0o755)

        environment = {name: os.environ[name] for name in INHERITED if name in os.environ}
        # The keyboard library copies texts that have a length but no end, as it may.
        environment["ASAN_OPTIONS"] = f"{environment.get('ASAN_OPTIONS', '')}:strict_string_checks=0"
        environment["PATH"] = f"{programs}:{environment.get('PATH', os.defpath)}"
        return environment | {
            "LANG": "C.UTF-8",
            "HOME": str(self.home),
            "XDG_DATA_HOME": str(self.data),
            "XDG_CONFIG_HOME": str(self.configuration),
            "XDG_CACHE_HOME": str(self.folder / "cache"),
            "XDG_RUNTIME_DIR": str(self.runtime),
            "QT_QPA_PLATFORM": "xcb",
            "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1",
        }

    def _start_display(self, width: int, height: int) -> str:
        """Starts a display under the first free number, which the X server finds and takes by itself."""
        told, tell = os.pipe()
        self._display = self.start(
            ["Xvfb", "-displayfd", str(tell), "-screen", "0", f"{width}x{height}x24", "-nolisten", "tcp", "-noreset"],
            pass_fds=[tell],
            stdout=self.log("display"),
            stderr=subprocess.STDOUT,
        )
        return ":" + self._first_line(told, tell, "the X server")

    def _start_bus(self) -> str:
        told, tell = os.pipe()
        self.start(
            ["dbus-daemon", "--session", "--nofork", "--nopidfile", f"--print-address={tell}"],
            pass_fds=[tell],
            stdout=self.log("bus"),
            stderr=subprocess.STDOUT,
        )
        return self._first_line(told, tell, "the session bus")

    def _start_window_manager(self) -> None:
        self.start(["openbox", "--sm-disable"], stdout=self.log("window-manager"), stderr=subprocess.STDOUT)
        wait_until(self._is_managed, "the window manager")

    def _is_managed(self) -> bool:
        return b"window id" in self._ask("xprop", "-root", "_NET_SUPPORTING_WM_CHECK").stdout

    def _picture(self) -> bytes:
        grabbed = self._ask("import", "-window", "root", "ppm:-")
        grabbed.check_returncode()
        return grabbed.stdout

    def _ask(self, *command: str) -> subprocess.CompletedProcess[bytes]:
        return subprocess.run(command, env=self.environment, capture_output=True, check=False)

    def _first_line(self, told: int, tell: int, who: str) -> str:
        os.close(tell)
        with os.fdopen(told) as answers:
            line = answers.readline().strip()
        if not line:
            raise RuntimeError(f"{who} does not start\n{self.logs()}")
        return line

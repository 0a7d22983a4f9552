"""A private desktop: display and window manager."""

import os
import re
import subprocess
from pathlib import Path
from typing import NamedTuple

from harness.private_user import PrivateUser
from harness.waiting import wait_until


class WindowPlace(NamedTuple):
    """A rectangle of the screen, in pixels."""

    x: int
    y: int
    width: int
    height: int


class Desktop(PrivateUser):
    """One user at one screen, separate from every other desktop on the machine."""

    def __init__(self, width: int = 1024, height: int = 768) -> None:
        super().__init__()
        try:
            self._prepare_environment()
            self.environment["DISPLAY"] = self._start_display(width, height)
            self._tell_bus_of_display()
            self._start_window_manager()
        except BaseException:
            self.close()
            raise

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

    def paint_background(self, colour: str) -> None:
        self._ask("xsetroot", "-solid", colour).check_returncode()

    def place_window(self, title: str, left: int, top: int) -> None:
        """Moves the frame of a window, in pixels of the screen."""
        move = ("wmctrl", "-F", "-r", title, "-e", f"0,{left},{top},-1,-1")
        wait_until(lambda: self._ask(*move).returncode == 0, f"the window “{title}”")

    def press(self, title: str, across: float, down: float, seconds: float) -> None:
        """Holds the mouse's button on a point of a window, given in parts of its width and height."""
        place = self.window_place(title)
        x, y = place.x + across * place.width, place.y + down * place.height
        hold = ("mousedown", "1", "sleep", str(seconds), "mouseup", "1")
        self._ask("xdotool", "mousemove", str(round(x)), str(round(y)), *hold).check_returncode()

    def close_window(self, title: str) -> None:
        """Closes a window as a click into the corner of its frame does."""
        wait_until(lambda: self._ask("wmctrl", "-F", "-c", title).returncode == 0, f"the window “{title}”")

    def window_colour(self, title: str) -> str:
        """The colour near the lower left corner of a window, such as "#FFFFFF"; empty when there is no such window."""
        crop = ["-gravity", "SouthWest", "-crop", "1x1+5+5"]
        told = self._ask("import", "-window", title, *crop, "txt:-").stdout.decode()
        found = re.search(r"#[0-9A-F]{6}", told)
        return found[0] if found else ""

    def window_place(self, title: str) -> WindowPlace:
        """Where a window is on the screen, without its frame."""

        def numbers() -> list[str]:
            told = self._ask("xwininfo", "-name", title).stdout.decode()
            return re.findall(r"(?:Absolute upper-left [XY]|Width|Height): +(-?\d+)", told)

        return WindowPlace(*map(int, wait_until(numbers, f"the window “{title}”")))

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

    def _prepare_environment(self) -> None:
        programs = self.folder / "bin"
        programs.mkdir()
        opener = programs / "xdg-open"
        opener.write_text(f'#!/bin/sh\nprintf "%s\\n" "$1" >>"{self.folder}/opened-pages"\n')
        opener.chmod(0o755)
        self.environment["PATH"] = f"{programs}:{self.environment.get('PATH', os.defpath)}"
        # The keyboard library copies texts that have a length but no terminator, which is not an error.
        self.environment["ASAN_OPTIONS"] = f"{self.environment.get('ASAN_OPTIONS', '')}:strict_string_checks=0"
        self.environment["QT_QPA_PLATFORM"] = "xcb"
        self.environment["QT_LINUX_ACCESSIBILITY_ALWAYS_ON"] = "1"

    def _start_display(self, width: int, height: int) -> str:
        """Starts an X server, which chooses the display's number itself."""
        told, tell = os.pipe()
        self._display = self.start(
            ["Xvfb", "-displayfd", str(tell), "-screen", "0", f"{width}x{height}x24", "-nolisten", "tcp", "-noreset"],
            pass_fds=[tell],
            stdout=self.log("display"),
            stderr=subprocess.STDOUT,
        )
        return ":" + self._first_line(told, tell, "the X server")

    def _tell_bus_of_display(self) -> None:
        """Programs that the bus starts need the display too: one of them presses the keys for assistive tools."""
        command = ["dbus-update-activation-environment", "DISPLAY"]
        subprocess.run(command, env=self.environment, check=True, timeout=60)

    def _start_window_manager(self) -> None:
        managed = self.folder / "windows-are-managed"
        self.start(
            ["openbox", "--sm-disable", "--startup", f"touch {managed}"],
            stdout=self.log("window-manager"),
            stderr=subprocess.STDOUT,
        )
        wait_until(managed.exists, "the window manager")

    def _picture(self) -> bytes:
        grabbed = self._ask("import", "-window", "root", "ppm:-")
        grabbed.check_returncode()
        return grabbed.stdout

    def _ask(self, *command: str) -> subprocess.CompletedProcess[bytes]:
        return subprocess.run(command, env=self.environment, capture_output=True, check=False)

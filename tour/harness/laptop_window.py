"""The simulated laptop in its window, used with the mouse."""

import re
from pathlib import Path
from subprocess import PIPE, STDOUT
from typing import Sequence

from harness.accessibility import BUTTON, Accessible, Atspi, children, programs, visible
from harness.desktop import Desktop
from harness.waiting import wait_until

TITLE = "Quiverly: simulated laptop"
STRIP = "What Quiverly’s detector makes of the last 8 seconds"


class LaptopWindow:
    """One run of the simulated laptop with its window, or the window that another program has started."""

    def __init__(self, desktop: Desktop, command: Sequence[str | Path] | None = None) -> None:
        self._desktop = desktop
        if command:
            self.process = desktop.start(command, stdin=PIPE, stdout=desktop.log("laptop"), stderr=STDOUT)
        self._frame = wait_until(self._find_frame, "the laptop's window")

    def texts(self) -> list[str]:
        """Names of all that shows, from top to bottom."""
        return [name for each in visible(self._frame) if (name := each.get_name())]

    def wait_for(self, text: str) -> None:
        wait_until(lambda: text in self.texts(), f"the laptop's window to show “{text}”")

    def amplitudes(self) -> list[float]:
        """Of the slaps that the strip shows, in g, from the first to the last."""
        shown = self._find(STRIP, None).get_description()
        return [float(amplitude) for amplitude in re.findall(r"(\d+\.\d{3})g", shown)]

    def press_laptop(self) -> None:
        """Presses the mouse button on the laptop's deck and releases it."""
        place = self._find("Laptop", BUTTON).get_extents(Atspi.CoordType.SCREEN)
        self._click(place.x + place.width // 2, place.y + place.height * 7 // 10)

    def click(self, button: str) -> None:
        """Clicks a button with the mouse."""
        place = self._find(button, BUTTON).get_extents(Atspi.CoordType.SCREEN)
        self._click(place.x + place.width // 2, place.y + place.height // 2)

    def type(self, line: str) -> None:
        """Types into the terminal from which the laptop was started."""
        assert self.process.stdin
        self.process.stdin.write(line.encode() + b"\n")
        self.process.stdin.flush()

    def close(self) -> None:
        self._desktop.close_window(TITLE)

    def is_shown(self) -> bool:
        return self._find_frame() is not None

    def _click(self, x: int, y: int) -> None:
        Atspi.generate_mouse_event(x, y, "b1c")

    def _find_frame(self) -> Accessible | None:
        windows = (window for program in programs(self._desktop) for window in children(program))
        return next((window for window in windows if window.get_name() == TITLE), None)

    def _find(self, name: str, role: Atspi.Role | None) -> Accessible:
        def find() -> Accessible | None:
            same_name = (each for each in visible(self._frame) if each.get_name() == name)
            return next((each for each in same_name if role is None or each.get_role() == role), None)

        return wait_until(find, f"“{name}” in the laptop's window")

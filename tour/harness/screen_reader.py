"""A screen reader on a desktop, and what it speaks."""

import os
import re
import tty
from subprocess import STDOUT

from harness.desktop import Desktop
from harness.waiting import NeverHappened, wait_until

SPOKEN = re.compile(r"SPEECH OUTPUT: '(.*?)'")


class ScreenReader:
    """Orca, without a voice: what it would speak is read from its debug log."""

    def __init__(self, desktop: Desktop) -> None:
        self._log = desktop.folder / "screen-reader-debug.out"
        self._heard = 0  # of what it has spoken, so many were waited for
        desktop.start(
            ["orca", "--debug-file", self._open_terminal(desktop)],
            cwd=desktop.home,
            stdout=desktop.log("screen-reader"),
            stderr=STDOUT,
        )
        wait_until(lambda: "registering listener for: window:activate" in self._read_log(), "the screen reader")

    def _open_terminal(self, desktop: Desktop) -> str:
        """A terminal whose output is the log. To a terminal Orca writes every line at once, to a file it does not."""
        screen, line = os.openpty()
        tty.setraw(line)
        desktop.start(["cat"], stdin=screen, stdout=self._log.open("wb"))
        os.close(screen)
        return os.ttyname(line)

    def spoken(self) -> list[str]:
        """All that it has spoken, in order."""
        return SPOKEN.findall(self._read_log())

    def wait_for(self, text: str) -> None:
        """Waits until it speaks a text, after what was last waited for."""

        def look() -> bool:
            found = (n for n, each in enumerate(self.spoken()) if n >= self._heard and text in each)
            position = next(found, None)
            if position is not None:
                self._heard = position + 1
            return position is not None

        try:
            wait_until(look, f"the screen reader to speak “{text}”")
        except NeverHappened as failure:
            raise NeverHappened(f"{failure}; it has spoken {self.spoken()}") from None

    def _read_log(self) -> str:
        return self._log.read_text(errors="replace")

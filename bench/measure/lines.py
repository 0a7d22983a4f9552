"""What a program prints, line by line."""

import queue
import threading
from typing import IO

PATIENCE = 60  # s


class Lines:
    def __init__(self, stream: IO[bytes]) -> None:
        self._lines: queue.Queue[str] = queue.Queue()
        threading.Thread(target=self._read, args=[stream], daemon=True).start()

    def wait_for(self, beginning: str) -> str:
        """The next line that begins like this; those before it are dropped."""
        while True:
            try:
                line = self._lines.get(timeout=PATIENCE)
            except queue.Empty:
                raise TimeoutError(f"no line that begins with “{beginning}”") from None
            if line.startswith(beginning):
                return line

    def _read(self, stream: IO[bytes]) -> None:
        for line in stream:
            self._lines.put(line.decode(errors="replace").rstrip("\n"))

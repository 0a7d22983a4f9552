"""A text that grows on the terminal, coloured there, and plain in a file."""

import sys
from pathlib import Path
from typing import TextIO

BOLD, DIM, GREEN, RED = "1", "2", "32", "31"


class Transcript:
    def __init__(self, file: Path, terminal: TextIO = sys.stdout) -> None:
        self._file = file.open("w", encoding="utf-8")
        self._terminal = terminal

    def title(self, title: str) -> None:
        self._line("")
        self._line(f"  {title}", BOLD)
        self._line("  " + "─" * len(title), DIM)

    def heading(self, heading: str) -> None:
        self._line("")
        self._line(f"  {heading}", BOLD)

    def text(self, text: str) -> None:
        self._line(f"  {text}")

    def quiet(self, text: str) -> None:
        self._line(f"  {text}", DIM)

    def verdict(self, text: str, good: bool) -> None:
        self._line(f"  {text}  {'✓' if good else '✗'}", GREEN if good else RED)

    def _line(self, line: str, style: str | None = None) -> None:
        print(line, file=self._file, flush=True)
        coloured = f"\033[{style}m{line}\033[0m" if style and self._terminal.isatty() else line
        print(coloured, file=self._terminal, flush=True)

"""A simulated laptop that tells when it was slapped."""

import subprocess
from pathlib import Path

from harness.private_user import PrivateUser
from harness.processes import end
from lines import Lines


class Laptop:
    def __init__(self, user: PrivateUser, programs: Path, reports_per_second: int = 1000) -> None:
        self._process = user.start(
            [programs / "bench-laptop", str(reports_per_second)], stdin=subprocess.PIPE, stdout=subprocess.PIPE
        )
        self._lines = Lines(self._process.stdout)
        self._lines.wait_for("ready")

    def slap(self, peak: float = 0.6) -> int:
        """Slaps the laptop, and returns when the report that shows it left (ns of the monotonic clock)."""
        self._process.stdin.write(f"{peak}\n".encode())
        self._process.stdin.flush()
        return int(self._lines.wait_for("slap ").split()[1])

    def close(self) -> None:
        end(self._process)

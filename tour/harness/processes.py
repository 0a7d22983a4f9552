"""Child processes that end with their owner, whatever ends the owner."""

import signal
import subprocess
from pathlib import Path
from typing import Mapping, Sequence


def launch(
    command: Sequence[str | Path], environment: Mapping[str, str], **options: object
) -> subprocess.Popen[bytes]:
    """Starts a command that the kernel kills as soon as this process is gone."""
    tied = ["setpriv", "--pdeathsig", "KILL", "--", *map(str, command)]
    return subprocess.Popen(tied, env=dict(environment), **options)  # type: ignore[call-overload]


def end(process: subprocess.Popen[bytes], patience: float = 10.0) -> int:
    """Asks a process to end, insists after `patience` seconds, and returns its exit status."""
    process.terminate()
    process.send_signal(signal.SIGCONT)  # a stopped process would not notice
    try:
        return process.wait(patience)
    except subprocess.TimeoutExpired:
        process.kill()
        return process.wait()


def parent_of(process: int) -> int | None:
    """The process that started another one, or None when that is gone."""
    try:
        status = Path(f"/proc/{process}/stat").read_text()
    except FileNotFoundError:
        return None
    return int(status.rpartition(")")[2].split()[1])

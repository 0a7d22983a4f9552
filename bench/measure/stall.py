"""An application whose main thread alone stands still for a while."""

import ctypes
import os
import time
from pathlib import Path

from harness.application import Application
from laptop import Laptop

SEIZE, INTERRUPT, DETACH = 0x4206, 0x4207, 17  # requests of ptrace
ALL_THREADS = 0x40000000  # waits for threads of others, too
SECONDS = 2.0

_libc = ctypes.CDLL(None, use_errno=True)


def _trace(request: int, thread: int) -> None:
    if _libc.ptrace(request, thread, None, None) < 0:
        raise OSError(ctypes.get_errno(), "The thread cannot be held.")


def measure(application: Application, laptop: Laptop) -> dict[str, float]:
    """How long after a stall a slap is counted that was given in its first moment, in ms, and by how much memory grew
    meanwhile, in kB."""
    process = application.process.pid
    slaps, memory = application.counter().count, _memory(process)
    _trace(SEIZE, process)
    try:
        _trace(INTERRUPT, process)
        os.waitpid(process, ALL_THREADS)
        laptop.slap()
        time.sleep(SECONDS)
        grown = _memory(process) - memory
    finally:
        _trace(DETACH, process)
    began = time.monotonic()
    application.wait_for_slaps(slaps + 1)
    return {"counted": 1000 * (time.monotonic() - began), "memory": grown}


def _memory(process: int) -> int:
    lines = Path(f"/proc/{process}/smaps_rollup").read_text().splitlines()
    return next(int(line.split()[1]) for line in lines if line.startswith("Pss:"))

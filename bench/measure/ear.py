"""Hears when a sound begins, on the same clock as everything else."""

import os
import subprocess
import threading
import time
from collections import deque

import numpy
from harness.analysis import SILENCE
from harness.private_user import PrivateUser
from harness.processes import end
from harness.recorder import COMMAND
from harness.samples import CHANNELS, RATE
from harness.sound_server import SoundServer
from harness.waiting import wait_until

FRAME = 4 * CHANNELS  # bytes
SAME_PIECE = 1_000_000  # ns between two reads of one piece
MEMORY = 300_000_000  # ns of pieces from which the device's clock is read
QUIET = 0.03  # s without sound, after which a sound begins anew
LATENCY = 5  # ms
# PipeWire works in the shortest cycles that a client asks for. A recorder asks for none but the usual ones.
PIPEWIRE_RULES = """stream.rules = [ {
    matches = [ { media.class = "Stream/Input/Audio" } ]
    actions = { update-props = { node.latency = 1024/48000 } }
} ]
"""


def make_recorders_modest(user: PrivateUser) -> None:
    """Keeps recorders from shortening the cycles of a PipeWire that this user starts later."""
    folder = user.configuration / "pipewire/pipewire-pulse.conf.d"
    folder.mkdir(parents=True)
    (folder / "recorders.conf").write_text(PIPEWIRE_RULES)


class Ear:
    """Listens to the monitor of a server's device.

    Each cycle of the device arrives as one piece, whose first frame the device plays at that moment. The quickest of
    the last pieces thus tells when each frame is played, however unevenly they arrive.
    """

    def __init__(self, server: SoundServer) -> None:
        self._process = server.user.start(
            [*COMMAND, f"--latency-msec={LATENCY}"], stdout=subprocess.PIPE, stderr=server.user.log("recorder")
        )
        self._began: deque[tuple[int, float]] = deque()  # when a piece arrived; when frame 0 was played, by that piece
        self._frames = 0
        self._loud: list[tuple[int, float]] = []  # frames with which sounds began, and when they were played (ns)
        self._last_loud = 0  # the last frame that was not silent
        self._changed = threading.Condition()
        threading.Thread(target=self._listen, daemon=True).start()
        wait_until(lambda: server.control("list", "short", "source-outputs"), "the recorder to be connected")
        server.hurry_recorder()
        wait_until(lambda: self._frames > RATE // 10, "the recording to grow")

    def close(self) -> None:
        end(self._process)

    def heard_after(self, moment: int, patience: float = 1.0) -> float | None:
        """When the first sound after a moment was played (ns), as soon as it is; None when there is none."""
        deadline = time.monotonic() + patience
        with self._changed:
            while not (found := [played for _, played in self._loud if played > moment]):
                if not self._changed.wait(deadline - time.monotonic()):
                    return None
            return found[0]

    def wait_for_silence(self) -> None:
        """Waits until the device has been silent long enough for the next sound to count as one."""
        with self._changed:
            self._changed.wait_for(lambda: self._frames - self._last_loud > 2 * QUIET * RATE, 60)

    def _listen(self) -> None:
        rest, last_arrival, first = b"", 0, 0
        while piece := os.read(self._process.stdout.fileno(), 1 << 16):
            arrival = time.monotonic_ns()
            data = rest + piece
            rest = data[len(data) // FRAME * FRAME :]
            samples = numpy.frombuffer(data[: len(data) // FRAME * FRAME], dtype="<f4").reshape(-1, CHANNELS)
            with self._changed:
                if arrival - last_arrival > SAME_PIECE:
                    first = self._frames
                    self._note_time(arrival, first)
                last_arrival = arrival
                self._note_sound(samples)
                self._changed.notify_all()

    def _note_time(self, arrival: int, first: int) -> None:
        self._began.append((arrival, arrival - first * 1e9 / RATE))
        while self._began[0][0] < arrival - MEMORY:
            self._began.popleft()

    def _note_sound(self, samples: numpy.ndarray) -> None:
        loud = numpy.flatnonzero(numpy.abs(samples).max(axis=1) > SILENCE)
        if len(loud):
            onset = self._frames + int(loud[0])
            if onset - self._last_loud > QUIET * RATE:
                began = min(began for _, began in self._began)
                self._loud.append((onset, began + onset * 1e9 / RATE))
            self._last_loud = self._frames + int(loud[-1])
        self._frames += len(samples)

"""A recorder on the loudspeaker of a sound server."""

from pathlib import Path

import numpy

from harness.analysis import is_silent, onset
from harness.samples import CHANNELS, RATE, Samples
from harness.sound_server import DEVICE, SoundServer
from harness.waiting import wait_until

FORMAT = ["--format=float32le", f"--rate={RATE}", f"--channels={CHANNELS}", "--raw"]
COMMAND = ["parec", "-d", f"{DEVICE}.monitor", *FORMAT]


class Recorder:
    """Records what a sound server's sink plays, from the first frame on, for as long as the server runs."""

    def __init__(self, server: SoundServer, file: Path) -> None:
        self._file = file
        with file.open("wb") as output:
            server.user.start(
                [*COMMAND, f"--latency-msec={server.recorder_latency}"],
                stdout=output,
                stderr=server.user.log("recorder"),
            )
        wait_until(lambda: server.control("list", "short", "source-outputs"), "the recorder to be connected")
        server.hurry_recorder()
        wait_until(lambda: self.length > 0, "the recording to grow")

    @property
    def length(self) -> int:
        """Frames recorded so far."""
        return self._file.stat().st_size // (4 * CHANNELS)

    def samples(self, first: int = 0, last: int | None = None) -> Samples:
        """The frames from `first` up to `last` (default: all there are), one column a channel."""
        count = (self.length if last is None else last) - first
        flat = numpy.fromfile(self._file, dtype="<f4", count=count * CHANNELS, offset=first * 4 * CHANNELS)
        return flat.reshape(-1, CHANNELS)

    def wait_for(self, first: int, seconds: float) -> Samples:
        """The `seconds` of sound that follow the frame `first`, as soon as they are recorded."""
        last = first + round(seconds * RATE)
        wait_until(lambda: self.length >= last, f"{seconds:.2f} s of recording")
        return self.samples(first, last)

    def pass_time(self, seconds: float) -> Samples:
        """Lets time pass, and returns what was heard meanwhile."""
        return self.wait_for(self.length, seconds)

    def wait_for_sound(self, first: int) -> int:
        """The frame, at or after `first`, with which the next sound begins, as soon as it does."""
        searched = first

        def look() -> int | None:
            nonlocal searched
            samples = self.samples(searched)
            if (found := onset(samples)) is None:
                searched += len(samples)
                return None
            return searched + found

        return wait_until(look, "a sound")

    def wait_for_silence(self, seconds: float = 0.1) -> int:
        """Waits until nothing has been heard for some time from now on, and returns the frame after it."""
        return self._wait_for_silence_after(self.length, seconds)

    def wait_for_end(self, first: int, seconds: float = 0.1) -> int:
        """Waits for a sound at or after the frame `first`, then for its end, and returns the frame after some silence."""
        return self._wait_for_silence_after(self.wait_for_sound(first), seconds)

    def _wait_for_silence_after(self, first: int, seconds: float) -> int:
        frames = round(seconds * RATE)

        def look() -> int | None:
            end = self.length
            return end if end - frames >= first and is_silent(self.samples(end - frames, end)) else None

        return wait_until(look, "silence")

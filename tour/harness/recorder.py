"""A recorder on the loudspeaker of a sound server."""

from pathlib import Path

import numpy

from harness.analysis import is_silent, onset
from harness.desktop import Desktop
from harness.samples import CHANNELS, RATE, Samples
from harness.waiting import wait_until


class Recorder:
    """Records what a sound server's sink plays, from the first frame on, for as long as the desktop lasts."""

    def __init__(self, desktop: Desktop, file: Path) -> None:
        self._file = file
        with file.open("wb") as output:
            desktop.start(
                [Path(__file__).parent / "sound-recorder"],
                stdout=output,
                stderr=desktop.log("recorder"),
            )
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
        begin = self.length
        frames = round(seconds * RATE)

        def look() -> int | None:
            end = self.length
            return end if end - frames >= begin and is_silent(self.samples(end - frames, end)) else None

        return wait_until(look, "silence")

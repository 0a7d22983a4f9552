"""Sound files: tones to be told apart in a recording, and the clips that come with the application."""

from pathlib import Path

import numpy
import soundfile

from harness.samples import CHANNELS, RATE, Samples

TONE_PEAK = 0.5


def write_tone(file: Path, frequency: float, seconds: float = 3.0, rate: int = RATE, channels: int = 1) -> None:
    """Writes a steady tone as MP3, its folder included."""
    file.parent.mkdir(parents=True, exist_ok=True)
    time = numpy.arange(round(seconds * rate)) / rate
    tone = TONE_PEAK * numpy.sin(2 * numpy.pi * frequency * time)
    soundfile.write(file, numpy.stack([tone] * channels, axis=1), rate, format="MP3")


def read_clip(file: Path) -> Samples:
    """The samples of a clip as they should reach the loudspeaker at full volume."""
    samples, rate = soundfile.read(file, dtype="float32", always_2d=True)
    if rate != RATE:
        raise ValueError(f"{file} has {rate} frames a second instead of {RATE}")
    return samples if samples.shape[1] == CHANNELS else numpy.repeat(samples[:, :1], CHANNELS, axis=1)


def volume_for(amplitude: float) -> float:
    """The volume, from 0 to 1, that answers a slap of this amplitude in g."""
    return min(1.0, 0.45 + 1.2 * amplitude)

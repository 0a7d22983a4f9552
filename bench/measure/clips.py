"""The clips that are played: a short tone, and then nothing that anyone could hear."""

from pathlib import Path

import numpy
import soundfile
from harness.analysis import SILENCE
from harness.samples import RATE

TONE = 0.05  # s; what comes after it is decoded and played, but the next sound need not wait for its end


def write_clip(file: Path, seconds: float, noise: float = SILENCE / 8) -> None:
    """Writes a clip as MP3 with its encoder's tag, as those that come with the application have it."""
    file.parent.mkdir(parents=True, exist_ok=True)
    time = numpy.arange(round(seconds * RATE)) / RATE
    samples = numpy.random.default_rng(1).uniform(-noise, noise, (len(time), 2))
    tone = time < TONE
    samples[tone] += 0.5 * numpy.cos(2 * numpy.pi * 1000 * time[tone, None])
    soundfile.write(file, samples, RATE, format="MP3")


def write_slow_clip(file: Path, seconds: float) -> None:
    """Writes a clip that takes long to open and to decode: behind a tag with a large picture, and noisy."""
    write_clip(file, seconds)
    picture = b"\0image/png\0\3\0" + bytes(1 << 20)
    frame = b"APIC" + len(picture).to_bytes(4, "big") + b"\0\0" + picture
    size = len(frame)
    tag = b"ID3\3\0\0" + bytes(size >> shift & 127 for shift in (21, 14, 7, 0)) + frame
    file.write_bytes(tag + file.read_bytes())

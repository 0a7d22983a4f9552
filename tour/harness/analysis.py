"""What a recording tells: when a sound began, how loud it was, which sound it was."""

from dataclasses import dataclass
from itertools import pairwise

import numpy
from numpy.fft import irfft, rfft

from harness.samples import CHANNELS, RATE, Samples

SILENCE = 0.002  # greatest sample that does not count as sound; full scale is 1


def onset(samples: Samples) -> int | None:
    """The first frame that is not silent, or None."""
    loud = numpy.flatnonzero(numpy.abs(samples).max(axis=1) > SILENCE)
    return int(loud[0]) if len(loud) else None


def is_silent(samples: Samples) -> bool:
    return onset(samples) is None


def level(samples: Samples) -> float:
    """The root of the mean square."""
    return float(numpy.sqrt(numpy.mean(numpy.square(samples, dtype=numpy.float64))))


def frequency(samples: Samples) -> float:
    """The frequency of a tone in Hz, from the times at which its first channel rises through zero."""
    wave = samples[:, 0].astype(numpy.float64)
    before = numpy.flatnonzero((wave[:-1] < 0) & (wave[1:] >= 0))
    crossings = before + wave[before] / (wave[before] - wave[before + 1])
    return RATE * (len(crossings) - 1) / (crossings[-1] - crossings[0])


@dataclass(frozen=True)
class Note:
    """A stretch of one pure tone."""

    pitch: int  # in Hz, rounded to 100
    seconds: float  # to a hundredth or so
    levels: tuple[float, float]  # of its inside, left and right


def notes(samples: Samples) -> list[Note]:
    """The tones in a recording, in order.

    Those shorter than 20 ms are left out: where one tone cuts off another, both are in one piece of the analysis.
    """
    size = RATE // 100
    pieces = samples[: len(samples) // size * size].reshape(-1, size, CHANNELS)[:, :, 0]
    changes = numpy.count_nonzero(numpy.diff(pieces < 0, axis=1), axis=1)
    pitches = numpy.floor(changes * RATE / (2 * size) / 100 + 0.5).astype(int) * 100
    pitches[numpy.sqrt(numpy.mean(numpy.square(pieces), axis=1)) < 0.01] = 0
    found = []
    for start, end in pairwise([0, *(numpy.flatnonzero(numpy.diff(pitches)) + 1), len(pitches)]):
        if end - start >= 2 and pitches[start]:
            inside = samples[start * size + size // 2 : end * size - size // 2]
            levels = level(inside[:, 0]), level(inside[:, 1])
            found.append(Note(int(pitches[start]), (end - start) * size / RATE, levels))
    return found


def peak_at(samples: Samples, tone: float) -> float:
    """The peak that a tone of this frequency has within the sound, other tones left out."""
    wave = samples[:, 0] * numpy.hanning(len(samples)) * 2
    turning = numpy.exp(-2j * numpy.pi * tone * numpy.arange(len(wave)) / RATE)
    return float(2 * abs(numpy.dot(wave, turning)) / len(wave))


@dataclass(frozen=True)
class Match:
    """How a clip lies in a recording."""

    start: int  # frame of the recording at which the clip begins
    gain: float  # factor that brings the clip closest to the recording, by least squares
    likeness: float  # normalised correlation: 1 for the clip itself, about 0 for another sound


def match(recording: Samples, clip: Samples) -> Match:
    """Finds the place of a clip, or of as much of it as fits, in a recording, by their first channels."""
    size = 1 << (len(recording) + len(clip)).bit_length()  # a power of two transforms fastest
    products = irfft(rfft(recording[:, 0], size) * numpy.conj(rfft(clip[:, 0], size)), size)
    start = int(numpy.argmax(products[: len(recording)]))
    heard = recording[start : start + len(clip)].astype(numpy.float64)
    wanted = clip[: len(heard)].astype(numpy.float64)
    product = float(numpy.vdot(heard, wanted))
    energies = float(numpy.vdot(heard, heard)), float(numpy.vdot(wanted, wanted))
    if not all(energies):
        return Match(start, 0.0, 0.0)
    return Match(start, product / energies[1], product / (energies[0] * energies[1]) ** 0.5)

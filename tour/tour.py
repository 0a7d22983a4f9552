#!/usr/bin/python3 -B
"""Shows the application at work on a machine without display, loudspeaker or sensor, and checks what it shows.

The application runs on a private desktop beside a simulated laptop, which is slapped softly, harder and in quick
series, in each pack. What reaches the loudspeaker is recorded and compared with the clips. Exit status 0 when every
slap was answered with a clip of the chosen pack at the volume that its amplitude asks for, else 1.
"""

import argparse
import sys
from dataclasses import dataclass
from pathlib import Path

import soundfile

from harness.analysis import Match, match
from harness.application import Application
from harness.clips import read_clip, volume_for
from harness.desktop import Desktop
from harness.recorder import Recorder
from harness.samples import RATE, Samples
from harness.simulated_laptop import SimulatedLaptop
from harness.sound_server import start_sound_server
from harness.transcript import Transcript

TEST_CLIP, TEST_AMPLITUDE = "sexy/28.mp3", 0.35  # of the hardware check; its volume is that of 0.35 g at least
SOFT, HARD, SERIES = 0.2, 0.9, (0.3, 0.5, 0.7)  # peaks of the slaps, g
APART = 0.7  # s between the slaps of a series; what is closer than 0.55 s is one slap
TOLERANCE = 0.02  # of the volume expected
CERTAINTY = 0.98  # least likeness at which a clip counts as recognised


def resources_of(programs: Path) -> Path:
    """Where the programs of a build or of an installation find their resources."""
    built, installed = programs.parent / "resources", programs.parent / "share" / "quiverly"
    return built if built.exists() else installed


@dataclass(frozen=True)
class Slap:
    """A slap that the application has counted."""

    peak: float  # g
    amplitude: float  # g, as the application shows it
    first: int  # frame of the recording at which it was given


class Tour:
    def __init__(self, programs: Path, output: Path, desktop: Desktop, transcript: Transcript) -> None:
        audio = resources_of(programs) / "audio"
        self._clips = {str(file.relative_to(audio)): read_clip(file) for file in sorted(audio.glob("*/*.mp3"))}
        self._output = output
        self._desktop = desktop
        self._transcript = transcript
        self._answers: list[bool] = []  # whether each slap was answered as it should
        self._recorder = Recorder(start_sound_server(desktop), desktop.folder / "recording.raw")
        self._laptop = SimulatedLaptop(desktop, programs)
        self._application = Application(desktop, [programs / "quiverly"])

    def run(self) -> bool:
        """Whether every slap was answered as it should."""
        self._transcript.title("Quiverly, a tour")
        self._check_hardware()
        for pack in self._application.options():
            self._visit(pack)
        self._application.close_window()
        soundfile.write(self._output / "recording.flac", self._recorder.samples(), RATE)
        return self._conclude()

    def _check_hardware(self) -> None:
        self._transcript.heading("A new user gives the test slap")
        self._legend()
        self._application.wait_for("Accelerometer detected")
        self._picture("welcome")
        self._recorder.pass_time(2)  # until the check takes slaps
        first = self._recorder.length
        self._laptop.slap(HARD)
        self._application.wait_for("Motion check passed")
        self._picture("check-passed")
        self._application.press("Continue")
        amplitude = self._application.wait_for_slaps(1).amplitude
        self._report(Slap(HARD, amplitude, first), self._recorder.wait_for_end(first), [TEST_CLIP], TEST_AMPLITUDE)
        self._picture("main-window")
        self._application.press("Start listening")

    def _visit(self, pack: str) -> None:
        self._transcript.heading(f"{pack}: softly, harder, and three in a row")
        self._legend()
        self._application.choose(pack)
        self._application.wait_for(f"Listening with {pack} sounds. Slap away.")
        clips = [clip for clip in self._clips if clip.startswith(pack.lower() + "/")]
        for peak in (SOFT, HARD):
            slap = self._slap(peak)
            self._report(slap, self._recorder.wait_for_end(slap.first), clips)
        series = []
        for peak in SERIES:
            series.append(self._slap(peak))
            self._recorder.pass_time(APART)
        self._picture(pack.lower())
        ends = [slap.first for slap in series[1:]] + [self._recorder.wait_for_end(series[-1].first)]
        for slap, end in zip(series, ends):
            self._report(slap, end, clips)

    def _slap(self, peak: float) -> Slap:
        count = self._application.counter().count
        first = self._recorder.length
        self._laptop.slap(peak)
        return Slap(peak, self._application.wait_for_slaps(count + 1).amplitude, first)

    def _report(self, slap: Slap, end: int, candidates: list[str], least_amplitude: float = 0.0) -> None:
        """Says what was heard from a slap up to the frame `end`, which should be one of the candidates."""
        heard = self._recorder.samples(slap.first, end)
        clip, found = self._recognise(heard, candidates)
        volume = volume_for(max(slap.amplitude, least_amplitude))
        good = found.likeness >= CERTAINTY and abs(found.gain / volume - 1) <= TOLERANCE
        name = clip if found.likeness >= CERTAINTY else "no clip"
        self._answers.append(good)
        self._transcript.verdict(
            f"{slap.peak:5.2f} g  {slap.amplitude:7.3f} g   {name:<16}  {volume:6.1%}  {found.gain:6.1%}", good
        )

    def _recognise(self, heard: Samples, candidates: list[str]) -> tuple[str, Match]:
        matches = ((clip, match(heard, self._clips[clip])) for clip in candidates)
        return max(matches, key=lambda each: each[1].likeness)

    def _legend(self) -> None:
        self._transcript.quiet(f"{'slap':>7}  {'felt':>9}   {'clip':<16}  {'volume':>6}  {'heard':>6}")

    def _picture(self, name: str) -> None:
        self._desktop.screenshot(self._output / f"{name}.png")

    def _conclude(self) -> bool:
        count, good = len(self._answers), sum(self._answers)
        self._transcript.heading("The end")
        verdict = f"{good} of {count} slaps were answered with their clip at their volume."
        self._transcript.verdict(verdict, good == count)
        self._transcript.quiet(f"The sound, the pictures and this text are in {self._output}")
        return good == count


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("programs", type=Path, help="folder of the programs")
    parser.add_argument("output", type=Path, help="folder for transcript, pictures and sound")
    arguments = parser.parse_args()
    arguments.output.mkdir(parents=True, exist_ok=True)
    transcript = Transcript(arguments.output / "transcript.txt")
    with Desktop(width=440, height=600) as desktop:
        try:
            return 0 if Tour(arguments.programs.resolve(), arguments.output, desktop, transcript).run() else 1
        except Exception as failure:  # whatever it is, the logs tell more
            transcript.verdict(f"The tour ended early: {failure}", False)
            transcript.text(desktop.logs())
            return 1


if __name__ == "__main__":
    sys.exit(main())

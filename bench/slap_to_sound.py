#!/usr/bin/python3 -B
"""How long it takes from a slap to its sound, on PulseAudio and on PipeWire, each on a private desktop.

    bench/slap_to_sound.py PROGRAMS [--slaps NUMBER]

PROGRAMS is the folder of the programs, best those of the release. A time runs from the moment at which the simulated
laptop is told to be slapped to the first audible frame on the server's null sink; up to 8 ms of it pass until the one
report in eight that is decoded. The frames are timed by the quickest of their arrivals, so that how a server delivers a
recording hardly counts. A slap without sound within a second is lost.
"""

import argparse
import shutil
import subprocess
import sys
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).parents[1] / "tour"))
import numpy
from harness.analysis import onset
from harness.application import Application
from harness.clips import write_tone
from harness.desktop import Desktop
from harness.recorder import Recorder
from harness.samples import RATE
from harness.simulated_laptop import SimulatedLaptop
from harness.sound_server import PipeWire, PulseAudio
from harness.waiting import wait_until

SERVERS = {"PulseAudio": ("pulseaudio", PulseAudio), "PipeWire": ("pipewire-pulse", PipeWire)}
CLIP = 0.3  # s
PEAK = 0.6  # of a slap, g


class Bench:
    def __init__(self, desktop: Desktop, programs: Path, server: str) -> None:
        write_tone(desktop.data / "quiverly/audio/pain/1.mp3", 440, CLIP)
        self._recorder = Recorder(SERVERS[server][1](desktop), desktop.folder / "recording.raw")
        self._laptop = SimulatedLaptop(desktop, programs)
        self._application = Application(desktop, [programs / "quiverly"])

    def times(self, slaps: int) -> list[float | None]:
        """From each slap to its sound, in milliseconds; None where there was none."""
        self._begin()
        return [self._time() for _ in range(slaps)]

    def _begin(self) -> None:
        self._application.wait_for("Accelerometer detected")
        self._recorder.pass_time(2)  # until the check takes slaps
        first = self._recorder.length
        self._laptop.slap(PEAK)
        self._application.wait_for("Motion check passed")
        self._recorder.wait_for_end(first)
        self._application.press("Continue")
        self._application.choose("Pain")
        self._application.press("Start listening")
        self._application.wait_for("Listening with Pain sounds. Slap away.")
        self._recorder.pass_time(1)

    def _time(self) -> float | None:
        before = self._recorder.wait_for_silence()
        last = before + round((1 + CLIP) * RATE)
        began = float("inf")  # when frame 0 would have been recorded, had none been lost since

        def look() -> bool:
            nonlocal began
            length = self._recorder.length
            began = min(began, time.monotonic() - length / RATE)
            return length >= last

        slapped = time.monotonic()
        self._laptop.slap(PEAK)
        wait_until(look, "the recording of a sound", interval=0.0005)
        heard = onset(self._recorder.samples(before, last))
        return None if heard is None else 1000 * (began + (before + heard) / RATE - slapped)


def measure(programs: Path, server: str, slaps: int) -> None:
    with Desktop() as desktop:
        times = Bench(desktop, programs, server).times(slaps)
    heard = [each for each in times if each is not None]
    figures = numpy.percentile(heard, [50, 90, 100]) if heard else [float("nan")] * 3
    print(f"{server:<12}" + "".join(f"{figure:8.1f}" for figure in figures) + f"{len(times) - len(heard):8}")


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("programs", type=Path, help="folder of the programs")
    parser.add_argument("--slaps", type=int, default=50, help="how many for each server")
    parser.add_argument("--server", choices=SERVERS, help="only this one")
    options = parser.parse_args()
    if options.server:
        measure(options.programs.resolve(), options.server, options.slaps)
        return 0
    print(f"{'slap to sound':<12} p50, ms p90, ms  max, ms    lost", flush=True)
    failed = False
    for server, (program, _) in SERVERS.items():
        if not shutil.which(program):
            print(f"{server:<12} not installed", flush=True)
            continue
        # A process has one desktop.
        command = [sys.executable, "-B", __file__, options.programs, f"--slaps={options.slaps}", f"--server={server}"]
        failed |= subprocess.run(command).returncode != 0
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())

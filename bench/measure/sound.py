#!/usr/bin/python3 -B
"""How long it takes from a slap to its sound: the application, its floor and its peers on one private desktop.

    sound.py PROGRAMS SERVER --output=FILE [--slaps NUMBER] [--rounds NUMBER]

Each time runs from a report, or from a line that a waiting player is told, to the first audible frame that the server's
device plays. Waits of random length keep what is measured out of step with the server. Writes JSON to FILE.
"""

import argparse
import json
import random
import time
from pathlib import Path

import clips
from desktop import PACK, onboarded_desktop
from ear import Ear, make_recorders_modest
from harness.application import Application
from harness.desktop import Desktop
from harness.sound_server import PipeWire, PulseAudio
from harness.waiting import wait_until
from laptop import Laptop
from players import FLOOR, PEER_KINDS, Player

SERVERS = {"PulseAudio": PulseAudio, "PipeWire": PipeWire}
COOLDOWN = 0.6  # s, more than that of the application
LONGEST_CYCLE = 0.022  # s of a server
SHORT, LONG = 0.3, 3.7  # s


class Bench:
    def __init__(self, desktop: Desktop, programs: Path, server: str) -> None:
        self._desktop = desktop
        self._programs = programs
        self._random = random.Random(1)
        self._slapped = 0.0
        self._clip = desktop.data / f"quiverly/audio/{PACK}/1.mp3"
        clips.write_clip(self._clip, SHORT)
        make_recorders_modest(desktop)
        self._ear = Ear(SERVERS[server](desktop))
        self._laptop = Laptop(desktop, programs)
        self._application = Application(desktop, [programs / "quiverly"])
        self._application.press("Start listening")
        self._application.wait_for_slaps(1)  # the first sample
        self._slapped = time.monotonic()
        wait_until(lambda: self._time(self._slap, SHORT), "a slap to be heard")

    def measure(self, slaps: int, rounds: int, files: bool) -> dict[str, object]:
        results: dict[str, list[float | None]] = {"Quiverly": [], "floor": []}
        missing = []
        for _ in range(rounds):
            self._pair(slaps // rounds, results["Quiverly"], results["floor"], SHORT)
            for kind in PEER_KINDS:
                command = kind.command(self._programs)
                if command:
                    self._peer(command, max(1, slaps // rounds // 7), results.setdefault(kind.name, []))
                elif kind.name not in missing:
                    missing.append(kind.name)
        if files:
            clips.write_clip(self._clip, LONG)
            results |= {"Quiverly, long clip": [], "floor, long clip": []}
            self._pair(slaps, results["Quiverly, long clip"], results["floor, long clip"], clips.TONE)
            clips.write_slow_clip(self._clip, LONG)
            results |= {"Quiverly, slow clip": [], "floor, slow clip": []}
            self._pair(slaps, results["Quiverly, slow clip"], results["floor, slow clip"], clips.TONE)
        return {"times": results, "missing": missing}

    def _pair(self, count: int, application: list[float | None], floor: list[float | None], seconds: float) -> None:
        """Slaps the laptop and tells the floor, by turns."""
        player = Player(self._desktop, FLOOR.command(self._programs) or [])
        self._time(lambda: player.play(self._clip), seconds)
        for _ in range(count):
            application.append(self._time(self._slap, seconds))
            floor.append(self._time(lambda: player.play(self._clip), seconds))
        player.close()

    def _peer(self, command: list[str | Path], count: int, times: list[float | None]) -> None:
        player = Player(self._desktop, command)
        self._time(lambda: player.play(self._clip), SHORT)
        times += [self._time(lambda: player.play(self._clip), SHORT) for _ in range(count)]
        player.close()

    def _slap(self) -> int:
        time.sleep(max(0.0, self._slapped + COOLDOWN - time.monotonic()))
        told = self._laptop.slap()
        self._slapped = time.monotonic()
        return told

    def _time(self, begin, seconds: float) -> float | None:
        """In milliseconds; returns once what was played, of that length, is over."""
        self._ear.wait_for_silence()
        time.sleep(self._random.uniform(0, LONGEST_CYCLE))
        began = begin()
        heard = self._ear.heard_after(began)
        if heard is None:
            return None
        time.sleep(max(0.0, heard / 1e9 + seconds - time.monotonic()))
        return (heard - began) / 1e6


def main() -> None:
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("programs", type=Path)
    parser.add_argument("server", choices=SERVERS)
    parser.add_argument("--output", type=Path, required=True)
    parser.add_argument("--slaps", type=int, default=200)
    parser.add_argument("--rounds", type=int, default=4)
    parser.add_argument("--files", action="store_true", help="long and slow clips, too")
    options = parser.parse_args()
    with onboarded_desktop() as desktop:
        try:
            bench = Bench(desktop, options.programs.resolve(), options.server)
            results = bench.measure(options.slaps, options.rounds, options.files)
        except BaseException:
            print(desktop.logs())
            raise
    options.output.write_text(json.dumps(results))


if __name__ == "__main__":
    main()

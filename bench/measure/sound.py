#!/usr/bin/python3 -B
"""How long it takes from a slap to its sound: the application, its floor and its peers on one private desktop.

    sound.py PROGRAMS SERVER --output=FILE [--slaps NUMBER] [--rounds NUMBER]

Each time runs from a report, or from a line or a key that a waiting player is given, to the first audible frame that
the server's device plays. Waits of random length keep what is measured out of step with the server. Writes JSON to FILE.
"""

import argparse
import json
import random
import time
from pathlib import Path
from typing import Callable, Sequence

import clips
from desktop import PACK, onboarded_desktop
from ear import Ear, make_recorders_modest
from harness.application import Application
from harness.desktop import Desktop
from harness.sound_server import PipeWire, PulseAudio
from harness.waiting import NeverHappened, wait_until
from laptop import Laptop
from players import FLOOR, PEER_KINDS, Kind, Player

SERVERS = {"PulseAudio": PulseAudio, "PipeWire": PipeWire}
COOLDOWN = 0.6  # s, more than that of the application
LONGEST_CYCLE = 0.022  # s of a server
SHORT, LONG = 0.3, 3.7  # s

Heard = tuple[int, float | None]  # when it began and when it was heard, if it was (ns of the monotonic clock)


class SlapBench:
    """An application that listens to a laptop, and an ear on the server's device."""

    def __init__(self, desktop: Desktop, programs: Path, server: str, command: Sequence[str | Path] = ()) -> None:
        self._random = random.Random(1)
        self._slapped = 0.0
        self.clip = desktop.data / f"quiverly/audio/{PACK}/1.mp3"
        clips.write_clip(self.clip, SHORT)
        make_recorders_modest(desktop)
        self._ear = Ear(SERVERS[server](desktop))
        self._laptop = Laptop(desktop, programs)
        self.application = Application(desktop, command or [programs / "quiverly"])
        self.application.press("Start listening")
        self.application.wait_for_slaps(1)  # the first sample
        self._slapped = time.monotonic()
        wait_until(lambda: self.slap(SHORT)[1], "a slap to be heard")

    def slap(self, seconds: float) -> Heard:
        return self.hear(self._give_slap, seconds)

    def hear(self, begin: Callable[[], int], seconds: float) -> Heard:
        """Begins a sound, and returns once as much of it is over, or when there was none for too long."""
        self._ear.wait_for_silence()
        time.sleep(self._random.uniform(0, LONGEST_CYCLE))
        began = begin()
        heard = self._ear.heard_after(began)
        if heard is not None:
            time.sleep(max(0.0, heard / 1e9 + seconds - time.monotonic()))
        return began, heard

    def _give_slap(self) -> int:
        time.sleep(max(0.0, self._slapped + COOLDOWN - time.monotonic()))
        told = self._laptop.slap()
        self._slapped = time.monotonic()
        return told


class Comparison:
    """The application, its floor and its peers."""

    def __init__(self, desktop: Desktop, programs: Path, server: str) -> None:
        self._desktop = desktop
        self._programs = programs
        self._bench = SlapBench(desktop, programs, server)
        self._times: dict[str, list[float | None]] = {}  # ms

    def measure(self, slaps: int, rounds: int, files: bool) -> dict[str, object]:
        commands = {kind: command for kind in PEER_KINDS if (command := kind.command(self._programs))}
        for _ in range(rounds):
            self._pair("", slaps // rounds, SHORT)
            for kind, command in list(commands.items()):
                try:
                    self._peer(kind, command, max(1, slaps // rounds // 10))
                except (TimeoutError, NeverHappened) as failure:
                    print(f"{kind.name} does not start: {failure}")
                    del commands[kind]
        if files:
            clips.write_clip(self._bench.clip, LONG)
            self._pair(", long clip", slaps, clips.TONE)
            clips.write_slow_clip(self._bench.clip, LONG)
            self._pair(", slow clip", slaps, clips.TONE)
        return {"times": self._times, "missing": [kind.name for kind in PEER_KINDS if kind.name not in self._times]}

    def _pair(self, clip: str, count: int, seconds: float) -> None:
        """Slaps the laptop and tells the floor, by turns."""
        player = Player(self._desktop, FLOOR.command(self._programs) or [])
        self._play(player, seconds)
        for _ in range(count):
            self._note("Quiverly" + clip, self._bench.slap(seconds))
            self._note("floor" + clip, self._play(player, seconds))
        player.close()

    def _peer(self, kind: Kind, command: list[str | Path], count: int) -> None:
        player = kind.player(self._desktop, command)
        wait_until(lambda: self._play(player, SHORT)[1], f"{kind.name} to be heard")
        for _ in range(count):
            self._note(kind.name, self._play(player, SHORT))
        player.close()

    def _play(self, player: Player, seconds: float) -> Heard:
        return self._bench.hear(lambda: player.play(self._bench.clip), seconds)

    def _note(self, name: str, times: Heard) -> None:
        began, heard = times
        self._times.setdefault(name, []).append(None if heard is None else (heard - began) / 1e6)


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
            comparison = Comparison(desktop, options.programs.resolve(), options.server)
            results = comparison.measure(options.slaps, options.rounds, options.files)
        except BaseException:
            print(desktop.logs())
            raise
    options.output.write_text(json.dumps(results))


if __name__ == "__main__":
    main()

#!/usr/bin/python3 -B
"""Where the time from a slap to its sound goes: the application with a library that notes some of its calls.

    stages.py PROGRAMS SERVER --output=FILE [--slaps NUMBER]

Writes JSON to FILE: for each stage its milliseconds, one for each slap.
"""

import argparse
import json
from pathlib import Path

import numpy
from desktop import onboarded_desktop
from harness.desktop import Desktop
from sound import SERVERS, SHORT, SlapBench

RECEIVED, WAITED, OPENED, WOKE = 1, 2, 3, 4  # the calls, as the library numbers them
NOTE = numpy.dtype([("moment", "<u8"), ("thread", "<u4"), ("call", "<u4")])
ROOM = 1 << 20  # notes, of which a second of listening takes some 3,000
STAGES = ("socket", "decode and hop", "detection and queue", "clip decode", "hand-over", "server")


class StageBench:
    def __init__(self, desktop: Desktop, programs: Path, server: str) -> None:
        self._notes = desktop.folder / "notes"
        with self._notes.open("wb") as file:
            file.truncate(ROOM * NOTE.itemsize)
        library = programs.parent / "lib/libbench-probe.so"
        probed = ["env", f"LD_PRELOAD={library}", f"QUIVERLY_BENCH_NOTES={self._notes}", programs / "quiverly"]
        self._bench = SlapBench(desktop, programs, server, probed)
        self._threads = self._find_threads(self._bench.application.process.pid)

    def measure(self, slaps: int) -> dict[str, list[float]]:
        stages: dict[str, list[float]] = {stage: [] for stage in STAGES}
        for _ in range(slaps):
            given, heard = self._bench.slap(SHORT)
            between = self._moments(given)
            if heard is None or len(between) < len(STAGES) - 1 or between[-1] > heard:
                continue  # a thread was busy with something else, and did not wait for this slap
            moments = [given, *between, heard]
            for stage, before, after in zip(STAGES, moments, moments[1:]):
                stages[stage].append((after - before) / 1e6)
        return stages

    def _moments(self, given: int) -> list[int]:
        """When the stages but the last ended, as far as their ends were noted."""
        notes = numpy.memmap(self._notes, NOTE, "r")
        end = int(numpy.count_nonzero(notes["moment"]))
        recent = notes[max(0, end - 20_000) : end]
        sensor, main, sound = self._threads
        moments, moment = [], given
        for thread, call in ((sensor, RECEIVED), (main, WAITED), (main, OPENED), (main, WOKE), (sound, WAITED)):
            later = recent["moment"][
                (recent["thread"] == thread) & (recent["call"] == call) & (recent["moment"] >= moment)
            ]
            if not len(later):
                break
            moment = int(later.min())
            moments.append(moment)
        return moments

    def _find_threads(self, process: int) -> tuple[int, int, int]:
        tasks = Path(f"/proc/{process}/task").iterdir()
        names = {(task / "comm").read_text().strip(): int(task.name) for task in tasks}
        sensor = next(thread for name, thread in names.items() if name.startswith("com.jostlix"))
        return sensor, process, names["quiverly-sound"]


def main() -> None:
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("programs", type=Path)
    parser.add_argument("server", choices=SERVERS)
    parser.add_argument("--output", type=Path, required=True)
    parser.add_argument("--slaps", type=int, default=30)
    options = parser.parse_args()
    with onboarded_desktop() as desktop:
        try:
            stages = StageBench(desktop, options.programs.resolve(), options.server).measure(options.slaps)
        except BaseException:
            print(desktop.logs())
            raise
    options.output.write_text(json.dumps(stages))


if __name__ == "__main__":
    main()

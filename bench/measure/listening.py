#!/usr/bin/python3 -B
"""What it costs to listen: the application's threads, and a bare loop of poll and recv beside it.

    listening.py PROGRAMS --output=FILE [--windows NUMBER]

Both read the same laptop during the same seconds. Writes JSON to FILE.
"""

import argparse
import json
import re
import shutil
import statistics
import subprocess
import time
from dataclasses import dataclass
from pathlib import Path

import stall
from desktop import onboarded_desktop
from harness.application import Application
from harness.desktop import Desktop
from harness.processes import end
from laptop import Laptop
from lines import Lines

WINDOW = 2.0  # s
RATES = (1_000, 10_000, 100_000)  # reports a second
CALLS_AMONG = 0.5, 2.0  # s after the start, of the window in which system calls are counted


@dataclass(frozen=True)
class Use:
    """What a thread has used since it began."""

    processor: float  # ns
    wake_ups: int

    @classmethod
    def of(cls, process: int, thread: int) -> "Use":
        folder = Path(f"/proc/{process}/task/{thread}")
        switches = re.search(r"^voluntary_ctxt_switches:\t(\d+)", (folder / "status").read_text(), re.MULTILINE)
        return cls(int((folder / "schedstat").read_text().split()[0]), int(switches[1]))


def threads(process: int) -> dict[str, int]:
    """The threads of the application that work while it listens."""
    names = {int(each.name): (each / "comm").read_text() for each in Path(f"/proc/{process}/task").iterdir()}
    sensor = next(thread for thread, name in names.items() if name.startswith("com.jostlix"))
    return {"sensor thread": sensor, "main thread": process}


class Reader:
    """The floor."""

    def __init__(self, desktop: Desktop, command: list[str | Path]) -> None:
        self.process = desktop.start(command, stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        self._lines = Lines(self.process.stdout)
        self._lines.wait_for("ready")

    def reports(self) -> int:
        self.process.stdin.write(b"\n")
        self.process.stdin.flush()
        return int(self._lines.wait_for("reports ").split()[1])


class Listening:
    """An application that listens to a laptop, and the floor beside it."""

    def __init__(self, desktop: Desktop, programs: Path, rate: int) -> None:
        self._laptop = Laptop(desktop, programs, rate)
        self.application = Application(desktop, [programs / "quiverly"])
        self.application.press("Start listening")
        self.application.wait_for_slaps(1)  # the first sample
        self._reader = Reader(desktop, [programs / "bench-reader"])
        process = self.application.process.pid
        self._threads = {name: (process, thread) for name, thread in threads(process).items()}
        self._threads["floor"] = (self._reader.process.pid, self._reader.process.pid)

    def window(self) -> dict[str, dict[str, float]]:
        """For each thread, the share of a core (in per cent) and the wake-ups for each report."""
        before, reports, began = self._uses(), self._reader.reports(), time.monotonic_ns()
        time.sleep(WINDOW)
        after, passed = self._uses(), time.monotonic_ns() - began
        reports = self._reader.reports() - reports
        return {
            name: {
                "core": 100 * (after[name].processor - before[name].processor) / passed,
                "wake-ups": (after[name].wake_ups - before[name].wake_ups) / reports,
                "reports": reports * 1e9 / passed,
            }
            for name in self._threads
        }

    def stalls(self, count: int) -> list[dict[str, float]]:
        """What happens when the main thread stands still for a while; nothing where it cannot be held."""
        try:
            return [stall.measure(self.application, self._laptop) for _ in range(count)]
        except PermissionError:
            return []

    def close(self) -> None:
        self.application.close_window()
        end(self._reader.process)
        self._laptop.close()

    def _uses(self) -> dict[str, Use]:
        return {name: Use.of(*thread) for name, thread in self._threads.items()}


def windows(desktop: Desktop, programs: Path, rate: int, count: int) -> dict[str, dict[str, list[float]]]:
    listening = Listening(desktop, programs, rate)
    listening.window()  # the window's last repaints
    found = [listening.window() for _ in range(count)]
    listening.close()
    return {
        thread: {what: [each[thread][what] for each in found] for what in found[0][thread]} for thread in found[0]
    }


def system_calls(desktop: Desktop, programs: Path) -> dict[str, float] | None:
    """How many each thread makes for each report, counted while strace watches; None where it cannot."""
    if not shutil.which("strace") or subprocess.run(["strace", "-o", "/dev/null", "true"]).returncode != 0:
        return None
    traces = desktop.folder / "calls"
    watched = ["strace", "-f", "-ff", "-ttt", "-o"]
    laptop = Laptop(desktop, programs)
    application = Application(desktop, [*watched, traces, programs / "quiverly"])
    application.press("Start listening")
    application.wait_for_slaps(1)
    reader = Reader(desktop, [*watched, desktop.folder / "floor-calls", programs / "bench-reader"])
    began, before = time.time(), reader.reports()
    time.sleep(sum(CALLS_AMONG) + 0.5)
    reports_a_second = (reader.reports() - before) / (time.time() - began)
    children = Path(f"/proc/{application.process.pid}/task/{application.process.pid}/children").read_text().split()
    files = {name: Path(f"{traces}.{thread}") for name, thread in threads(int(children[0])).items()}
    files["floor"] = next(desktop.folder.glob("floor-calls.*"))
    application.close_window()
    end(reader.process)
    laptop.close()
    first, last = began + CALLS_AMONG[0], began + sum(CALLS_AMONG)
    return {name: _calls(file, first, last) / (CALLS_AMONG[1] * reports_a_second) for name, file in files.items()}


def _calls(trace: Path, first: float, last: float) -> int:
    times = (line.split(" ", 1)[0] for line in trace.read_text(errors="replace").splitlines())
    return sum(1 for time in times if time[:1].isdigit() and first <= float(time) < last)


def main() -> None:
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("programs", type=Path)
    parser.add_argument("--output", type=Path, required=True)
    parser.add_argument("--windows", type=int, default=6, help="of two seconds each")
    options = parser.parse_args()
    programs = options.programs.resolve()
    counts = {rate: options.windows if rate == RATES[0] else (options.windows + 1) // 2 for rate in RATES}
    with onboarded_desktop() as desktop:
        try:
            results = {
                "rates": {rate: windows(desktop, programs, rate, count) for rate, count in counts.items()},
                "calls": system_calls(desktop, programs),
            }
            listening = Listening(desktop, programs, RATES[0])
            results["stall"] = listening.stalls((options.windows + 1) // 2)
            listening.close()
        except BaseException:
            print(desktop.logs())
            raise
    options.output.write_text(json.dumps(results))
    for rate, uses in results["rates"].items():
        for thread, use in uses.items():
            print(f"{rate:>7} {thread:14} {statistics.median(use['core']):6.2f} % of a core")


if __name__ == "__main__":
    main()

"""Measures everything, and writes the page about it.

    measure PROGRAMS OUTPUT [--short] [--page FILE]

PROGRAMS is the folder of the release's programs. What is measured goes to OUTPUT, a file for each part, and the page to
FILE or to OUTPUT. With --short each part is tried once, which shows that it works, and its figures mean nothing. Exit
status 0 when every part was measured for which there is all that it needs.
"""

import argparse
import json
import os
import subprocess
import sys
import time
from pathlib import Path
from typing import Sequence

import machine
import page
import servers

Parts = dict[str, list[str | Path]]

HERE = Path(__file__).parent
PATIENCE = 900  # s; a part that takes longer hangs


def parts(programs: Path, short: bool, available: Sequence[str]) -> Parts:
    """The parts in the order in which they run: a script, what it measures, and how much of that."""

    def amount(full: list[str], least: list[str]) -> list[str]:
        return least if short else full

    size: Parts = {} if short else {"size": ["size.py", programs.parent]}  # needs every program
    found: Parts = size | {
        "road": ["road.py", programs, *amount([], ["--rounds=1"])],
        "replay": ["replay.py", programs, *amount([], ["--rounds=1", "--seconds=20"])],
        "start": ["start.py", programs, *amount([], ["--rounds=1", "--peers="])],
        "listening": ["listening.py", programs, *amount([], ["--windows=1"])],
        "first": ["first_slap.py", programs, *amount([], ["--desktops=1", "--silence=1"])],
    }
    for server in available:
        files = ["--files"] if server == "PulseAudio" else []
        found[f"stages-{server}"] = ["stages.py", programs, server, *amount([], ["--slaps=2"])]
        found[f"sound-{server}"] = ["sound.py", programs, server, *amount(files, ["--slaps=2", "--rounds=1", *files])]
    return found


def measure(command: list[str | Path], output: Path) -> str | None:
    """Runs a part. Why it failed, if it did."""
    environment = os.environ | {"PYTHONPATH": str(HERE.parents[1] / "tour")}
    command = [sys.executable, "-B", HERE / command[0], *command[1:], f"--output={output}"]
    with output.with_suffix(".log").open("wb") as log:
        try:
            status = subprocess.run(command, env=environment, stdout=log, stderr=log, timeout=PATIENCE).returncode
        except subprocess.TimeoutExpired:
            return f"it took longer than {PATIENCE} s"
    return None if status == 0 else f"see {output.with_suffix('.log').name}"


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("programs", type=Path)
    parser.add_argument("output", type=Path)
    parser.add_argument("--short", action="store_true")
    parser.add_argument("--page", type=Path)
    options = parser.parse_args()
    options.output.mkdir(parents=True, exist_ok=True)
    results: page.Results = {"machine": machine.facts(), "failures": {}}
    for name, command in parts(options.programs.resolve(), options.short, servers.installed()).items():
        print(f"Measuring {name} ...", end="", flush=True)
        began, output = time.monotonic(), options.output / f"{name}.json"
        output.unlink(missing_ok=True)
        failure = measure(command, output)
        if failure:
            results["failures"][name] = failure
        else:
            results[name] = json.loads(output.read_text())
        print(f" {time.monotonic() - began:.0f} s" + (f": failed, {failure}" if failure else ""), flush=True)
        if failure:
            print((output.with_suffix(".log")).read_text(errors="replace"), file=sys.stderr)
    written = options.page or options.output / "performance.md"
    page.write(HERE.parent / "performance.md.in", written, results)
    return 1 if results["failures"] else 0


if __name__ == "__main__":
    sys.exit(main())

#!/usr/bin/python3 -B
"""How long the first slap after a minute of silence takes to sound.

    first_slap.py PROGRAMS --output=FILE [--desktops NUMBER] [--silence SECONDS]

Several desktops with each sound server are silent at the same time and slapped one after the other.
Writes JSON to FILE: for each server the milliseconds, one for each desktop.
"""

import argparse
import json
import os
import subprocess
import sys
import time
from pathlib import Path

from desktop import onboarded_desktop
from servers import installed
from sound import SERVERS, SHORT, SlapBench

PATIENCE = 240  # s
APART = 3  # s


def one(programs: Path, server: str, silence: float) -> float | None:
    with onboarded_desktop() as desktop:
        bench = SlapBench(desktop, programs, server)
        time.sleep(silence)
        began, heard = bench.slap(SHORT)
    return None if heard is None else (heard - began) / 1e6


def several(programs: Path, desktops: int, silence: float) -> dict[str, list[float | None]]:
    running = []
    for number in range(desktops):
        for server in installed():
            command = [sys.executable, "-B", __file__, programs, f"--server={server}"]
            command.append(f"--silence={silence + len(running) * APART}")
            running.append((server, subprocess.Popen(command, stdout=subprocess.PIPE, env=os.environ)))
    times: dict[str, list[float | None]] = {server: [] for server in installed()}
    for server, process in running:
        told, _ = process.communicate(timeout=PATIENCE)
        if process.returncode != 0:
            raise RuntimeError(f"the desktop with {server} failed")
        times[server].append(json.loads(told))
    return times


def main() -> None:
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("programs", type=Path)
    parser.add_argument("--output", type=Path)
    parser.add_argument("--desktops", type=int, default=3, help="for each server")
    parser.add_argument("--silence", type=float, default=60)
    parser.add_argument("--server", choices=SERVERS, help="only one desktop, with this one; prints its time")
    options = parser.parse_args()
    programs = options.programs.resolve()
    if options.server:
        print(json.dumps(one(programs, options.server, options.silence)))
    else:
        options.output.write_text(json.dumps(several(programs, options.desktops, options.silence)))


if __name__ == "__main__":
    main()

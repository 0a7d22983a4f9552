#!/usr/bin/python3 -B
"""How long programs take to show their first frame, and how much memory they use then.

    start.py PROGRAMS --output=FILE [--rounds NUMBER]

All on one private display without a window manager, by turns. Writes JSON to FILE.
"""

import argparse
import json
import shutil
import subprocess
import time
from pathlib import Path

from desktop import write_settings
from harness.desktop import Desktop
from harness.processes import end
from harness.sound_server import start_sound_server
from lines import Lines

PEERS = ("galculator", "pavucontrol", "gnome-calculator", "featherpad", "lximage-qt", "pavucontrol-qt")
SETTLING = 1.5  # s until memory is looked at


class Display(Desktop):
    """A screen on which windows are shown as they are asked for; nothing but what users have runs there."""

    def __init__(self) -> None:
        super().__init__(1600, 1200)
        del self.environment["QT_LINUX_ACCESSIBILITY_ALWAYS_ON"]

    def _start_window_manager(self) -> None:
        pass


def start(display: Display, programs: Path, command: str | Path, settling: float) -> tuple[float, int] | None:
    """Milliseconds until the first frame, and kB of memory (PSS) once it has settled."""
    watcher = display.start(
        [programs / "bench-first-frame", command],
        cwd=display.home,
        stdin=subprocess.PIPE,
        stdout=subprocess.PIPE,
        stderr=display.log(Path(command).name),
    )
    try:
        words = Lines(watcher.stdout).wait_for("frame ").split()
        time.sleep(settling)
        return float(words[1]), memory(int(words[2]))
    finally:
        watcher.stdin.close()
        try:
            watcher.wait(20)
        finally:
            end(watcher)


def memory(process: int) -> int:
    """Of a process and its children, in kB: pages that several share count for each by its part."""
    total = 0
    for line in Path(f"/proc/{process}/smaps_rollup").read_text().splitlines():
        if line.startswith("Pss:"):
            total += int(line.split()[1])
    children = Path(f"/proc/{process}/task/{process}/children").read_text().split()
    return total + sum(memory(int(child)) for child in children)


def main() -> None:
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("programs", type=Path)
    parser.add_argument("--output", type=Path, required=True)
    parser.add_argument("--rounds", type=int, default=8)
    parser.add_argument("--peers", default=",".join(PEERS), help="with commas between them")
    options = parser.parse_args()
    programs = options.programs.resolve()
    peers = [peer for peer in options.peers.split(",") if peer]
    commands: dict[str, str | Path] = {"Quiverly": programs / "quiverly"}
    commands |= {name: name for name in peers if shutil.which(name)}
    results: dict[str, dict[str, list[float]]] = {name: {"frame": [], "memory": []} for name in commands}
    with Display() as display:
        try:
            write_settings(display)
            start_sound_server(display)
            for number in range(options.rounds + 1):
                for name, command in commands.items():
                    settling = SETTLING if number % 5 == 1 else 0.2
                    frame, used = start(display, programs, command, settling)
                    if number > 0:  # the first round reads from the disk
                        results[name]["frame"].append(frame)
                    if settling == SETTLING:
                        results[name]["memory"].append(used)
        except BaseException:
            print(display.logs())
            raise
    missing = [name for name in peers if name not in commands]
    options.output.write_text(json.dumps({"programs": results, "missing": missing}))


if __name__ == "__main__":
    main()

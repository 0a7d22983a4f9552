#!/usr/bin/python3 -B
"""How long it takes to replay a long recording, and to read and decode it and do no more.

    replay.py PROGRAMS --output=FILE [--rounds NUMBER] [--seconds NUMBER]

Both by turns, on a recording of a laptop at rest that is slapped now and then. Writes JSON to FILE.
"""

import argparse
import json
import os
import random
import struct
import subprocess
import tempfile
import time
from pathlib import Path

RATE = 1000  # reports a second
SLAP_EVERY = 5  # s
BLOCK = 100  # s of the recording that repeat


def reports(seconds: int) -> list[str]:
    """What the sensor sends, as the digits of a recording."""
    chance = random.Random(1)
    texts = []
    for number in range(seconds * RATE):
        slapped = 0.6 if number % (SLAP_EVERY * RATE) < 8 else 0.0
        axes = (round(65536 * (up + chance.gauss(0, 0.0008))) for up in (0.0, 0.0, 1.0 + slapped))
        texts.append(struct.pack("<HI3iI", 1, number, *axes, number ^ 0x5A5A5A5A).hex())
    return texts


def write_recording(file: Path, seconds: int) -> None:
    block = reports(min(seconds, BLOCK))
    with file.open("w") as recording:
        for first in range(0, seconds * RATE, len(block)):
            lines = (f"{(first + at) // RATE}.{(first + at) % RATE:03} {text}\n" for at, text in enumerate(block))
            recording.writelines(lines)


def run(command: list[str | Path]) -> dict[str, float]:
    """Wall time and processor time in seconds."""
    began = time.monotonic()
    process = subprocess.Popen(command, stdout=subprocess.DEVNULL)
    _, status, usage = os.wait4(process.pid, 0)
    passed = time.monotonic() - began
    process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode != 0:
        raise RuntimeError(f"{command} ended with status {process.returncode}")
    return {"wall": passed, "processor": usage.ru_utime + usage.ru_stime}


def memory(command: list[str | Path]) -> int:
    """The most that a command uses, in kB, looked at while it runs."""
    most = 0
    process = subprocess.Popen(command, stdout=subprocess.DEVNULL)
    while process.poll() is None:
        status = Path(f"/proc/{process.pid}/status").read_text()
        if "\nVmHWM:" in status and status.startswith("Name:\t" + Path(command[0]).name[:15]):
            most = int(status.partition("\nVmHWM:")[2].split()[0])
        time.sleep(0.01)
    return most


def main() -> None:
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("programs", type=Path)
    parser.add_argument("--output", type=Path, required=True)
    parser.add_argument("--rounds", type=int, default=7)
    parser.add_argument("--seconds", type=int, default=3600, help="of the recording")
    options = parser.parse_args()
    programs = options.programs.resolve()
    with tempfile.TemporaryDirectory(prefix="quiverly-") as folder:
        recording = Path(folder) / "recording.txt"
        write_recording(recording, options.seconds)
        commands = {
            "quiverly-replay": [programs / "quiverly-replay", recording],
            "floor": [programs / "bench-hex", recording],
        }
        results: dict[str, list[dict[str, float]]] = {name: [] for name in commands}
        for number in range(options.rounds + 1):
            for name, command in commands.items():
                spent = run(command)
                if number > 0:  # the first round reads from the disk
                    results[name].append(spent)
        used = {name: memory(command) for name, command in commands.items()}
        size = recording.stat().st_size
    options.output.write_text(json.dumps({"bytes": size, "seconds": options.seconds, "runs": results, "memory": used}))


if __name__ == "__main__":
    main()

#!/usr/bin/python3 -B
"""What single steps cost, each beside its floor: the micro-benchmarks, several times in random order.

    road.py PROGRAMS --output=FILE [--rounds NUMBER]

Writes JSON to FILE: for each benchmark the nanoseconds for one item, one for each round.
"""

import argparse
import json
import subprocess
import tempfile
from pathlib import Path

BENCHES = ("road-bench", "pack-bench")


def run(program: Path, rounds: int) -> dict[str, list[float]]:
    with tempfile.NamedTemporaryFile(suffix=".json") as output:
        command = [
            program,
            f"--benchmark_out={output.name}",
            "--benchmark_out_format=json",
            f"--benchmark_repetitions={rounds}",
            "--benchmark_enable_random_interleaving=true",
            "--benchmark_min_time=0.02",
        ]
        subprocess.run(command, check=True, stdout=subprocess.DEVNULL, timeout=300)
        runs = json.load(output)["benchmarks"]
    times: dict[str, list[float]] = {}
    for each in runs:
        if each["run_type"] == "iteration":
            name = each["run_name"].partition("/iterations")[0]
            for suffix in ("/manual_time", "/real_time"):
                name = name.removesuffix(suffix)
            times.setdefault(name, []).append(1e9 / each["items_per_second"])
    return times


def main() -> None:
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("programs", type=Path)
    parser.add_argument("--output", type=Path, required=True)
    parser.add_argument("--rounds", type=int, default=10)
    options = parser.parse_args()
    times: dict[str, list[float]] = {}
    for bench in BENCHES:
        times |= run(options.programs / bench, options.rounds)
    options.output.write_text(json.dumps(times))


if __name__ == "__main__":
    main()

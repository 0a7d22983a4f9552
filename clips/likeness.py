#!/usr/bin/env python3
"""Measures the committed clips with Praat, as recordings of voices are measured: `likeness.py PROGRAM AUDIO`, where
PROGRAM is the built quiverly-clips and AUDIO the folder of the clips.

Prints a line for each clip with tabs between the columns, the first line names them. With --markdown it prints the
tables of clips/README.md instead.
"""

import argparse
import statistics
import subprocess
import tempfile
from pathlib import Path

MEASURE = Path(__file__).with_name("measure") / "voices.praat"
PATIENCE = 300  # seconds for a program

Row = dict[str, str]


def output_of(command: list[str | Path]) -> list[list[str]]:
    result = subprocess.run(command, capture_output=True, text=True, timeout=PATIENCE, check=False)
    if result.returncode != 0:
        raise SystemExit(f"{command[0]}: {result.stderr}")
    return [line.split("\t") for line in result.stdout.splitlines()]


def measured(program: Path, audio: Path) -> list[Row]:
    clips = [dict(zip(("clip", "kind", "speaker", "title"), line, strict=True)) for line in output_of([program, "list"])]
    clips = [clip for clip in clips if not clip["clip"].startswith("halo/")]  # where nobody speaks and nothing escalates
    with tempfile.NamedTemporaryFile("w", suffix=".txt") as names:
        names.write("".join(f"{audio.resolve() / clip['clip']}\n" for clip in clips))
        names.flush()
        header, *lines = output_of(["praat", "--run", MEASURE, names.name])
    return [clip | dict(zip(header, line, strict=True)) for clip, line in zip(clips, lines, strict=True)]


def number(text: str) -> float | None:
    return None if "undefined" in text else float(text)


def median(rows: list[Row], column: str) -> float:
    return statistics.median([value for row in rows if (value := number(row[column])) is not None])


def voices(rows: list[Row], pack: str) -> list[Row]:
    return [row for row in rows if row["kind"] and row["clip"].startswith(f"{pack}/")]


# The table's columns: heading, column of the measurement, digits.
FIGURES = (("s", "seconds", 2), ("rise ms", "rise", 0), ("f0", "f0", 0), ("range st", "range", 0), ("jitter %", "jitter", 1),
           ("shimmer %", "shimmer", 0), ("HNR", "hnr", 1), ("F1", "f1", 0), ("F2", "f2", 0), ("F3", "f3", 0),
           ("F1 per 10 ms", "move1", 0), ("F2 per 10 ms", "move2", 0), ("B1", "b1", 0), ("voiced %", "voiced", 0),
           ("6-8 kHz dB", "top", 0))


def table(first: list[str], lines: list[tuple[list[str], list[float | None]]]) -> str:
    text = f"| {' | '.join(first + [heading for heading, _, _ in FIGURES])} |\n"
    text += "|---" * len(first) + "|--:" * len(FIGURES) + "|\n"
    for names, values in lines:
        cells = ["" if value is None else f"{value:.{digits}f}"
                 for value, (_, _, digits) in zip(values, FIGURES, strict=True)]
        text += f"| {' | '.join(names + cells)} |\n"
    return text


def markdown(rows: list[Row]) -> str:
    packs = ("pain", "sexy")
    medians = [([pack, str(len(voices(rows, pack)))], [median(voices(rows, pack), column) for _, column, _ in FIGURES])
               for pack in packs]
    each = [([row["clip"].removesuffix(".mp3"), row["speaker"], row["kind"]],
             [number(row[column]) for _, column, _ in FIGURES])
            for pack in packs for row in voices(rows, pack)]
    return table(["medians", "voices"], medians) + "\n" + table(["clip", "speaker", "kind"], each)


def main() -> None:
    parser = argparse.ArgumentParser(description="Measures the clips with Praat.")
    parser.add_argument("program", type=Path)
    parser.add_argument("audio", type=Path)
    parser.add_argument("--markdown", action="store_true")
    arguments = parser.parse_args()
    rows = measured(arguments.program, arguments.audio)
    if arguments.markdown:
        print(markdown(rows), end="")
    else:
        print("\t".join(rows[0]))
        for row in rows:
            print("\t".join(row.values()))


if __name__ == "__main__":
    main()

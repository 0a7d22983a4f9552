"""Replays one scenario and compares what comes out with what is expected.

A scenario is a folder with

  recording.txt     what is replayed
  expected.jsonl    the events, to the byte
  arguments         options before the recording, one a line, as --option=value; none if missing
  resources/        the clips; those in default-resources/ beside the scenarios if missing

Only every eighth report becomes a sample. A recording may therefore hold lines of a form that only this script knows:
TIME sample X Y Z, in g, stands for seven empty reports and one with that acceleration. They are written out before
quiverly-replay gets the recording.

The model has to agree with expected.jsonl, too, unless clips are named as it cannot order them.
"""

import difflib
import re
import struct
import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent.parent / "tools" / "replay"))

from program import differences, predict, run  # noqa: E402


def optional_text(file):
    return file.read_text(encoding="utf-8") if file.exists() else ""


def with_samples_written_out(recording):
    def reports(line):
        time, axes = line[1], (round(float(axis) * 65536) for axis in line[2].split())
        report = bytes(6) + struct.pack("<iii", *axes)
        return (time + b" -\n") * 7 + time + b" " + report.hex().encode()

    return re.sub(rb"^([0-9.]+) sample (.+)$", reports, recording, flags=re.MULTILINE)


def model_can_order(resources):
    return all(re.fullmatch(r"[A-Za-z0-9.]+", clip.stem) for clip in resources.rglob("*.mp3"))


def settings_of(arguments):
    pairs = dict(argument.lstrip("-").partition("=")[::2] for argument in arguments)
    settings = {"samples": "samples" in pairs, "pack": pairs.get("pack")}
    if "threshold" in pairs:
        settings["threshold"] = float(pairs["threshold"])
    return settings


def compare(what, actual, expected):
    lines = difflib.unified_diff(expected.splitlines(), actual.splitlines(), f"expected {what}", what, lineterm="")
    report = "\n".join(lines)
    return report or ("" if actual == expected else f"{what} differs in its line ends")


def check(scenario):
    own = scenario / "resources"
    resources = own if own.exists() else scenario.parent / "default-resources"
    arguments = optional_text(scenario / "arguments").split("\n")[:-1]
    expected = (scenario / "expected.jsonl").read_text(encoding="utf-8")
    recording = with_samples_written_out((scenario / "recording.txt").read_bytes())

    result = run(f"--resources={resources}", *arguments, "-", recording=recording)
    yield compare("events", result.stdout.decode(), expected)
    yield compare("standard error", result.stderr.decode(), "")
    if result.returncode != 0:
        yield f"exit status {result.returncode}"

    if model_can_order(resources):
        events, malformed = predict(recording, resources=resources, **settings_of(arguments))
        yield from (f"model: {difference}" for difference in differences(expected.encode(), events))
        if malformed:
            yield f"model: malformed is line {malformed}"


def main():
    problems = [problem for problem in check(Path(sys.argv[1]).resolve()) if problem]
    print("\n".join(problems))
    sys.exit(1 if problems else 0)


if __name__ == "__main__":
    main()

"""Replays one scenario and compares what comes out with what is expected.

A scenario is a folder with

  recording.txt     what is replayed
  expected.jsonl    the events, to the byte
  expected-error    what is said on standard error, if anything; the exit status is then 2
  arguments         options before the recording, one a line, as --option=value; none if missing
  resources/        the clips; those in default-resources/ beside the scenarios if missing

The model has to agree with expected.jsonl, too, unless clips are named as it cannot order them.
"""

import difflib
import re
import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent.parent / "tools" / "replay"))

from program import differences, predict, run  # noqa: E402


def optional_text(file):
    return file.read_text(encoding="utf-8") if file.exists() else ""


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
    expected_error = optional_text(scenario / "expected-error")

    result = run(f"--resources={resources}", *arguments, "recording.txt", cwd=scenario)
    yield compare("events", result.stdout.decode(), expected)
    yield compare("standard error", result.stderr.decode(), expected_error)
    if result.returncode != (2 if expected_error else 0):
        yield f"exit status {result.returncode}"

    if model_can_order(resources):
        recording = (scenario / "recording.txt").read_bytes()
        events, malformed = predict(recording, resources=resources, **settings_of(arguments))
        yield from (f"model: {difference}" for difference in differences(expected.encode(), events))
        named = re.match(r"quiverly-replay: recording\.txt:([0-9]+): ", expected_error)
        if malformed != (int(named[1]) if named else None):
            yield f"model: malformed is line {malformed}"


def main():
    problems = [problem for problem in check(Path(sys.argv[1]).resolve()) if problem]
    print("\n".join(problems))
    sys.exit(1 if problems else 0)


if __name__ == "__main__":
    main()

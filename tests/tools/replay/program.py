"""Runs quiverly-replay, and compares what it printed with the model."""

import json
import os
import subprocess
from decimal import Decimal

from model import Malformed, Model

PROGRAM = os.path.abspath(os.environ["QUIVERLY_REPLAY"])


def run(*arguments, recording=b"", **more):
    """Runs the program with the recording as its standard input."""
    return subprocess.run([PROGRAM, *arguments], input=recording, capture_output=True, check=False, timeout=250, **more)


def predict(recording, **settings):
    """The events, and the number of the malformed line if there is one."""
    events = []
    try:
        for event in Model(**settings).replay(recording):
            events.append(event)
    except Malformed as malformed:
        return events, malformed.args[0]
    return events, None


def same(printed, predicted):
    """Whether the value, with numbers as their texts, is the predicted one in its shortest form."""
    if isinstance(predicted, set):
        return printed in predicted
    if isinstance(predicted, (int, float)):
        return isinstance(printed, Decimal) and printed == Decimal(repr(predicted))
    return printed == predicted


def differences(printed, predicted):
    """Lines that tell where printed text and predicted events differ."""
    lines = printed.decode().splitlines()
    found = []
    for number, (line, event) in enumerate(zip(lines, predicted), start=1):
        members = json.loads(line, object_pairs_hook=list, parse_float=Decimal, parse_int=Decimal)
        keys = [key for key, _ in members]
        if keys != list(event) or not all(same(value, event[key]) for key, value in members):
            found.append(f"event {number}: printed {line}, predicted {event}")
    if len(lines) != len(predicted):
        found.append(f"{len(lines)} events printed, {len(predicted)} predicted")
    return found


def disagreement(recording, arguments, name="-", **settings):
    """What is different between program and model, as a text; empty when they agree."""
    events, malformed = predict(recording, **settings)
    result = run(*arguments, name, recording=recording)
    found = differences(result.stdout, events)
    if result.returncode != (0 if malformed is None else 2):
        found.append(f"exit status {result.returncode}")
    complaint = result.stderr.decode(errors="replace")
    if malformed is None:
        if complaint:
            found.append(f"complaint: {complaint}")
    elif not complaint.startswith(f"quiverly-replay: {name}:{malformed}: ") or complaint.count("\n") != 1:
        found.append(f"line {malformed} is malformed, but the program says: {complaint}")
    return "\n".join(found)

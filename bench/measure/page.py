"""Writes docs/performance.md and its pictures from what was measured, by filling in bench/performance.md.in."""

import math
import re
from pathlib import Path
from typing import Callable, Sequence

import plot
from spread import Spread, number

IMAGES = "images"  # a folder beside the page

Results = dict[str, dict]  # by part: what it measured, or {"failed": why}

ALIGNED = "---:"


def table(head: Sequence[str], rows: Sequence[Sequence[str]]) -> str:
    lines = [head, ["---"] + [ALIGNED] * (len(head) - 1), *rows]
    return "\n".join("| " + " | ".join(line) + " |" for line in lines)


def missing(names: Sequence[str]) -> str:
    return f"\n\nNot measured, because not installed or not starting: {', '.join(names)}." if names else ""


def ratio(figure: float, floor: float) -> str:
    return "–" if math.isnan(figure / floor) else f"{figure / floor:.2f} ×"


def percent(figure: float) -> str:
    return f"{figure:.2f} %"


# From slap to sound


def times(results: Results, server: str) -> str:
    measured = results[f"sound-{server}"]
    floors = {name: Spread.of(heard(each)) for name, each in measured["times"].items() if name.startswith("floor")}
    rows = []
    for name, each in measured["times"].items():
        played = heard(each)
        spread = Spread.of(played)
        _, _, clip = name.partition(", ")
        floor = floors["floor" + (f", {clip}" if clip else "")]
        rows.append(
            [
                name,
                number(spread.p50),
                number(spread.p99),
                f"{number(spread.p25)}–{number(spread.p75)}",
                "" if name.startswith("floor") else ratio(spread.p50, floor.p50),
                "" if name.startswith("floor") else ratio(spread.p99, floor.p99),
                f"{len(each) - len(played)} of {len(each)}",
            ]
        )
    head = ["ms", "p50", "p99", "middle half", "p50 to floor", "p99 to floor", "not heard"]
    return table(head, rows) + missing(measured["missing"])


def heard(figures: Sequence[float | None]) -> list[float]:
    return [each for each in figures if each is not None]


def stages(results: Results) -> str:
    columns = {part.partition("-")[2]: each for part, each in results.items() if part.startswith("stages-")}
    if not columns:
        raise KeyError("stages")
    rows = []
    for stage in next(iter(columns.values())):
        spreads = [Spread.of(column[stage]) for column in columns.values()]
        rows.append([stage, *(number(figure) for spread in spreads for figure in (spread.p50, spread.p99))])
    head = ["ms", *(f"{server}, {figure}" for server in columns for figure in ("p50", "p99"))]
    return table(head, rows)


def first(results: Results) -> str:
    told = []
    for server, figures in results["first"].items():
        times = [number(figure) for figure in heard(figures)]
        lost = len(figures) - len(times)
        told.append(f"{server}: {', '.join(times)} ms" + (f", {lost} not heard" if lost else ""))
    return "The first slap after a minute of silence, on a new desktop each. " + "; ".join(told) + "."


# Listening


def listening(results: Results) -> str:
    measured = results["listening"]
    uses, calls = measured["rates"]["1000"], measured["calls"]
    floor = Spread.of(uses["floor"]["core"])
    rows = []
    for name, use in [*uses.items(), ("both threads", both(uses))]:
        core = Spread.of(use["core"])
        rows.append(
            [
                name,
                percent(core.p50),
                f"{percent(core.p25)}–{percent(core.p75)}",
                ratio(core.p50, floor.p50),
                number(Spread.of(use["wake-ups"]).p50),
                number(calls[name]) if calls and name in calls else "",
            ]
        )
    return table(["", "of a core", "middle half", "to floor", "wake-ups a report", "system calls a report"], rows)


def both(uses: dict[str, dict[str, list[float]]]) -> dict[str, list[float]]:
    pair = uses["sensor thread"], uses["main thread"]
    return {what: [sum(each) for each in zip(*(use[what] for use in pair))] for what in pair[0]}


def rates(results: Results) -> str:
    rows = []
    for rate, uses in results["listening"]["rates"].items():
        floor = Spread.of(uses["floor"]["core"]).p50
        together = Spread.of(both(uses)["core"]).p50
        cells = [percent(Spread.of(uses[name]["core"]).p50) for name in ("sensor thread", "main thread", "floor")]
        arrived = Spread.of(uses["floor"]["reports"]).p50
        rows.append([f"{int(rate):,}", f"{arrived:,.0f}", *cells, ratio(together, floor)])
    return table(["reports a second", "read by floor", "sensor thread", "main thread", "floor", "both to floor"], rows)


def stall(results: Results) -> str:
    if not results["listening"]["stall"]:
        return "What happens when the main thread stands still was not measured: the system did not let it be held."
    counted = Spread.of([each["counted"] for each in results["listening"]["stall"]])
    grown = Spread.of([each["memory"] for each in results["listening"]["stall"]])
    return (
        f"When the main thread alone is held for two seconds, a slap of the first moment is on the accessibility bus "
        f"{number(counted.p50)} ms\nafter it goes on, and memory has grown by {max(0.0, grown.p50):.0f} kB meanwhile."
    )


# Replay and road


def replay(results: Results) -> str:
    measured = results["replay"]
    floor = Spread.of([each["wall"] for each in measured["runs"]["floor"]]).p50
    rows = []
    for name, runs in measured["runs"].items():
        wall = Spread.of([each["wall"] for each in runs])
        rows.append(
            [
                name,
                f"{wall.p50:.2f} s",
                f"{wall.p25:.2f}–{wall.p75:.2f} s",
                f"{Spread.of([each['processor'] for each in runs]).p50:.2f} s",
                ratio(wall.p50, floor),
                f"{measured['memory'][name] / 1000:.1f} MB",
            ]
        )
    return table(["", "p50", "middle half", "processor", "to floor", "memory"], rows)


def recording(results: Results) -> str:
    measured = results["replay"]
    return f"{measured['bytes'] / 1e6:.0f} MB, {measured['seconds'] / 60:.0f} minutes"


def road(results: Results) -> str:
    measured = results["road"]
    rows = []
    for name, figures in measured.items():
        if not name.endswith("/floor"):
            spread, floor = Spread.of(figures), Spread.of(measured[f"{name}/floor"])
            middle = f"{number(spread.p25)}–{number(spread.p75)}"
            rows.append([name, number(spread.p50), middle, number(floor.p50), ratio(spread.p50, floor.p50)])
    return table(["ns", "p50", "middle half", "floor", "to floor"], sorted(rows))


# Start, memory, size


def start(results: Results) -> str:
    measured, size = results["start"], results.get("size")
    own = Spread.of(measured["programs"]["Quiverly"]["frame"]).p50
    rows = []
    for name, each in measured["programs"].items():
        frame, memory = Spread.of(each["frame"]), Spread.of(each["memory"]).p50
        kilobytes = size and (size["peers"].get(name) if name != "Quiverly" else size["Quiverly"]["all"])
        room = f"{kilobytes / 1000:.1f}" if kilobytes else ""
        middle = f"{number(frame.p25)}–{number(frame.p75)}"
        rows.append([name, number(frame.p50), middle, ratio(frame.p50, own), f"{memory / 1000:.1f}", room])
    head = ["", "first frame, ms", "middle half", "to Quiverly", "memory, MB", "on disk, MB"]
    return table(head, rows) + missing(measured["missing"])


def clips(results: Results) -> str:
    return f"{results['size']['Quiverly']['clips'] / 1000:.1f} MB"


def machine(results: Results) -> str:
    return "\n".join(f"- {name}: {fact}" for name, fact in results["machine"].items())


def draw(folder: Path, results: Results) -> None:
    for server in ("PulseAudio", "PipeWire"):
        if measured := results.get(f"sound-{server}"):
            rows = {name: heard(each) for name, each in measured["times"].items()}
            plot.draw(folder / f"{server.lower()}.svg", f"From slap to sound on {server}", "ms", rows)
    if measured := results.get("start"):
        rows = {name: each["frame"] for name, each in measured["programs"].items()}
        plot.draw(folder / "start.svg", "From start to first frame", "ms", rows)


FILLINGS: dict[str, Callable[[Results], str]] = {
    "machine": machine,
    "pulseaudio": lambda results: times(results, "PulseAudio"),
    "pipewire": lambda results: times(results, "PipeWire"),
    "first": first,
    "stages": stages,
    "listening": listening,
    "rates": rates,
    "stall": stall,
    "recording": recording,
    "replay": replay,
    "road": road,
    "start": start,
    "clips": clips,
}


def write(template: Path, page: Path, results: Results) -> None:
    draw(page.parent / IMAGES, results)

    def fill(mark: re.Match[str]) -> str:
        try:
            return FILLINGS[mark[1]](results)
        except KeyError as failure:
            reason = results["failures"].get(failure.args[0], "something that it needs is not installed")
            return f"*Not measured: {reason}.*"

    page.write_text(re.sub(r"@([a-z-]+)@", fill, template.read_text(encoding="utf-8")), encoding="utf-8")

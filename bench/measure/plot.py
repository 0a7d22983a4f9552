"""Draws distributions: a dot for each figure, a mark at the median; in dark colours for a reader who prefers these."""

import math
from pathlib import Path
from typing import Mapping, Sequence
from xml.sax.saxutils import escape

from spread import Spread, number

WIDTH, LEFT, RIGHT = 720, 190, 60
ROW, TOP, BOTTOM = 26, 40, 34
DOT = 2.2
OWN = "Quiverly"

STYLE = """
    text { fill: #1f2937; }
    .paper { fill: #ffffff; }
    .grid { stroke: #d1d5db; }
    .dot { fill: #6b7280; fill-opacity: 0.3; }
    .median { stroke: #1f2937; stroke-width: 2; }
    .own .dot { fill: #c3197a; }
    .own .median { stroke: #c3197a; }
    .own text { font-weight: bold; }
    @media (prefers-color-scheme: dark) {
      text { fill: #e5e7eb; }
      .paper { fill: #16181d; }
      .grid { stroke: #3f4550; }
      .dot { fill: #9ca3af; }
      .median { stroke: #e5e7eb; }
      .own .dot, .own .median { fill: #f472b6; stroke: #f472b6; }
      .own .dot { stroke: none; }
    }
"""


class Axis:
    """A logarithmic axis with marks at 1, 2 and 5."""

    def __init__(self, least: float, most: float) -> None:
        self._low, self._high = math.log10(least / 1.1), math.log10(most * 1.1)

    def place(self, figure: float) -> float:
        share = (math.log10(figure) - self._low) / (self._high - self._low)
        return LEFT + share * (WIDTH - LEFT - RIGHT)

    def marks(self) -> list[float]:
        decades = range(math.floor(self._low), math.ceil(self._high) + 1)
        marks = (digit * 10.0**decade for decade in decades for digit in (1, 2, 5))
        return [mark for mark in marks if self._low <= math.log10(mark) <= self._high]


def draw(file: Path, title: str, unit: str, rows: Mapping[str, Sequence[float]]) -> None:
    rows = {name: [figure for figure in figures if figure > 0] for name, figures in rows.items()}
    rows = {name: figures for name, figures in rows.items() if figures}
    if not rows:
        return
    every = [figure for figures in rows.values() for figure in figures]
    axis = Axis(min(every), max(every))
    height = TOP + ROW * len(rows) + BOTTOM
    parts = [
        f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {WIDTH} {height}"',
        '  font-family="sans-serif" font-size="13">',
        f"  <title>{escape(title)}</title>",
        f"  <style>{STYLE}  </style>",
        f'  <rect class="paper" width="{WIDTH}" height="{height}"/>',
        f'  <text x="12" y="24" font-weight="bold">{escape(title)}, {unit}</text>',
    ]
    bottom = height - BOTTOM
    for mark in axis.marks():
        x = axis.place(mark)
        parts.append(f'  <path class="grid" d="M{x:.1f} {TOP - 4}V{bottom}"/>')
        parts.append(f'  <text x="{x:.1f}" y="{bottom + 18}" text-anchor="middle">{mark:g}</text>')
    for index, (name, figures) in enumerate(rows.items()):
        parts += _row(axis, TOP + ROW * index + ROW / 2, name, figures)
    file.parent.mkdir(parents=True, exist_ok=True)
    file.write_text("\n".join([*parts, "</svg>", ""]), encoding="utf-8")


def _row(axis: Axis, y: float, name: str, figures: Sequence[float]) -> list[str]:
    """The dots are spread up and down in a fixed pattern, so that equal ones show."""
    lines = [f'  <g class="{"own" if name.startswith(OWN) else "other"}">']
    lines.append(f'    <text x="{LEFT - 10}" y="{y + 4}" text-anchor="end">{escape(name)}</text>')
    for index, figure in enumerate(figures):
        up = (index * 0.618034 % 1 - 0.5) * (ROW - 10)
        lines.append(f'    <circle class="dot" cx="{axis.place(figure):.1f}" cy="{y + up:.1f}" r="{DOT}"/>')
    median = Spread.of(figures).p50
    x = axis.place(median)
    lines.append(f'    <path class="median" d="M{x:.1f} {y - ROW / 2 + 3}V{y + ROW / 2 - 3}"/>')
    lines.append(f'    <text x="{WIDTH - 8}" y="{y + 4}" text-anchor="end">{number(median)}</text>')
    return [*lines, "  </g>"]

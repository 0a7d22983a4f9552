"""Medians and spread; those of no figures are no numbers."""

import math
from dataclasses import dataclass
from typing import Sequence

import numpy


@dataclass(frozen=True)
class Spread:
    p25: float
    p50: float
    p75: float
    p99: float

    @classmethod
    def of(cls, figures: Sequence[float]) -> "Spread":
        if not figures:
            return cls(*[math.nan] * 4)
        return cls(*(float(each) for each in numpy.percentile(figures, (25, 50, 75, 99))))


def number(figure: float) -> str:
    """With two significant digits, or as a whole number."""
    if math.isnan(figure):
        return "–"
    if figure >= 10_000:
        return f"{figure:,.0f}"
    return f"{figure:.{0 if figure >= 100 else 1 if figure >= 10 else 2}f}"

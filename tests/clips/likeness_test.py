"""The voices of the committed clips, measured with Praat, lie where recordings of real voices do.

The bounds hold what was measured on 403 recordings of people who cry out, hum, laugh and gasp, as medians of men, women,
cartoon voices and hums: pitch, its unevenness (jitter, shimmer), the share of noise (HNR), the resonances of the mouth,
how far they move in 10 ms, how wide the first one is, the share of voice, and how soon a cry is at its loudest.
"""

import csv
import os
import statistics
import subprocess
import sys
import unittest
from pathlib import Path

LIKENESS = Path(os.environ["QUIVERLY_LIKENESS"])
PROGRAM = os.environ["QUIVERLY_CLIPS"]
AUDIO = os.environ["QUIVERLY_AUDIO"]

# Least and greatest median of the clips of a kind. Loose where a kind has few clips.
CRIES = {"seconds": (0.3, 0.8), "rise": (30, 130), "jitter": (1.5, 5.5), "shimmer": (8, 20), "hnr": (5, 11.5),
         "f1": (600, 950), "f2": (1350, 2000), "f3": (2400, 3100), "move1": (25, 90), "move2": (40, 150),
         "b1": (110, 400), "voiced": (50, 82), "top": (-36, -20)}
BOUNDS = {
    "cry": CRIES | {"f0": (250, 500)},
    "yelp": CRIES | {"f0": (300, 900), "b1": (30, 300)},
    "scream": CRIES | {"f0": (200, 800), "b1": (80, 400), "move1": (15, 90), "move2": (25, 150)},
    "groan": CRIES | {"f0": (80, 260), "rise": (30, 190), "move1": (40, 160), "seconds": (0.4, 1.1), "shimmer": (8, 26)},
    "hum": {"seconds": (0.4, 1), "rise": (50, 250), "f0": (90, 350), "hnr": (6, 16), "voiced": (50, 82), "top": (-36, -20)},
    "gasp": {"seconds": (0.3, 0.8), "rise": (20, 190), "hnr": (2, 11), "voiced": (20, 70), "top": (-31, -12)},
    "laugh": {"rise": (20, 300), "f0": (120, 420), "jitter": (1.5, 6), "hnr": (3, 10), "f1": (600, 950), "f2": (1300, 2100),
              "move1": (25, 90), "move2": (50, 190), "b1": (150, 420), "voiced": (40, 68), "top": (-33, -18)},
    "call": {"f0": (180, 520), "range": (8, 40), "jitter": (1.5, 5), "hnr": (5, 12), "f1": (600, 950), "f2": (1250, 2000),
             "move1": (20, 80), "move2": (50, 160), "b1": (110, 360), "voiced": (50, 82), "top": (-36, -17)},
}


def measure() -> list[dict[str, str]]:
    result = subprocess.run([sys.executable, "-B", LIKENESS, PROGRAM, AUDIO], capture_output=True, text=True, timeout=280,
                            check=False)
    if result.returncode != 0:
        raise RuntimeError(result.stderr)
    return list(csv.DictReader(result.stdout.splitlines(), delimiter="\t"))


def figures(rows: list[dict[str, str]], column: str) -> list[float]:
    return [float(row[column]) for row in rows if "undefined" not in row[column]]


class LikenessTest(unittest.TestCase):
    rows: list[dict[str, str]]

    @classmethod
    def setUpClass(cls) -> None:
        cls.rows = measure()

    def pack(self, name: str) -> list[dict[str, str]]:
        return [row for row in self.rows if row["clip"].startswith(f"{name}/")]

    def test_every_kind_of_voice_has_bounds_and_the_other_way_round(self) -> None:
        self.assertEqual({row["kind"] for row in self.rows if row["kind"]}, set(BOUNDS))

    def test_the_median_of_every_kind_lies_where_real_voices_do(self) -> None:
        for kind, bounds in BOUNDS.items():
            clips = [row for row in self.rows if row["kind"] == kind]
            for column, (least, most) in bounds.items():
                with self.subTest(kind=kind, figure=column):
                    values = figures(clips, column)
                    self.assertTrue(values)
                    self.assertGreaterEqual(statistics.median(values), least)
                    self.assertLessEqual(statistics.median(values), most)

    def test_in_pain_somebody_cries_out_in_every_clip(self) -> None:
        self.assertTrue(all(row["kind"] and row["speaker"] for row in self.pack("pain")))

    def test_the_cast_is_large(self) -> None:
        speakers = {name: {row["speaker"] for row in self.pack(name) if row["speaker"]} for name in ("pain", "sexy")}
        self.assertGreaterEqual(len(speakers["pain"]), 8)
        self.assertGreaterEqual(len(speakers["sexy"]), 4)
        self.assertFalse(any("girl" in speaker or "boy" in speaker for speaker in speakers["sexy"]))

    def test_most_cries_are_at_their_loudest_within_120_ms(self) -> None:
        rises = figures(self.pack("pain"), "rise")
        self.assertGreaterEqual(sum(rise <= 120 for rise in rises), 0.75 * len(rises))

    def test_most_cries_last_between_a_third_and_three_quarters_of_a_second(self) -> None:
        lengths = figures(self.pack("pain"), "seconds")
        self.assertGreaterEqual(sum(0.3 <= length <= 0.75 for length in lengths), 0.7 * len(lengths))

    def test_the_animals_do_not_sound_like_people(self) -> None:
        voiced = figures(self.pack("lizard"), "voiced")
        noise = figures(self.pack("lizard"), "hnr")
        self.assertLess(statistics.median(voiced), 50)
        self.assertLess(statistics.median(noise), 5)

    def test_the_pitch_travels_further_from_third_to_third_of_an_escalating_pack(self) -> None:
        for name in ("sexy", "lizard"):
            with self.subTest(pack=name):
                ranges = [0 if "undefined" in row["range"] else float(row["range"]) for row in self.pack(name)]
                thirds = [statistics.mean(ranges[len(ranges) * third // 3:len(ranges) * (third + 1) // 3])
                          for third in range(3)]
                self.assertLess(thirds[0], thirds[1])
                self.assertLess(thirds[1], thirds[2])


if __name__ == "__main__":
    unittest.main()

"""Program and model must agree on random recordings, event by event and bit by bit."""

import os
import random
import tempfile
import unittest
from pathlib import Path

from program import disagreement
from recordings import Writer

RECORDINGS = int(os.environ.get("QUIVERLY_RECORDINGS", "300"))
FIRST_SEED = int(os.environ.get("QUIVERLY_FIRST_SEED", "1"))

CLIPS = {
    "audio/pain": ("1.mp3", "2.mp3", "10.mp3"),
    "audio/sexy": [f"{number}.mp3" for number in range(1, 31)],
    "lizard": ("a2.mp3", "a10.mp3", "B1.mp3", "b128.mp3", "notes.txt", ".hidden.mp3", "loud.MP3"),
}


class ModelTest(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)
        self.resources = Path(self.folder.name)
        for folder, names in CLIPS.items():
            (self.resources / folder).mkdir(parents=True)
            for name in names:
                (self.resources / folder / name).touch()

    def test_agrees_on_random_recordings(self):
        for seed in range(FIRST_SEED, FIRST_SEED + RECORDINGS):
            with self.subTest(seed=seed):
                chance = random.Random(seed)
                settings = {"samples": chance.random() < 0.5}
                arguments = [f"--resources={self.resources}", *(["--samples"] if settings["samples"] else [])]
                if chance.random() < 0.5:
                    settings["pack"] = chance.choice(("pain", "halo", "lizard", "Lizard", ""))
                    arguments += ["--pack", settings["pack"]]
                if chance.random() < 0.3:
                    settings["threshold"] = chance.choice((-1.0, 0.0, 0.3, 5e-324))
                    arguments.append(f"--threshold={settings['threshold']:.324f}")
                recording = Writer(chance).recording()
                self.assertEqual(disagreement(recording, arguments, resources=self.resources, **settings), "")


if __name__ == "__main__":
    unittest.main()

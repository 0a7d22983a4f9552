#!/usr/bin/python3 -B
"""Films the application beside the simulated laptop's window, which is slapped with the mouse, with its sound.

Writes tour.webm, and tour.webp, which moves without sound, into the folder of the output. The laptop is slapped softly,
hard, and in a quick series that moves on to stronger clips. Takes a minute, and another one to encode.
"""

import argparse
import itertools
import sys
from pathlib import Path

from harness.application import Application
from harness.camera import Camera, write_video, write_moving_picture
from harness.desktop import Desktop
from harness.laptop_window import TITLE as LAPTOP
from harness.recorder import Recorder
from harness.simulated_laptop import SimulatedLaptop
from harness.sound_server import start_sound_server

SCREEN = (1040, 760)  # pixels
SPOTS = ((0.5, 0.4), (0.37, 0.36), (0.62, 0.25), (0.45, 0.22), (0.6, 0.4))  # of slaps, in parts of that window
SOFTLY, HARD, HARDER = 0.1, 0.5, 0.9  # s for which the mouse button is held
SERIES = (0.1, 0.2, 0.3, 0.5, 0.7, 0.9)  # s; so many within five minutes escalate


class Film:
    def __init__(self, programs: Path, output: Path, desktop: Desktop) -> None:
        self._output = output
        self._spots = itertools.cycle(SPOTS)
        self._desktop = desktop
        sound = start_sound_server(desktop)
        self._recorder = Recorder(sound, desktop.folder / "recording.raw")
        self._laptop = SimulatedLaptop(desktop, programs, "--window")
        self._application = Application(desktop, [programs / "quiverly"])
        desktop.paint_background("#d8c6d6")
        desktop.place_window("Quiverly", 24, 24)
        desktop.place_window(LAPTOP, 460, 24)

    def make(self) -> None:
        file = self._output / "film.mkv"
        self._application.wait_for("Accelerometer detected")
        self._recorder.pass_time(2)  # until the check takes slaps
        camera = Camera(self._desktop, file, SCREEN)
        self._play()
        camera.stop()
        write_video(file, self._output / "tour.webm")
        write_moving_picture(file, self._output / "tour.webp")
        file.unlink()

    def _play(self) -> None:
        self._recorder.pass_time(1)
        self._slap_and_listen(HARD)
        self._application.wait_for("Motion check passed")
        self._application.press("Continue")
        self._application.press("Start listening")
        self._application.choose("Pain")
        for seconds in (SOFTLY, HARD, HARDER):
            self._slap_and_listen(seconds)
        self._application.choose("Lizard")
        for seconds in SERIES:
            self._slap_and_listen(seconds)
        self._recorder.pass_time(1)

    def _slap_and_listen(self, seconds: float) -> None:
        """Slaps the drawn laptop, and waits for the end of the clip that answers."""
        first = self._recorder.length
        self._desktop.press(LAPTOP, *next(self._spots), seconds)
        self._recorder.wait_for_end(first)
        self._recorder.pass_time(0.4)


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("programs", type=Path, help="folder of the programs")
    parser.add_argument("output", type=Path, help="folder for the films")
    arguments = parser.parse_args()
    arguments.output.mkdir(parents=True, exist_ok=True)
    with Desktop(*SCREEN) as desktop:
        try:
            Film(arguments.programs.resolve(), arguments.output, desktop).make()
        except Exception as failure:  # whatever it is, the logs tell more
            print(f"{parser.prog}: {failure}\n{desktop.logs()}", file=sys.stderr)
            return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())

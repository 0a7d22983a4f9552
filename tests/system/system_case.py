"""What the system tests share: one desktop each, and the real parts on it."""

import math
import os
import time
import unittest
from pathlib import Path
from typing import Callable, Sequence

from harness.analysis import level
from harness.application import Application
from harness.clips import TONE_PEAK, write_tone
from harness.desktop import Desktop
from settings import ONBOARDED, write_settings
from harness.simulated_laptop import SimulatedLaptop
from harness.recorder import Recorder
from harness.samples import RATE, Samples
from harness.sound_server import start_sound_server
from harness.waiting import wait_until

PROGRAMS = Path(os.environ["QUIVERLY_PROGRAMS"])  # folder of the programs under test


class SystemTest(unittest.TestCase):
    """Each test has a desktop of its own and a process of its own."""

    def setUp(self) -> None:
        self.desktop = self.enterContext(Desktop())
        self.addCleanup(lambda: print(self.desktop.logs()))

    def start_sound(self) -> Recorder:
        self.sound_server = start_sound_server(self.desktop)
        self.recorder = Recorder(self.sound_server, self.desktop.folder / "recording.raw")
        return self.recorder

    def start_laptop(self) -> SimulatedLaptop:
        self.laptop = SimulatedLaptop(self.desktop, PROGRAMS)
        return self.laptop

    def start_application(self, launcher: Sequence[str | Path] = ()) -> Application:
        """Starts the application, by way of the command `launcher` if there is one."""
        return self.expect_application([*launcher, PROGRAMS / "quiverly"])

    def expect_application(self, command: Sequence[str | Path]) -> Application:
        self.application = Application(self.desktop, command)
        self.addCleanup(self._expect_good_end, self.application)
        return self.application

    def start_on_main_view(self, **settings: object) -> Application:
        """Starts the application for a user who has been through onboarding and keeps these settings."""
        stored = {name.replace("_", "."): value for name, value in settings.items()}
        write_settings(self.desktop, ONBOARDED | stored)
        return self.start_application()

    def listen(self) -> None:
        """Presses Start. A detector that never saw a sample takes the first one for a slap; waits for that, too."""
        self.application.press("Start listening")
        self.application.wait_for_slaps(1)

    def listen_and_hear(self) -> None:
        """Presses Start, and waits for the clip that answers the first sample and for its end."""
        before = self.recorder.length
        self.listen()
        self.recorder.wait_for_end(before)

    def slap_until(self, felt: Callable[[], bool], what: str, slap: Callable[[], object] | None = None) -> None:
        """Slaps again and again, no faster than slaps are told apart, until one is felt."""
        slapped = -math.inf

        def look() -> bool:
            nonlocal slapped
            if not (done := felt()) and time.monotonic() - slapped > 0.7:
                slap() if slap else self.laptop.slap(0.8)
                slapped = time.monotonic()
            return done

        wait_until(look, what)

    def slap_until_counted(self, count: int) -> None:
        self.slap_until(lambda: self.application.counter().count >= count, f"slap {count} to be counted")

    def pass_hardware_check(self) -> None:
        """Gives the test slap; those of the check's first two seconds are not felt."""
        self.application.wait_for("Accelerometer detected")
        self.slap_until(lambda: self.application.shows("Motion check passed"), "the test slap to be felt")

    def write_tones(self, pack: str, *frequencies: float, seconds: float = 3.0) -> None:
        """Gives the user an own pack: a clip a frequency, in this order."""
        for number, frequency in enumerate(frequencies, 1):
            write_tone(self.desktop.data / "quiverly" / "audio" / pack / f"{number}.mp3", frequency, seconds)

    def steady_part(self, start: int) -> Samples:
        """What a tone that began at a frame of the recording sounds like once it is there."""
        return self.recorder.wait_for(start + round(0.05 * RATE), 0.2)

    def tone_volume(self, sound: Samples) -> float:
        """The volume, from 0 to 1, at which one of the tones was played."""
        return level(sound) / (TONE_PEAK / 2**0.5)

    def _expect_good_end(self, application: Application) -> None:
        if application.process.returncode is None:
            self.assertEqual(application.close_window(), 0, "exit status of the application")

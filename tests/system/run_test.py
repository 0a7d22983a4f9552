"""The command that builds the application and runs it beside a simulated laptop, or takes the tour."""

import subprocess
import unittest
from pathlib import Path

import soundfile

from harness.laptop_window import TITLE, LaptopWindow
from harness.waiting import wait_until
from settings import ONBOARDED, write_settings
from system_case import SystemTest

SOURCES = Path(__file__).parents[2]
RUN = SOURCES / "run"
TOUR = SOURCES / "build/tour"
HOW_TO_SLAP = "To slap the simulated laptop, press it on the screen, or type here: slap 0.6"


class RunTest(SystemTest):
    def test_the_application_runs_beside_a_simulated_laptop_that_is_slapped_by_typing(self) -> None:
        application = self.expect_application([RUN])
        self.assertIn(HOW_TO_SLAP, self.desktop.logs())
        application.wait_for("Accelerometer detected")
        self.slap_until(
            lambda: application.shows("Motion check passed"),
            "the typed slap to be felt",
            slap=lambda: application.type_on_terminal("slap 0.8"),
        )

    def test_the_laptop_is_slapped_on_the_screen_beside_the_application_and_closes_with_it(self) -> None:
        application = self.expect_application([RUN])
        window = LaptopWindow(self.desktop)
        application.wait_for("Accelerometer detected")
        left, right = self.desktop.window_place("Quiverly"), self.desktop.window_place(TITLE)
        self.assertLess(left.x + left.width, right.x)
        self.assertLessEqual(right.x + right.width, 1024)
        self.slap_until(
            lambda: application.shows("Motion check passed"), "the press to be felt", slap=window.press_laptop
        )
        self.assertEqual(application.close_window(), 0)
        wait_until(lambda: not window.is_shown(), "the end of the laptop's window")

    def test_closing_the_laptops_window_takes_the_sensor_away(self) -> None:
        write_settings(self.desktop, ONBOARDED)
        application = self.expect_application([RUN])
        window = LaptopWindow(self.desktop)
        window.close()
        wait_until(lambda: not window.is_shown(), "the end of the laptop's window")
        application.press("Start listening")
        application.wait_for("Accelerometer device missing on this Mac.")

    def test_the_laptop_ends_with_the_application(self) -> None:
        application = self.expect_application([RUN])
        application.wait_for("Accelerometer detected")
        self.assertEqual(application.close_window(), 0)
        self.start_laptop()

    def test_a_simulated_laptop_that_runs_already_is_used(self) -> None:
        self.start_laptop()
        application = self.expect_application([RUN])
        self.assertNotIn(HOW_TO_SLAP, self.desktop.logs())
        self.pass_hardware_check()
        self.assertEqual(application.close_window(), 0)
        self.laptop.slap(0.6)
        self.laptop.wait_for("the slap is lost")

    def test_without_a_display_that_works_it_takes_the_tour(self) -> None:
        environment = self.desktop.environment | {"DISPLAY": ":4711", "WAYLAND_DISPLAY": "nobody"}
        ended = subprocess.run(
            [RUN], env=environment, cwd="/", stdin=subprocess.DEVNULL, capture_output=True, text=True, check=False
        )
        self.assertEqual(ended.returncode, 0, ended.stdout + ended.stderr)
        packs = [folder.name.title() for folder in (SOURCES / "resources/audio").iterdir() if folder.is_dir()]
        slaps = 1 + 5 * len(packs)  # the test slap, then five in each pack
        for part in ("the tour", *packs, f"{slaps} of {slaps} slaps"):
            self.assertIn(part, ended.stdout)
        for file in ("transcript.txt", "recording.flac", "welcome.png", "main-window.png"):
            self.assertGreater((TOUR / file).stat().st_size, 0, file)
        self.assertLess(soundfile.info(TOUR / "recording.flac").duration, 60, "seconds")

    def test_words_after_the_command_are_refused(self) -> None:
        for words in (["--help"], ["now"], [""]):
            with self.subTest(words=words):
                ended = subprocess.run([RUN, *words], capture_output=True, text=True, check=False)
                self.assertEqual((ended.returncode, ended.stdout, ended.stderr), (2, "", "usage: ./run\n"))


if __name__ == "__main__":
    unittest.main()

"""The simulated laptop's window: slapped with the mouse and the keyboard, it shows what the application counts."""

import re
import unittest
from typing import Callable

from harness.accessibility import press_key
from harness.laptop_window import LaptopWindow
from harness.waiting import NeverHappened, wait_until
from system_case import PROGRAMS, SystemTest


class LaptopWindowTest(SystemTest):
    def start_window(self) -> LaptopWindow:
        self.window = LaptopWindow(self.desktop, [PROGRAMS / "quiverly-simulate", "--window", "--verbose"])
        return self.window

    def expect_counted(self, slap: Callable[[], object], least: float, most: float) -> None:
        """Slaps until the application has counted one with an amplitude that the window shows, to the digit.

        The application's cooldown is one of the clock, the window's one of the reports, so that on a busy machine a
        single slap may be counted by one of them alone.
        """
        before = self.application.counter()

        def is_counted() -> bool:
            now = self.application.counter()
            return now.count > before.count and now.amplitude in self.window.amplitudes()

        try:
            self.slap_until(is_counted, "a slap with the same amplitude in both windows", slap=slap)
        except NeverHappened as failure:
            self.application.close_window()
            wait_until(lambda: " left after " in self.desktop.logs(), "the laptop to count its reports")
            lost = re.findall(r"left after \d+ reports, [1-9]\d* dropped", self.desktop.logs())
            if not lost:
                raise failure
            self.skipTest("NOT RUN: so busy a machine that the application lost reports, which the window has")
        amplitude = self.application.counter().amplitude
        self.assertTrue(least < amplitude < most, f"{least} < {amplitude} < {most}")

    def test_slaps_with_mouse_keys_and_commands_are_counted_with_the_amplitudes_that_it_shows(self) -> None:
        self.start_window()
        self.start_on_main_view()
        self.listen()
        self.window.wait_for("Listening")
        self.expect_counted(self.window.press_laptop, 0.29, 2.05)
        self.expect_counted(lambda: self.window.type("slap 0.45"), 0.44, 0.46)
        self.expect_counted(lambda: press_key("6"), 0.59, 0.61)
        self.window.wait_for("slap 0.6 g")

    def test_a_sensor_that_is_unplugged_is_missing_until_it_is_plugged_in(self) -> None:
        self.start_window()
        self.start_on_main_view()
        self.window.click("Unplug sensor")
        self.window.wait_for("Unplugged")
        self.application.press("Start listening")
        self.application.wait_for("Accelerometer device missing on this Mac.")
        self.window.click("Plug in sensor")
        self.window.wait_for("Idle")
        self.listen()

    def test_closing_it_ends_the_laptop_and_the_laptops_end_closes_it(self) -> None:
        self.start_window().close()
        self.assertEqual(self.window.process.wait(60), 0)
        wait_until(lambda: not self.window.is_shown(), "the window's end")
        self.start_window()
        self.window.type("quit")
        self.assertEqual(self.window.process.wait(60), 0)
        wait_until(lambda: not self.window.is_shown(), "the window's end")


if __name__ == "__main__":
    unittest.main()

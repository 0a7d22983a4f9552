"""What the desktop tells of its user's preferences, and what it lacks. A stand-in takes the settings portal's place."""

import subprocess
import unittest
from typing import Mapping

from harness.settings_portal import SettingsPortal
from harness.waiting import wait_until
from system_case import PROGRAMS, SystemTest

LIGHT, DARK, LIGHT_HIGH_CONTRAST, DARK_HIGH_CONTRAST = "#ECECEC", "#323232", "#FFFFFF", "#000000"


class DesktopSettingsTest(SystemTest):
    def test_the_window_follows_colours_and_contrast_while_it_is_open(self) -> None:
        portal = SettingsPortal(self.desktop, color_scheme="uint32 1")
        self.start_on_main_view()
        self.expect_window(DARK)
        portal.change("contrast", "uint32 1")
        self.expect_window(DARK_HIGH_CONTRAST)
        portal.change("color-scheme", "uint32 2")
        self.expect_window(LIGHT_HIGH_CONTRAST)
        portal.change("contrast", "uint32 0")
        self.expect_window(LIGHT)

    def test_the_window_does_not_wait_for_a_portal_that_is_silent(self) -> None:
        portal = SettingsPortal(self.desktop, "silent", color_scheme="uint32 1")
        self.start_on_main_view()
        portal.wait_for_question()
        self.expect_window(LIGHT)
        portal.answer()
        self.expect_window(DARK)

    def test_nonsense_is_ignored(self) -> None:
        portal = SettingsPortal(self.desktop, "nonsense")
        self.start_on_main_view()
        portal.wait_for_question()
        portal.signal("('org.freedesktop.appearance', 'color-scheme', uint32 1)")
        portal.change("color-scheme", "'dark'")
        portal.change("contrast", "uint32 1")
        self.expect_window(LIGHT_HIGH_CONTRAST)

    def test_without_a_display_it_says_so_in_a_line(self) -> None:
        here = self.desktop.environment
        nowhere = {name: value for name, value in here.items() if name not in ("DISPLAY", "WAYLAND_DISPLAY")}
        self.expect_end(nowhere, "There is no display: neither WAYLAND_DISPLAY nor DISPLAY is set.")
        wayland = nowhere | {"QT_QPA_PLATFORM": "wayland", "WAYLAND_DISPLAY": "wayland-4711"}
        self.expect_end(wayland, 'The window cannot be opened on the display "wayland-4711".')
        self.expect_end(nowhere | {"DISPLAY": ":4711"}, 'The window cannot be opened on the display ":4711".')

    def expect_window(self, colour: str) -> None:
        """Waits until the window has that ground."""
        wait_until(lambda: self.desktop.window_colour("Quiverly") == colour, f"a window in {colour}", interval=0.1)

    def expect_end(self, environment: Mapping[str, str], line: str) -> None:
        """Expects a start in that environment to fail with that one line."""
        ended = subprocess.run(
            [PROGRAMS / "quiverly"], env=environment, capture_output=True, text=True, timeout=60, check=False
        )
        self.assertEqual((ended.returncode, ended.stderr), (1, f"quiverly: {line}\n"))


if __name__ == "__main__":
    unittest.main()

"""Others that store settings, or were killed while they did."""

import fcntl
import os
import unittest

from settings import ONBOARDED, read_settings, settings_file, write_settings
from system_case import SystemTest
from harness.waiting import wait_until


class SettingsLockTest(SystemTest):
    def setUp(self) -> None:
        super().setUp()
        write_settings(self.desktop, ONBOARDED | {"bonko.pack": "lizard", "bonko.threshold": 0.2})
        self.before = settings_file(self.desktop).read_bytes()

    def choose_halo(self) -> None:
        self.application.choose("Halo")
        self.application.set_sensitivity(0.3)
        self.application.wait_for("0.30")
        self.assertTrue(self.application.is_chosen("Halo"))

    def test_a_process_that_hangs_while_it_stores_holds_up_neither_the_start_nor_the_window_nor_the_end(self) -> None:
        folder = os.open(settings_file(self.desktop).parent, os.O_RDONLY)
        self.addCleanup(os.close, folder)
        fcntl.flock(folder, fcntl.LOCK_EX)
        self.start_application()
        self.choose_halo()
        self.assertEqual(self.application.close_window(), 0)
        self.assertEqual(settings_file(self.desktop).read_bytes(), self.before)

        self.start_application()
        self.choose_halo()
        fcntl.flock(folder, fcntl.LOCK_UN)
        expected = ONBOARDED | {"bonko.pack": "halo", "bonko.threshold": 0.3}
        wait_until(lambda: read_settings(self.desktop) == expected, "the settings to be stored")

    def test_a_lock_file_that_another_program_left_holds_up_neither_the_start_nor_a_change(self) -> None:
        file = settings_file(self.desktop)
        renewed = f'while touch "{file}.lock"; do sleep 0.1; done'  # never old enough to be broken
        self.desktop.start(["sh", "-c", renewed])
        self.start_application()
        self.assertEqual(file.read_bytes(), self.before)
        self.choose_halo()
        wait_until(lambda: file.read_bytes() != self.before, "the settings to be stored")


if __name__ == "__main__":
    unittest.main()

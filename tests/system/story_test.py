"""The application from the first run on, as a user experiences it."""

import subprocess
import unittest

from harness.accessibility import NameChanges
from settings import read_settings
from system_case import PROGRAMS, SystemTest
from harness.waiting import wait_until


class StoryTest(SystemTest):
    def test_from_the_first_run_to_the_second(self) -> None:
        self.start_sound()
        self.start_laptop()
        self.start_application()
        self.application.wait_for("Welcome to Quiverly")
        self.application.wait_for("Looking for accelerometer…")
        self.application.wait_for("Slap your MacBook to test — you’ll hear a sexy clip!")
        before = self.recorder.length
        self.pass_hardware_check()
        self.recorder.wait_for_sound(before)
        self.application.wait_for("Accelerometer OK — you’re good to go!")

        self.application.press("Continue")
        self.application.wait_for("Press Start, then slap your MacBook.")
        self.assertTrue(self.application.shows("Idle"))
        self.application.press("Start listening")
        self.application.wait_for("Listening with Sexy sounds. Slap away.")
        before = self.recorder.wait_for_silence()
        count = self.application.counter().count
        self.slap_until_counted(count + 1)
        self.recorder.wait_for_sound(before)

        self.application.choose("Lizard")
        self.application.wait_for("Listening with Lizard sounds. Slap away.")
        self.application.set_sensitivity(0.25)
        self.application.wait_for("0.25")
        self.assertEqual(self.application.close_window(), 0)

        self.start_application()
        self.application.wait_for("Start listening")
        self.assertFalse(self.application.shows("Welcome to Quiverly"))
        self.assertTrue(self.application.is_chosen("Lizard"))
        self.assertAlmostEqual(self.application.sensitivity(), 0.25)
        self.assertEqual(read_settings(self.desktop)["bonko.threshold"], 0.25)

    def test_without_a_sensor_the_check_fails_and_passes_in_the_next_run_with_one(self) -> None:
        self.start_application()
        self.application.wait_for("Accelerometer device missing on this Mac.")
        self.desktop.wait_for_pages(1)
        self.assertFalse(self.application.shows("Slap your MacBook to test — you’ll hear a sexy clip!"))
        self.assertFalse(self.application.shows("Continue"))
        self.assertEqual(self.application.close_window(), 0)

        self.start_laptop()
        self.start_application()
        self.pass_hardware_check()
        self.application.press("Continue")
        self.application.wait_for("Start listening")
        self.assertEqual(len(self.desktop.opened_pages()), 1)

    def test_assistive_tools_are_told_of_every_text_that_changes(self) -> None:
        changes = NameChanges(self.desktop)
        self.start_laptop()
        self.start_on_main_view()
        self.listen()
        count = f"Slaps this session: 1  ·  last {self.application.counter().amplitude:.3f}g"
        changes.wait_for("Listening", "Stop", "Listening with Sexy sounds. Slap away.", count)
        self.laptop.quit()
        self.application.press("Stop")
        changes.wait_for("Idle", "Start listening", "Press Start, then slap your MacBook.")
        self.application.press("Start listening")
        changes.wait_for("Accelerometer device missing on this Mac.")

    def test_assistive_tools_are_told_of_every_step_of_the_hardware_check(self) -> None:
        changes = NameChanges(self.desktop)
        self.start_laptop()
        self.start_application()
        changes.wait_for("Accelerometer detected")
        self.pass_hardware_check()
        changes.wait_for("Accelerometer OK — you’re good to go!")

    def test_assistive_tools_move_the_sensitivity(self) -> None:
        self.start_on_main_view()
        self.assertAlmostEqual(self.application.sensitivity(), 0.12)
        self.application.nudge_sensitivity("Increase")
        self.application.wait_for("0.13")
        self.application.nudge_sensitivity("Decrease")
        self.application.wait_for("0.12")

    def test_a_second_start_brings_the_first_window_to_the_front(self) -> None:
        self.start_on_main_view()
        self.desktop.start(["xev"], stdout=subprocess.DEVNULL)
        wait_until(lambda: self.desktop.active_window() == "Event Tester", "another window to be in front")
        second = self.desktop.start([PROGRAMS / "quiverly"])
        self.assertEqual(second.wait(60), 0)
        wait_until(lambda: self.desktop.active_window() == "Quiverly", "the first window to be in front again")
        self.assertIsNone(self.application.process.poll())

    def test_the_application_ends_when_its_display_goes_away(self) -> None:
        self.start_on_main_view()
        self.expect_end_without_display()

    def test_the_application_ends_when_its_display_goes_away_while_it_listens(self) -> None:
        self.start_laptop()
        self.start_on_main_view()
        self.listen()
        self.expect_end_without_display()

    def test_the_application_ends_when_its_display_goes_away_during_the_check(self) -> None:
        self.start_laptop()
        self.start_application()
        self.application.wait_for("Accelerometer detected")
        self.expect_end_without_display()

    def expect_end_without_display(self) -> None:
        self.desktop.lose_display()
        self.assertGreaterEqual(self.application.process.wait(60), 0, "ended by itself, not by a signal")


if __name__ == "__main__":
    unittest.main()

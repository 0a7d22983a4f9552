"""A sensor that is missing, goes away, comes back."""

import unittest
from pathlib import Path
from urllib.parse import unquote, urlsplit

from harness.analysis import is_silent
from system_case import SystemTest
from harness.waiting import wait_until

MISSING = "Accelerometer device missing on this Mac."
LISTENING = "Listening with Sexy sounds. Slap away."


def text_of(page: str) -> str:
    return Path(unquote(urlsplit(page).path)).read_text()


class SensorTest(SystemTest):
    def test_a_failed_start_shows_why_and_opens_the_sensor_page_once(self) -> None:
        self.start_on_main_view()
        self.application.press("Start listening")
        self.application.wait_for(MISSING)
        self.assertTrue(self.application.shows("Idle"))
        self.desktop.wait_for_pages(1)
        page = self.desktop.opened_pages()[0]
        self.assertRegex(page, r"^file:///.*/motion-sensor\.html$")
        self.assertIn("This machine has no sensor that Linux can read", text_of(page))

        self.application.press("Start listening")
        self.desktop.wait_for_pages(2)
        self.assertEqual(self.application.close_window(), 0)
        self.assertEqual(self.desktop.opened_pages(), [page, page])

    def test_a_sensor_that_may_not_be_opened_shows_the_systems_code(self) -> None:
        self.start_laptop()
        self.laptop.tell("deny")
        self.start_on_main_view()
        self.application.press("Start listening")
        self.application.wait_for(
            "Need Input Monitoring permission (System Settings → Privacy & Security). Code -536870174."
        )
        self.desktop.wait_for_pages(1)
        self.assertIn("This machine has a sensor that you may not read", text_of(self.desktop.opened_pages()[0]))
        self.laptop.tell("allow")
        self.listen()
        self.application.wait_for(LISTENING)

    def test_a_sensor_that_vanishes_leaves_the_application_listening_until_stop_and_start_bring_it_back(self) -> None:
        self.start_sound()
        self.start_laptop()
        self.start_on_main_view()
        self.listen()
        self.recorder.wait_for_silence()

        self.laptop.tell("vanish")
        self.laptop.slap(0.8)
        self.laptop.wait_for("the slap is lost")
        vanished = self.recorder.length
        self.assertTrue(is_silent(self.recorder.wait_for(vanished, 1.0)))
        self.assertTrue(self.application.shows("Listening"))
        self.assertTrue(self.application.shows(LISTENING))
        self.assertEqual(self.application.counter().count, 1)

        self.laptop.tell("appear")
        self.application.press("Stop")
        self.application.wait_for("Idle")
        self.application.press("Start listening")
        self.application.wait_for(LISTENING)
        self.slap_until_counted(2)

    def test_another_simulated_laptop_serves_after_stop_and_start(self) -> None:
        self.start_laptop()
        self.start_on_main_view()
        self.listen()
        self.laptop.quit()
        self.start_laptop()
        self.assertTrue(self.application.shows(LISTENING))
        self.application.press("Stop")
        self.application.press("Start listening")
        self.application.wait_for(LISTENING)
        self.slap_until_counted(2)

    def test_a_sleeping_sensor_is_heard_again_as_soon_as_it_wakes(self) -> None:
        self.start_laptop()
        self.start_on_main_view()
        self.listen()
        self.laptop.tell("sleep")
        self.laptop.slap(0.8)
        self.laptop.tell("wake")
        self.slap_until_counted(2)
        self.assertTrue(self.application.shows(LISTENING))

    def test_starting_and_stopping_leaves_no_thread_and_no_descriptor_behind(self) -> None:
        self.start_laptop()
        self.start_on_main_view()
        self.listen()
        self.application.press("Stop")
        self.application.wait_for("Idle")
        wait_until(lambda: self.laptop.clients() == 0, "the end of listening")
        threads, descriptors = self.application.threads(), self.application.descriptors()
        for _ in range(10):
            self.application.press("Start listening")
            self.application.wait_for("Listening")
            self.application.press("Stop")
            self.application.wait_for("Idle")
        wait_until(lambda: self.application.threads() <= threads, f"{threads} threads again")
        wait_until(lambda: self.application.descriptors() <= descriptors, f"{descriptors} descriptors again")


if __name__ == "__main__":
    unittest.main()

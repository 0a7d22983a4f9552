"""What a screen reader is told without asking."""

import unittest

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

from harness.system_test import SystemTest  # noqa: E402
from harness.waiting import wait_until  # noqa: E402


class AnnouncementTest(SystemTest):
    def setUp(self) -> None:
        super().setUp()
        self.announced: list[str] = []

    def hear_names(self) -> None:
        self.listener = Atspi.EventListener.new(self._hear)
        self.listener.register("object:property-change:accessible-name")

    def _hear(self, event: Atspi.Event) -> None:
        try:
            self.announced.append(event.source.get_name())
        except GLib.Error:
            pass  # gone already

    def wait_for_announcement(self, text: str) -> None:
        def heard() -> bool:
            while GLib.MainContext.default().iteration(False):
                pass
            return text in self.announced

        wait_until(heard, f"the announcement “{text}”")

    def test_changes_of_the_status_are_announced(self) -> None:
        self.start_laptop()
        self.start_on_main_view()
        self.application.wait_for("Start listening")
        self.hear_names()
        self.application.press("Start listening")
        self.wait_for_announcement("Listening")
        self.wait_for_announcement("Stop")
        self.wait_for_announcement("Listening with Sexy sounds. Slap away.")
        self.application.press("Stop")
        self.wait_for_announcement("Idle")
        self.wait_for_announcement("Press Start, then slap your MacBook.")

    def test_a_failure_is_announced(self) -> None:
        self.start_on_main_view()
        self.application.wait_for("Start listening")
        self.hear_names()
        self.application.press("Start listening")
        self.wait_for_announcement("Accelerometer device missing on this Mac.")


if __name__ == "__main__":
    unittest.main()

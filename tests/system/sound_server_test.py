"""A sound server that is missing, dies, freezes, and comes back."""

import unittest

from system_case import SystemTest


class SoundServerTest(SystemTest):
    def setUp(self) -> None:
        super().setUp()
        self.write_tones("sexy", 440, seconds=0.6)
        self.start_laptop()

    def expect_sound_after_slap(self) -> None:
        before = self.recorder.wait_for_silence()
        self.slap_until_counted(self.application.counter().count + 1)
        self.recorder.wait_for_sound(before)

    def test_slaps_are_counted_without_a_sound_server_and_heard_once_there_is_one(self) -> None:
        self.start_on_main_view()
        self.listen()
        self.slap_until_counted(2)
        self.start_sound()
        self.expect_sound_after_slap()

    def test_a_sound_server_that_died_and_came_back_plays_the_next_clip(self) -> None:
        self.start_sound()
        self.start_on_main_view()
        self.listen_and_hear()
        self.expect_sound_after_slap()
        self.sound_server.kill()
        self.slap_until_counted(self.application.counter().count + 1)
        self.start_sound()
        self.expect_sound_after_slap()

    def test_a_frozen_sound_server_does_not_freeze_the_window(self) -> None:
        self.start_sound()
        self.start_on_main_view()
        self.listen_and_hear()
        self.expect_sound_after_slap()
        self.sound_server.freeze()
        self.slap_until_counted(self.application.counter().count + 3)
        self.application.press("Stop")
        self.application.wait_for("Idle")
        self.application.press("Start listening")
        self.application.wait_for("Listening")
        self.sound_server.thaw()
        self.expect_sound_after_slap()

    def test_the_application_ends_although_the_sound_server_is_frozen(self) -> None:
        self.start_sound()
        self.start_on_main_view()
        self.listen_and_hear()
        self.expect_sound_after_slap()
        self.sound_server.freeze()
        self.slap_until_counted(self.application.counter().count + 1)
        self.assertEqual(self.application.close_window(), 0)


if __name__ == "__main__":
    unittest.main()

"""The two settings are kept from run to run, and never keep the application from starting."""

import json
import unittest

from settings import ONBOARDED, read_settings, settings_file, write_settings, write_settings_text
from system_case import SystemTest
from harness.waiting import wait_until

# Every write to a file fails, as it does on a disk that is full.
FULL_DISK = ("env", "--ignore-signal=XFSZ", "prlimit", "--fsize=0", "--")

DEFAULTS = ("Sexy", "0.12")


class SettingsTest(SystemTest):
    def shown(self) -> tuple[str, str]:
        """The chosen pack and the threshold, as the main view shows them."""
        packs = [pack for pack in self.application.options() if self.application.is_chosen(pack)]
        self.assertEqual(len(packs), 1, packs)
        texts = self.application.texts()
        return packs[0], next(text for text in texts[texts.index("Sensitivity") :] if text[:1].isdigit())

    def stored(self) -> tuple[object, object]:
        settings = read_settings(self.desktop)
        return settings.get("bonko.pack"), settings.get("bonko.threshold")

    def choose_halo(self) -> None:
        self.application.choose("Halo")
        self.application.set_sensitivity(0.3)
        self.application.wait_for("0.30")

    def test_both_settings_survive_a_restart(self) -> None:
        self.start_on_main_view()
        self.assertEqual(self.shown(), DEFAULTS)
        self.choose_halo()
        self.assertEqual(self.application.close_window(), 0)
        self.assertEqual(self.stored(), ("halo", 0.3))
        self.start_application()
        self.assertEqual(self.shown(), ("Halo", "0.30"))

    def test_settings_once_written_survive_a_crash(self) -> None:
        self.start_laptop()
        self.start_on_main_view()
        self.listen()
        self.choose_halo()
        wait_until(lambda: self.stored() == ("halo", 0.3), "the settings to be written")
        self.application.kill()
        self.start_application()
        self.assertEqual(self.shown(), ("Halo", "0.30"))
        self.listen()
        self.application.wait_for("Listening with Halo sounds. Slap away.")

    def test_a_threshold_beyond_the_slider_is_kept(self) -> None:
        self.start_on_main_view(bonko_threshold=3)
        self.assertEqual(self.shown(), ("Sexy", "3.00"))
        self.assertEqual(self.application.close_window(), 0)
        self.assertEqual(self.stored(), (None, 3))

    def test_values_of_other_types_are_ignored(self) -> None:
        for pack, threshold in ((7, "0.2"), ("Halo", None), (None, True), (["halo"], {"x": 1}), ("halo ", [0.3])):
            with self.subTest(pack=pack, threshold=threshold):
                self.start_on_main_view(bonko_pack=pack, bonko_threshold=threshold)
                self.assertEqual(self.shown(), DEFAULTS)
                self.assertEqual(self.application.close_window(), 0)

    def test_a_file_that_holds_no_settings_is_as_good_as_none_and_is_not_lost(self) -> None:
        whole = json.dumps(ONBOARDED | {"bonko.pack": "halo", "bonko.threshold": 0.3})
        for content in ("", " \n", whole[:-5], "no JSON at all", "[1, 2]", "null", whole * 2, "\0" * 100):
            with self.subTest(content=content):
                write_settings_text(self.desktop, content)
                self.start_application()
                self.application.wait_for("Welcome to Quiverly")
                self.assertEqual(self.application.close_window(), 0)
                if content.strip():
                    folder = settings_file(self.desktop).parent
                    self.assertIn(content, [file.read_text() for file in folder.iterdir()])

    def test_without_a_place_for_the_file_settings_last_until_the_end(self) -> None:
        settings_file(self.desktop).parent.write_text("a file where the folder should be")
        self.start_laptop()
        self.start_application()
        self.pass_hardware_check()
        self.application.press("Continue")
        self.application.wait_for("Start listening")
        self.choose_halo()
        self.assertEqual(self.shown(), ("Halo", "0.30"))
        self.assertEqual(self.application.close_window(), 0)
        self.start_application()
        self.application.wait_for("Welcome to Quiverly")

    def test_a_full_disk_loses_nothing_that_was_stored(self) -> None:
        write_settings(self.desktop, ONBOARDED | {"bonko.pack": "lizard"})
        before = settings_file(self.desktop).read_bytes()
        self.start_laptop()
        self.start_application(FULL_DISK)
        self.assertEqual(self.shown(), ("Lizard", "0.12"))
        self.choose_halo()
        self.assertEqual(self.shown(), ("Halo", "0.30"))
        self.assertEqual(self.application.close_window(), 0)
        self.assertEqual(settings_file(self.desktop).read_bytes(), before)


if __name__ == "__main__":
    unittest.main()

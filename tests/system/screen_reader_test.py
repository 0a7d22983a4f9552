"""What a screen reader speaks of the application, though the focus is elsewhere."""

import unittest

from harness.accessibility import press_key
from harness.laptop_window import LaptopWindow
from harness.screen_reader import ScreenReader
from system_case import PROGRAMS, SystemTest


class ScreenReaderTest(SystemTest):
    def setUp(self) -> None:
        super().setUp()
        self.reader = ScreenReader(self.desktop)

    def test_it_speaks_phases_slaps_and_errors(self) -> None:
        self.start_laptop()
        self.start_on_main_view()
        self.reader.wait_for("Sexy")
        press_key("Tab")
        self.reader.wait_for("Sensitivity slider 0.12")
        press_key("Tab")
        self.reader.wait_for("Start listening")
        press_key("space")
        self.reader.wait_for("Listening with Sexy sounds. Slap away.")
        self.reader.wait_for(f"Slaps this session: 1  ·  last {self.application.wait_for_slaps(1).amplitude:.3f}g")
        self.slap_until_counted(2)
        self.reader.wait_for(f"Slaps this session: {self.application.counter().count}")
        self.laptop.quit()
        press_key("space")
        self.reader.wait_for("Press Start, then slap your MacBook.")
        press_key("space")
        self.reader.wait_for("Accelerometer device missing on this Mac.")

    def test_it_speaks_slaps_and_controls_of_the_laptops_window(self) -> None:
        window = LaptopWindow(self.desktop, [PROGRAMS / "quiverly-simulate", "--window"])
        self.reader.wait_for("Laptop")
        press_key("Tab")
        self.reader.wait_for("Type")
        self.start_on_main_view()
        self.listen()
        self.slap_until(
            lambda: any("slap 0.6 g" in each for each in self.reader.spoken()),
            "the slap to be spoken",
            slap=lambda: window.type("slap 0.6"),
        )

    def test_it_tells_all_of_a_first_run_that_is_done_with_the_keyboard(self) -> None:
        self.addCleanup(lambda: print("\n".join(self.reader.spoken())))  # all of it, to be read by people
        self.start_laptop()
        self.start_application()
        self.reader.wait_for("Accelerometer detected")
        self.reader.wait_for("Slap your MacBook to test — you’ll hear a sexy clip!")
        self.pass_hardware_check()
        self.reader.wait_for("Accelerometer OK — you’re good to go!")
        self.reader.wait_for("Motion check passed")
        press_key("Return")
        self.reader.wait_for("Press Start, then slap your MacBook.")
        press_key("Right")
        self.reader.wait_for("Halo")
        press_key("Tab")
        self.reader.wait_for("Sensitivity slider 0.12")
        press_key("Right")
        self.reader.wait_for("0.13")
        press_key("Tab")
        self.reader.wait_for("Start listening")
        press_key("space")
        self.reader.wait_for("Listening with Halo sounds. Slap away.")
        self.slap_until_counted(self.application.counter().count + 1)
        self.reader.wait_for("Slaps this session: ")
        press_key("space")
        self.reader.wait_for("Press Start, then slap your MacBook.")
        self.laptop.quit()
        press_key("space")
        self.reader.wait_for("Accelerometer device missing on this Mac.")


if __name__ == "__main__":
    unittest.main()

"""Which clip sounds, how loud, and when none does."""

import unittest

from harness.analysis import frequency, is_silent, match, peak_at
from harness.clips import TONE_PEAK, read_clip, volume_for, write_tone
from harness.samples import RATE, Samples
from system_case import PROGRAMS, SystemTest

TOLERANCE = 0.02  # of the volume expected


class SoundTest(SystemTest):
    def setUp(self) -> None:
        super().setUp()
        self.start_sound()
        self.start_laptop()

    def heard_after_slap(self, peak: float) -> Samples:
        """Slaps in a silent moment and returns the steady part of the clip that answers."""
        before = self.recorder.wait_for_silence()
        count = self.application.counter().count
        self.laptop.slap(peak)
        self.application.wait_for_slaps(count + 1)
        return self.steady_part(self.recorder.wait_for_sound(before))

    def test_the_volume_follows_the_amplitude(self) -> None:
        self.write_tones("pain", 440, seconds=0.6)
        self.start_on_main_view(bonko_pack="pain", bonko_threshold=0.04)
        self.listen_and_hear()
        amplitudes = []
        for peak in (0.1, 0.15, 0.2, 0.3, 0.4, 0.5, 0.8):
            heard = self.heard_after_slap(peak)
            amplitudes.append(amplitude := self.application.counter().amplitude)
            with self.subTest(peak=peak, amplitude=amplitude):
                volume = volume_for(amplitude)
                self.assertAlmostEqual(self.tone_volume(heard), volume, delta=TOLERANCE * volume)
        self.assertEqual(amplitudes, sorted(amplitudes), "a harder slap has a greater amplitude")
        self.assertLess(volume_for(amplitudes[0]), 0.6)
        self.assertEqual(volume_for(amplitudes[-1]), 1.0)

    def test_slaps_in_a_row_escalate(self) -> None:
        tones = [300 + 100 * number for number in range(10)]
        self.write_tones("sexy", *tones, seconds=0.6)
        self.start_on_main_view(bonko_pack="sexy")
        before = self.recorder.length
        self.listen()
        heard = [self.steady_part(self.recorder.wait_for_sound(before))]
        heard += [self.heard_after_slap(0.6) for _ in range(4)]
        played = [tones.index(round(frequency(sound), -2)) for sound in heard]
        self.assertEqual(played, [0, 1, 2, 3, 3])

    def test_a_pack_that_does_not_escalate_plays_any_of_its_clips(self) -> None:
        tones = [400, 600]
        self.write_tones("pain", *tones, seconds=0.6)
        self.start_on_main_view(bonko_pack="pain")
        self.listen_and_hear()
        waiting_for = set(tones)
        for _ in range(30):  # draws of two clips that never bring one of them: one chance in 5e8
            played = round(frequency(self.heard_after_slap(0.6)), -2)
            self.assertIn(played, tones)
            waiting_for.discard(played)
            if not waiting_for:
                return
        self.fail(f"never heard {waiting_for}")

    def test_a_new_slap_cuts_the_old_clip_off(self) -> None:
        old, new = 400, 700
        self.write_tones("sexy", old, *[new] * 9, seconds=5)
        self.start_on_main_view(bonko_pack="sexy")
        before = self.recorder.length
        self.listen()
        alone = self.steady_part(self.recorder.wait_for_sound(before))
        self.assertAlmostEqual(frequency(alone), old, delta=2)
        self.recorder.pass_time(0.6)  # else the detector takes both slaps for one
        self.laptop.slap(0.8)
        self.application.wait_for_slaps(2)
        after = self.recorder.pass_time(0.8)[round(0.3 * RATE) :]
        self.assertAlmostEqual(frequency(after), new, delta=2)
        self.assertLess(peak_at(after, old), 0.001 * TONE_PEAK)

    def test_a_stopped_application_is_silent(self) -> None:
        self.write_tones("pain", 440, seconds=0.6)
        self.start_on_main_view(bonko_pack="pain")
        self.listen_and_hear()
        self.heard_after_slap(0.8)
        self.application.press("Stop")
        self.application.wait_for("Idle")
        before = self.recorder.wait_for_silence()
        count = self.application.counter().count
        self.laptop.slap(0.8)
        self.assertTrue(is_silent(self.recorder.wait_for(before, 1.0)))
        self.assertEqual(self.application.counter().count, count)

    def test_a_slap_between_the_test_slap_and_the_main_view_is_counted_but_silent(self) -> None:
        self.write_tones("sexy", 440, seconds=0.6)
        self.start_application()
        before = self.recorder.length
        self.pass_hardware_check()
        before = self.recorder.wait_for_end(before)
        self.laptop.slap(0.8)
        self.assertTrue(is_silent(self.recorder.wait_for(before, 1.0)))
        self.application.press("Continue")
        self.assertGreaterEqual(self.application.wait_for_slaps(2).count, 2)

    def test_an_own_folder_replaces_a_pack_and_leaves_the_others(self) -> None:
        self.write_tones("pain", 440, seconds=0.6)
        self.start_on_main_view(bonko_pack="pain")
        self.listen_and_hear()
        self.assertAlmostEqual(frequency(self.heard_after_slap(0.8)), 440, delta=2)
        self.application.choose("Lizard")
        before = self.recorder.wait_for_silence()
        self.laptop.slap(0.8)
        start = self.recorder.wait_for_sound(before)
        heard = self.recorder.wait_for(start - round(0.05 * RATE), 0.5)
        first_clip = read_clip(PROGRAMS.parent / "resources/audio/lizard/1.mp3")
        self.assertGreater(match(heard, first_clip).likeness, 0.99)

    def test_an_own_folder_without_clips_is_a_silent_pack(self) -> None:
        folder = self.desktop.data / "quiverly" / "audio" / "pain"
        folder.mkdir(parents=True)
        write_tone(folder / ".hidden.mp3", 440)
        write_tone(folder / "upper.MP3", 440)
        (folder / "folder.mp3").mkdir()
        self.start_on_main_view(bonko_pack="pain")
        before = self.recorder.length
        self.listen()
        self.slap_until_counted(2)
        self.recorder.pass_time(0.5)
        self.assertTrue(is_silent(self.recorder.samples(before)))

    def test_clips_that_are_none_are_silent_and_the_next_is_heard(self) -> None:
        self.write_tones("sexy", *(300 + 100 * number for number in range(10)), seconds=0.6)
        folder = self.desktop.data / "quiverly" / "audio" / "sexy"
        whole = (folder / "1.mp3").read_bytes()
        (folder / "1.mp3").write_bytes(b"")
        (folder / "2.mp3").write_bytes(whole[:100])
        (folder / "3.mp3").write_bytes(b"no music at all\n" * 1000)
        self.start_on_main_view(bonko_pack="sexy")
        before = self.recorder.length
        self.listen()
        for count in (2, 3):
            self.recorder.pass_time(0.7)
            self.laptop.slap(0.8)
            self.application.wait_for_slaps(count)
        quiet = self.recorder.wait_for(before, (self.recorder.length - before) / RATE + 0.5)
        self.assertTrue(is_silent(quiet))
        self.assertAlmostEqual(frequency(self.heard_after_slap(0.8)), 600, delta=2)


if __name__ == "__main__":
    unittest.main()

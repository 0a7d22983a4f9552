"""The sound port, heard through a sound server."""

import os
import resource
import time
import unittest
from contextlib import contextmanager, suppress
from pathlib import Path
from subprocess import PIPE
from typing import Iterator

from harness.analysis import Note, notes
from harness.clips import TONE_PEAK, write_tone
from harness.private_user import PrivateUser
from harness.recorder import Recorder
from harness.sound_server import DEVICE, start_sound_server
from harness.waiting import wait_until

PROGRAMS = Path(os.environ["QUIVERLY_PROGRAMS"])  # folder of the programs under test
FULL = TONE_PEAK / 2**0.5  # level of a tone played as it is
PATIENCE = 1.0  # s after its slap until which a clip may start


class SoundPort:
    """The sound port in a program of its own. A call returns when the port's has."""

    def __init__(self, user: PrivateUser) -> None:
        command = [PROGRAMS / "sound-port"]
        self._process = user.start(command, stdin=PIPE, stdout=PIPE, stderr=user.log("sound-port"))
        self._count = 0

    def create(self, file: Path) -> "Player | None":
        self._count += 1
        name = f"player{self._count}"
        return Player(self, name) if self.call("create", name, file) == "created" else None

    def call(self, *words: object) -> str:
        assert self._process.stdin and self._process.stdout
        self._process.stdin.write(" ".join(map(str, words)).encode() + b"\n")
        self._process.stdin.flush()
        answer = self._process.stdout.readline().decode().strip()
        if answer not in ("created", "null", "done"):
            raise AssertionError(f"{words} was answered with “{answer}”")
        return answer

    def end(self) -> int:
        """Ends the program in the middle of everything, and returns its exit status."""
        assert self._process.stdin and self._process.stdout
        self._process.stdin.close()
        self._process.stdout.close()
        return self._process.wait(100)

    def open_clips(self) -> int:
        """How many clips are open at this moment: those that play or wait to be played."""
        count = 0
        for file in Path(f"/proc/{self._process.pid}/fd").iterdir():
            with suppress(FileNotFoundError):  # closed while it was looked at
                count += file.readlink().suffix == ".mp3"
        return count

    @contextmanager
    def without_waiting(self) -> Iterator[None]:
        """Has the system refuse this program to wait for descriptors, or to open any."""
        usual = resource.prlimit(self._process.pid, resource.RLIMIT_NOFILE)
        resource.prlimit(self._process.pid, resource.RLIMIT_NOFILE, (1, usual[1]))
        yield
        resource.prlimit(self._process.pid, resource.RLIMIT_NOFILE, usual)

    def sound_thread(self) -> dict[str, str] | None:
        """What the system says of the thread that plays, if there is one."""
        for thread in Path(f"/proc/{self._process.pid}/task").iterdir():
            try:
                lines = (thread / "status").read_text().splitlines()
            except (FileNotFoundError, ProcessLookupError):
                continue  # ended while it was looked for
            status = dict(line.split(":\t", 1) for line in lines)
            if status["Name"] == "quiverly-sound":
                return status
        return None

    def wakes_of_sound_thread(self) -> int:
        """How often the thread that plays has begun to wait so far."""
        status = self.sound_thread()
        assert status, "there is no thread that plays"
        return int(status["voluntary_ctxt_switches"])


class Player:
    def __init__(self, port: SoundPort, name: str) -> None:
        self._port = port
        self._name = name

    def set_volume(self, volume: float) -> None:
        self._port.call("volume", self._name, volume)

    def prepare(self) -> None:
        self._port.call("prepare", self._name)

    def play(self) -> None:
        self._port.call("play", self._name)

    def release(self) -> None:
        self._port.call("release", self._name)


class AudioTest(unittest.TestCase):
    def setUp(self) -> None:
        self.user = self.enterContext(PrivateUser())
        self.addCleanup(lambda: print(self.user.logs()))
        self.port = self.start_port()
        self.start = 0  # frame from which on the recording counts

    # For the tests.

    def start_port(self) -> SoundPort:
        port = SoundPort(self.user)
        self.addCleanup(lambda: self.assertEqual(port.end(), 0))
        return port

    def start_server(self) -> None:
        self.server = start_sound_server(self.user)
        self.recorder = Recorder(self.server, self.user.folder / "recording.raw")

    def tone(self, pitch: int, seconds: float = 0.5, rate: int = 48_000, channels: int = 2) -> Path:
        file = self.user.folder / f"{pitch}-{seconds}-{rate}-{channels}.mp3"
        if not file.exists():
            write_tone(file, pitch, seconds, rate, channels)
        return file

    def play(self, pitch: int, seconds: float = 0.5, volume: float = 1.0) -> Player:
        """Plays a tone as the application plays a clip."""
        return self.play_file(self.tone(pitch, seconds), volume)

    def play_file(self, file: Path, volume: float = 1.0) -> Player:
        player = self.port.create(file)
        assert player, f"{file} cannot be decoded"
        player.set_volume(volume)
        player.prepare()
        player.play()
        return player

    def play_and_release(self, pitch: int, count: int, seconds: float = 0.5) -> None:
        for _ in range(count):
            self.play(pitch, seconds).release()

    def play_to_its_end(self, pitch: int) -> None:
        player = self.play(pitch, seconds=0.3)
        self.wait_for_tone(pitch)
        self.wait_for_silence()
        player.release()

    def start_listening(self) -> None:
        """Forgets what was heard so far."""
        self.start = self.recorder.length

    def heard(self) -> list[Note]:
        return notes(self.recorder.samples(self.start))

    def pitches(self) -> list[int]:
        return [note.pitch for note in self.heard()]

    def wait_for_tone(self, pitch: int) -> None:
        wait_until(lambda: pitch in self.pitches(), f"a tone of {pitch} Hz")

    def wait_for_streams(self, count: int) -> None:
        wait_until(lambda: self.server.streams() == count, f"{count} streams")

    def wait_for_silence(self) -> None:
        """Waits until nothing plays, and has been heard not to."""
        self.wait_for_streams(0)
        self.recorder.pass_time(0.3)

    def listen_to_what_follows(self) -> None:
        """Listens on once the server has made up for the time it stood still."""
        for _ in range(2):
            self.server.control("info")
            self.recorder.pass_time(0.3)

    def expect_whole(self, note: Note, pitch: int, seconds: float) -> None:
        self.assertEqual(note.pitch, pitch)
        self.assertAlmostEqual(note.seconds, seconds, delta=0.05)

    # A clip that plays.

    def test_a_clip_is_heard_at_its_pitch_and_length_in_both_ears(self) -> None:
        self.start_server()
        for pitch, rate, channels, seconds in (
            (500, 48_000, 2, 0.5),
            (1000, 48_000, 1, 0.5),
            (2000, 44_100, 2, 0.5),
            (500, 44_100, 1, 0.5),
            (1000, 22_050, 1, 0.5),
            (2000, 22_050, 2, 0.5),
            (1000, 48_000, 2, 3.5),
        ):
            with self.subTest(pitch=pitch, rate=rate, channels=channels, seconds=seconds):
                self.start_listening()
                player = self.play_file(self.tone(pitch, seconds, rate, channels))
                self.wait_for_tone(pitch)
                self.wait_for_silence()
                player.release()
                (note,) = self.heard()
                self.expect_whole(note, pitch, seconds)
                self.assertAlmostEqual(note.levels[0], FULL, delta=0.01)
                self.assertAlmostEqual(note.levels[1], note.levels[0], delta=0.001)

    def test_the_volume_scales_the_clip(self) -> None:
        self.start_server()
        levels = []
        for volume in (1.0, 0.45, 0.0, -1.0):
            self.start_listening()
            player = self.play(1000, volume=volume)
            self.wait_for_streams(1)
            self.wait_for_silence()
            player.release()
            levels.append(sum(note.levels[0] for note in self.heard()))
        self.assertAlmostEqual(levels[0], FULL, delta=0.01)
        self.assertAlmostEqual(levels[1] / levels[0], 0.45, delta=0.02 * 0.45)
        self.assertEqual(levels[2:], [0, 0])

    def test_a_volume_set_while_the_clip_sounds_waits_for_the_next_play(self) -> None:
        self.start_server()
        player = self.play(1000)
        self.wait_for_tone(1000)
        player.set_volume(0.45)
        self.wait_for_silence()
        player.play()
        wait_until(lambda: len(self.heard()) == 2, "the second play")
        self.wait_for_silence()
        first, second = self.heard()
        self.expect_whole(first, 1000, 0.5)
        self.assertAlmostEqual(first.levels[0], FULL, delta=0.01)
        self.assertAlmostEqual(second.levels[0] / first.levels[0], 0.45, delta=0.02 * 0.45)

    def test_a_clip_that_has_drained_lets_the_device_sleep(self) -> None:
        self.start_server()
        self.play(1000, seconds=0.3)
        self.wait_for_streams(1)
        self.wait_for_streams(0)  # though the player is still there

    def test_the_mixer_shows_who_plays(self) -> None:
        self.start_server()
        self.play(1000, seconds=8)
        self.wait_for_tone(1000)
        streams = self.server.control("list", "sink-inputs")
        for line in (
            'application.name = "Quiverly"',
            'application.id = "com.jostlix.bonko"',
            'media.name = "Slap"',
            "Volume: front-left: 65536 / 100%",
        ):
            self.assertIn(line, streams)

    def test_each_clip_plays_on_the_default_device_of_its_moment(self) -> None:
        self.start_server()
        self.play_to_its_end(1000)
        self.server.control("load-module", "module-null-sink", "sink_name=other")
        self.server.control("set-default-sink", "other")
        self.play(2000, seconds=8)
        self.wait_for_streams(1)
        sinks = [line.split("\t") for line in self.server.control("list", "short", "sinks").splitlines()]
        self.assertEqual({sink[1] for sink in sinks}, {DEVICE, "other"})
        (other,) = (sink[0] for sink in sinks if sink[1] == "other")
        self.assertEqual(self.server.control("list", "short", "sink-inputs").split("\t")[1], other)

    def test_a_buffer_shorter_than_the_beginning_of_a_clip_does_for_it(self) -> None:
        self.start_server()
        self.user.environment["PULSE_LATENCY_MSEC"] = "20"
        self.port = self.start_port()
        self.play_to_its_end(1000)  # not necessarily without a gap, when the machine is busy

    def test_nothing_wakes_again_and_again_while_nothing_sounds(self) -> None:
        self.start_server()
        self.play_to_its_end(1000)
        before = self.port.wakes_of_sound_thread()
        self.assertGreater(before, 0)
        self.recorder.pass_time(2.0)
        # A late word of the server, but no clock that ticks.
        self.assertLessEqual(self.port.wakes_of_sound_thread() - before, 2)

    # One clip after another.

    def test_a_new_clip_cuts_off_the_one_before(self) -> None:
        self.start_server()
        first = self.play(500, seconds=8)
        self.wait_for_tone(500)
        self.play(2000)
        first.release()
        self.wait_for_tone(2000)
        self.wait_for_silence()
        self.assertEqual(self.pitches(), [500, 2000], "nothing of the first is left after the second")
        second = self.heard()[1]
        self.expect_whole(second, 2000, 0.5)
        self.assertAlmostEqual(second.levels[0], FULL, delta=0.01)  # nor under it

    def test_of_clips_in_quick_succession_the_last_is_heard_whole(self) -> None:
        self.start_server()
        last = self.play(1000, seconds=0.2)
        for _ in range(49):
            last, before = self.play(1000, seconds=0.2), last
            before.release()
        self.play(2000)
        last.release()
        self.wait_for_tone(2000)
        self.wait_for_silence()
        self.expect_whole(self.heard()[-1], 2000, 0.5)

    def test_a_clip_that_is_cut_off_or_over_is_not_decoded_any_further(self) -> None:
        self.start_server()
        self.play(500, seconds=8)
        self.wait_for_tone(500)
        self.assertEqual(self.port.open_clips(), 1)
        self.play(2000)
        self.wait_for_tone(2000)
        self.assertEqual(self.port.open_clips(), 1)
        self.wait_for_streams(0)
        wait_until(lambda: self.port.open_clips() == 0, "the clip to be closed")

    def test_releasing_the_player_ends_its_sound(self) -> None:
        self.start_server()
        player = self.play(1000, seconds=8)
        self.wait_for_tone(1000)
        player.release()
        self.wait_for_silence()
        self.assertLess(self.heard()[0].seconds, 7)
        self.start_listening()
        self.recorder.pass_time(0.3)
        self.assertEqual(self.heard(), [])

    def test_a_player_released_before_its_stream_stands_is_not_heard(self) -> None:
        self.start_server()
        self.play(1000).release()
        self.play_to_its_end(2000)
        self.assertEqual(self.pitches(), [2000])

    def test_releasing_a_player_that_was_cut_off_leaves_the_new_one_sounding(self) -> None:
        self.start_server()
        first = self.play(500, seconds=8)
        self.wait_for_tone(500)
        self.play(2000)
        first.release()
        self.wait_for_tone(2000)
        self.wait_for_silence()
        self.expect_whole(self.heard()[-1], 2000, 0.5)

    def test_a_player_that_never_played_is_silent(self) -> None:
        self.start_server()
        self.play(1000)
        self.wait_for_tone(1000)
        silent = self.port.create(self.tone(500))
        assert silent
        silent.release()
        self.wait_for_silence()
        (note,) = self.heard()
        self.expect_whole(note, 1000, 0.5)

    # A server that is missing, dies, freezes, comes back.

    def test_without_a_server_everything_is_silent(self) -> None:
        self.play_and_release(1000, count=20)
        self.start_server()  # one that starts later is found by the next clip
        self.play_to_its_end(2000)
        self.assertEqual(self.pitches(), [2000])

    def test_without_a_device_everything_is_silent(self) -> None:
        self.start_server()
        self.play_to_its_end(1000)
        self.server.control("unload-module", "module-null-sink")
        self.play_and_release(1000, count=20)
        self.server.kill()
        self.start_server()
        self.play_to_its_end(2000)
        self.assertEqual(self.pitches(), [2000])

    def test_a_server_that_died_and_came_back_plays_the_next_clip(self) -> None:
        self.start_server()
        self.play(1000, seconds=8)
        self.wait_for_tone(1000)
        self.server.kill()
        self.play_and_release(1000, count=20)
        self.start_server()
        self.play_to_its_end(2000)
        self.assertEqual(self.pitches(), [2000])

    def test_a_frozen_server_delays_no_call(self) -> None:
        """The server stands still during all of play, cut-off, release: a call that waited for it would not return."""
        self.start_server()
        last = self.play(500, seconds=8)
        self.wait_for_tone(500)
        self.server.freeze()
        for _ in range(200):
            last, before = self.play(1000, seconds=0.1), last
            before.release()
            last.set_volume(0.5)
        last.release()
        self.server.thaw()
        self.wait_for_streams(0)
        self.start_listening()
        self.play_to_its_end(2000)
        self.assertEqual(self.pitches()[-1], 2000)

    def test_a_server_frozen_before_the_first_clip_delays_no_call(self) -> None:
        self.start_server()
        self.server.freeze()
        self.play_and_release(1000, count=200, seconds=0.1)
        self.assertLessEqual(self.port.open_clips(), 2, "only the last one waits for the server")
        self.server.thaw()
        self.play_to_its_end(2000)
        self.assertEqual(self.pitches(), [2000])

    def test_a_program_ends_although_the_server_is_frozen(self) -> None:
        self.start_server()
        self.play(1000, seconds=8)
        self.wait_for_tone(1000)
        self.server.freeze()
        self.play(1000, seconds=8)
        self.assertEqual(self.port.end(), 0)
        self.port = self.start_port()  # which never gets through to the server
        self.play(1000, seconds=8)
        self.assertEqual(self.port.end(), 0)

    def test_a_clip_that_found_the_connection_too_late_is_dropped(self) -> None:
        self.start_server()
        self.server.freeze()
        self.play_too_early(1000)
        wait_until(lambda: self.server.has_client("Quiverly"), "the connection")
        self.listen_to_what_follows()
        self.play_to_its_end(2000)
        self.assertEqual(self.pitches(), [2000])

    def test_a_clip_whose_stream_came_too_late_is_dropped(self) -> None:
        self.start_server()
        self.play_to_its_end(500)
        self.server.freeze()
        self.play_too_early(1000)
        self.listen_to_what_follows()
        self.play_to_its_end(2000)
        self.assertEqual(self.pitches(), [500, 2000])

    def test_a_short_freeze_only_delays_the_clip(self) -> None:
        self.start_server()
        self.play_to_its_end(500)
        self.server.freeze()
        self.play(1000)
        self.server.thaw()
        self.wait_for_tone(1000)

    # A system that refuses what playing needs.

    def test_a_thread_that_cannot_wait_any_more_is_replaced_for_the_next_clip(self) -> None:
        self.start_server()
        self.play_to_its_end(500)
        silent = self.port.create(self.tone(1000))
        assert silent
        with self.port.without_waiting():
            silent.play()
            wait_until(lambda: self.port.sound_thread() is None, "the thread to end")
        self.listen_to_what_follows()
        self.play_to_its_end(2000)
        self.assertEqual(self.pitches(), [500, 2000])

    def test_a_thread_that_cannot_start_is_started_for_the_next_clip(self) -> None:
        self.start_server()
        player = self.port.create(self.tone(1000))
        assert player
        with self.port.without_waiting():
            player.play()
            self.assertIsNone(self.port.sound_thread())
        self.play_to_its_end(2000)
        self.assertEqual(self.pitches(), [2000])

    def play_too_early(self, pitch: int) -> None:
        """Plays a tone, and thaws the server when it is too late for it."""
        self.play(pitch)
        over = time.monotonic() + PATIENCE
        wait_until(lambda: time.monotonic() > over, "the tone to be out of date")
        self.server.thaw()


if __name__ == "__main__":
    unittest.main()

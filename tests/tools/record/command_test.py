"""quiverly-record as a whole: what it leaves in the file, and how it ends."""

import json
import os
import re
import resource
import signal
import subprocess
import tempfile
import time
import unittest
from pathlib import Path

PROGRAMS = Path(os.environ["QUIVERLY_PROGRAMS"])
PATIENCE = 60  # seconds


class RecordProgramTest(unittest.TestCase):
    def setUp(self) -> None:
        self.folder = Path(self.enterContext(tempfile.TemporaryDirectory()))
        self.file = self.folder / "slap.txt"
        self.environment = dict(os.environ, QUIVERLY_SYS=str(self.folder / "sys"), XDG_RUNTIME_DIR=str(self.folder))
        for variable in ("HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME"):
            self.environment[variable] = str(self.folder)

    def start(self, *command: object, **more: object) -> subprocess.Popen[str]:
        program = subprocess.Popen(  # pylint: disable=consider-using-with
            [PROGRAMS / str(command[0]), *map(str, command[1:])],
            env=self.environment, text=True, stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.PIPE, **more,
        )
        self.addCleanup(self._end, program)
        return program

    def run_program(self, *command: object) -> subprocess.CompletedProcess[str]:
        return subprocess.run(
            [PROGRAMS / str(command[0]), *map(str, command[1:])],
            env=self.environment, capture_output=True, text=True, timeout=PATIENCE, check=False,
        )

    def start_laptop(self, *options: object) -> None:
        self.laptop = self.start("quiverly-simulate", *options)
        self.assertIn("ready", self.laptop.stdout.readline())

    def start_recorder(self, **more: object) -> tuple[subprocess.Popen[str], str]:
        """The recorder, and the first slap that it noticed. A laptop that is busy is taken for absent: then anew."""
        end = time.monotonic() + PATIENCE
        while True:
            recorder = self.start("quiverly-record", self.file, **more)
            if first := recorder.stdout.readline():
                return recorder, first
            recorder.wait(PATIENCE)
            self.assertLess(time.monotonic(), end, "the recorder does not start")

    def add_accelerometer(self) -> Path:
        folder = self.folder / "sys/bus/iio/devices/iio:device0"
        folder.mkdir(parents=True)
        values = {"name": "kxcj9", "in_accel_scale": "0.009582", "in_accel_sampling_frequency": "50.000000"}
        values |= {f"in_accel_{axis}_raw": raw for axis, raw in (("x", "-12"), ("y", "25"), ("z", "1023"))}
        for name, value in values.items():
            (folder / name).write_text(value + "\n", encoding="ascii")
        return folder

    @staticmethod
    def _end(program: subprocess.Popen[str]) -> None:
        program.kill()
        program.communicate()

    def test_a_replay_of_the_recording_notices_the_same_slaps_as_hard_to_the_bit(self) -> None:
        script = self.folder / "script"
        script.write_text("".join(f"{0.9 * slap} slap {0.2 + 0.1 * slap}\n" for slap in range(1, 40)), encoding="ascii")
        self.start_laptop("--script", script)
        recorder, first = self.start_recorder()  # the first slap is the first sample
        noticed = [first, *(recorder.stdout.readline() for _ in range(4))]
        recorder.send_signal(signal.SIGINT)
        rest, complaints = recorder.communicate(timeout=PATIENCE)
        self.assertEqual((recorder.returncode, complaints), (0, ""))
        noticed += rest.splitlines(keepends=True)

        replayed = self.run_program("quiverly-replay", self.file)
        self.assertEqual(replayed.returncode, 0, replayed.stderr)
        events = [json.loads(line, parse_float=str) for line in replayed.stdout.splitlines()]
        slaps = [f"slap {event['count']}: {event['amplitude']} g\n" for event in events if event["event"] == "slap"]
        self.assertGreaterEqual(len(noticed), 5)
        self.assertEqual(slaps[: len(noticed)], noticed)
        self.assertLessEqual(len(slaps), len(noticed) + 1)  # the last one may have been under way

    def test_the_header_tells_the_sensor_and_nothing_of_the_person(self) -> None:
        self.add_accelerometer()
        recorder = self.start("quiverly-record", self.file)
        recorder.stdout.readline()
        recorder.terminate()
        self.assertEqual(recorder.wait(PATIENCE), 0)
        lines = self.file.read_text(encoding="utf-8").splitlines()
        self.assertRegex(lines[0], r"^# Quiverly [\d.]+ on Linux \S+$")
        self.assertEqual(lines[1], "# sensor: kxcj9, driver ?, 0.000977 g a step, set to 50 readings a second")
        self.assertEqual([line.partition(" ")[2] for line in lines[2:6]],
                         ["!threshold 0.12", "!pack sexy", "!sound on", "!start"])
        reports = [line.split() for line in lines[6:]]
        self.assertGreaterEqual(len(reports), 8)
        for seconds, report in reports:
            self.assertRegex(seconds, r"^\d+\.\d{6}$")
            self.assertRegex(report, r"^[0-9a-f]{36}$")

    def test_a_crash_loses_at_most_the_last_line(self) -> None:
        self.start_laptop()
        recorder, _ = self.start_recorder()
        recorder.kill()
        recorder.wait(PATIENCE)
        text = self.file.read_text(encoding="ascii")
        self.assertTrue(text.endswith("\n"))
        self.assertEqual(self.run_program("quiverly-replay", self.file).returncode, 0)

    def test_a_file_that_is_there_stays_as_it_is(self) -> None:
        self.start_laptop()
        self.file.write_text("precious", encoding="ascii")
        recorder = self.run_program("quiverly-record", self.file)
        self.assertEqual((recorder.returncode, recorder.stderr), (1, f"quiverly-record: {self.file}: File exists\n"))
        self.assertEqual(self.file.read_text(encoding="ascii"), "precious")

    def test_a_file_that_may_not_grow_ends_the_recording_with_a_whole_line(self) -> None:
        self.start_laptop()
        limit = 10_000
        recorder, _ = self.start_recorder(
            preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (limit, limit))
        )
        _, complaints = recorder.communicate(timeout=PATIENCE)
        self.assertEqual(recorder.returncode, 1)
        self.assertRegex(complaints, rf"^quiverly-record: {re.escape(str(self.file))}: ")
        self.assertEqual(self.run_program("quiverly-replay", self.file).returncode, 0)

    def test_without_a_sensor_there_is_no_file_but_a_reason(self) -> None:
        recorder = self.run_program("quiverly-record", self.file)
        self.assertEqual(recorder.returncode, 1)
        self.assertIn("quiverly-record: Accelerometer device missing on this Mac.\n", recorder.stderr)
        self.assertFalse(self.file.exists())

    def test_a_sensor_that_is_refused_is_said_to_be_and_why(self) -> None:
        (self.add_accelerometer() / "in_accel_sampling_frequency").write_text("10\n", encoding="ascii")
        recorder = self.run_program("quiverly-record", self.file)
        self.assertEqual(recorder.returncode, 1)
        self.assertIn("not offered: it is set to 10 readings a second\n", recorder.stderr)

    def test_another_reader_of_the_sensor_is_named(self) -> None:
        self.add_accelerometer()
        first = self.start("quiverly-record", self.file)
        first.stdout.readline()
        second = self.start("quiverly-record", self.folder / "second.txt")
        self.assertIn(f"note: quiverly-record (process {first.pid}) reads the sensor too", second.stderr.readline())

    def test_the_sensors_are_listed_as_text_and_as_json(self) -> None:
        self.add_accelerometer()
        text = self.run_program("quiverly-record", "--sensors")
        self.assertEqual(text.returncode, 0)
        self.assertIn("kxcj9 (iio:device0)\n", text.stdout)
        self.assertIn("  verdict   offered; hears hard slaps only\n", text.stdout)
        objects = json.loads(self.run_program("quiverly-record", "--sensors", "--json").stdout)
        self.assertFalse(objects["simulated_laptop"])
        self.assertEqual([sensor["name"] for sensor in objects["sensors"]], ["kxcj9"])
        self.assertTrue(objects["sensors"][0]["offered"])

    def test_options_that_make_no_sense_are_refused(self) -> None:
        for options in ([], ["--json"], ["--sensors", "file"], ["--json", "file"], ["one", "two"]):
            self.assertEqual(self.run_program("quiverly-record", *options).returncode, 2, options)


if __name__ == "__main__":
    unittest.main()

"""quiverly-replay as a command: options, files, streams, exit status."""

import json
import os
import pty
import shutil
import subprocess
import tempfile
import tty
import unittest
import xml.etree.ElementTree
from pathlib import Path

from program import PROGRAM, run

PHASES = b'{"t":0,"event":"phase","phase":"listening"}\n{"t":1,"event":"phase","phase":"idle"}\n'
END = b'{"event":"end","reports":0,"samples":0,"slaps":0,"clips":0}\n'

SLAPS = "".join(
    f"{second} -\n" * 7 + f"{second} {'0' * 12}{(65536 * level).to_bytes(12, 'little').hex()}\n"
    for second, level in ((second, 1 + second % 2) for second in range(60))
).encode()


def clips(result):
    events = [json.loads(line) for line in result.stdout.splitlines()]
    return [event["file"] for event in events if event["event"] == "clip"]


def read_to_end(descriptor):
    """What comes out of a terminal until its other end is closed."""
    chunks = []
    try:
        while chunk := os.read(descriptor, 65536):
            chunks.append(chunk)
    except OSError:
        pass
    return b"".join(chunks)


class CommandTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)

    def file(self, name, content=b""):
        file = self.folder / name
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_bytes(content)
        return str(file)

    def assert_refused(self, result, complaint, stdout=b""):
        self.assertEqual((result.stderr.decode(), result.stdout, result.returncode), (complaint, stdout, 2))

    def test_help_and_version_go_to_standard_output(self):
        for option, text in (("--help", b"Usage: quiverly-replay "), ("--version", b"quiverly-replay ")):
            result = run(option)
            self.assertIn(text, result.stdout)
            self.assertEqual((result.stderr, result.returncode), (b"", 0))

    def test_unusable_options_are_refused(self):
        recording = self.file("r.txt")
        for arguments in ([], [recording, recording], ["--samples=x", recording], ["--fast", recording],
                          [recording, "--pack"], ["--threshold", "1e3", recording], ["--seed=-1", recording]):
            result = run(*arguments)
            self.assertEqual((result.stdout, result.returncode), (b"", 2), arguments)
            self.assertRegex(result.stderr, rb"^quiverly-replay: .*\nTry 'quiverly-replay --help'.\n$")

    def test_replays_a_file_and_standard_input_alike(self):
        recording = b"0 !start\n1 !stop\n"
        for result in (run(self.file("r.txt", recording)), run("-", recording=recording)):
            self.assertEqual((result.stdout, result.stderr, result.returncode), (PHASES + END, b"", 0))

    def test_a_file_that_cannot_be_opened_or_read_is_named_as_given(self):
        missing = f"{self.folder}/./missing"
        self.assert_refused(run(missing), f"quiverly-replay: {missing}: No such file or directory\n")
        self.assert_refused(run(""), "quiverly-replay: : No such file or directory\n")
        self.assert_refused(run(str(self.folder)), f"quiverly-replay: {self.folder}: Is a directory\n")
        self.assert_refused(run("/proc/self/mem"), "quiverly-replay: /proc/self/mem: Input/output error\n")

    def test_closed_standard_input_cannot_be_read(self):
        result = subprocess.run(["sh", "-c", 'exec "$0" - <&-', PROGRAM], capture_output=True, check=False)
        self.assert_refused(result, "quiverly-replay: -: Bad file descriptor\n")

    def test_a_read_error_midway_leaves_the_line_it_cut_undone(self):
        terminal, far_end = pty.openpty()
        tty.setraw(far_end)
        os.write(far_end, b"0 !start\n1 !stop\n2 !stop")
        os.close(far_end)
        result = subprocess.run([PROGRAM, "-"], stdin=terminal, capture_output=True, check=False)
        os.close(terminal)
        self.assert_refused(result, "quiverly-replay: -: Input/output error\n", PHASES)

    def test_a_malformed_line_is_told_with_the_name_as_given(self):
        self.assert_refused(run("-", recording=b"\n0 !start\n1 !stop\n2\n"),
                            "quiverly-replay: -:4: a report or a command is missing\n", PHASES)
        relative = os.path.relpath(self.file("r.txt", b"0 0"))
        self.assert_refused(run(relative), f"quiverly-replay: {relative}:1: the report has an odd number of digits\n")

    def test_a_line_without_an_end_is_refused(self):
        for command in ("cat /dev/zero", "yes | tr -d '\\n'", "yes 0 | tr '\\n' ' '"):
            result = subprocess.run(["sh", "-c", f'{command} | "$0" -', PROGRAM], capture_output=True, check=False,
                                    timeout=60)
            self.assertTrue(result.stderr.startswith(b"quiverly-replay: -:1: "), result.stderr)
            self.assertEqual((result.stdout, result.returncode), (b"", 2))

    def test_output_that_cannot_be_written_is_a_failure(self):
        recording = self.file("r.txt", b"0 !stop\n")
        malformed = self.file("m.txt", b"0 !stop\nx\n")
        for arguments in ([recording], [malformed], ["--help"], ["--version"]):
            with open("/dev/full", "wb") as full:
                result = subprocess.run([PROGRAM, *arguments], stdout=full, stderr=subprocess.PIPE, check=False)
            self.assertEqual(result.returncode, 1, arguments)
            self.assertIn(b"quiverly-replay: standard output: No space left on device\n", result.stderr)
        result = subprocess.run(["sh", "-c", 'exec "$0" "$1" >&-', PROGRAM, recording], stderr=subprocess.PIPE,
                                check=False)
        self.assertEqual((result.stderr, result.returncode),
                         (b"quiverly-replay: standard output: Bad file descriptor\n", 1))

    def test_ends_early_when_its_output_is_closed(self):
        unread, output = os.pipe()
        os.close(unread)
        with subprocess.Popen([PROGRAM, "-"], stdin=subprocess.PIPE, stdout=output, stderr=subprocess.PIPE) as process:
            os.close(output)
            with self.assertRaises(BrokenPipeError):
                while True:
                    process.stdin.write(b"0 !stop\n" * 10000)
            self.assertEqual(process.stderr.read(), b"quiverly-replay: standard output: Broken pipe\n")
        self.assertEqual(process.returncode, 1)

    def test_events_come_out_before_more_input_is_waited_for(self):
        with subprocess.Popen([PROGRAM, "-"], stdin=subprocess.PIPE, stdout=subprocess.PIPE) as process:
            for line, event in zip((b"0 !start\n", b"1 !stop\n"), PHASES.splitlines(keepends=True)):
                process.stdin.write(line)
                process.stdin.flush()
                self.assertEqual(process.stdout.readline(), event)
            process.stdin.close()
            self.assertEqual(process.stdout.read(), END)
        self.assertEqual(process.returncode, 0)

    def test_progress_is_shown_on_a_terminal_and_taken_away(self):
        recording = self.file("long.txt", b"7 00\n" * 250_000)
        terminal, far_end = pty.openpty()
        with subprocess.Popen([PROGRAM, recording], stdout=subprocess.PIPE, stderr=far_end) as process:
            os.close(far_end)
            shown = read_to_end(terminal)
            events = process.stdout.read()
        os.close(terminal)
        self.assertEqual(shown, b"\r100000 lines, 7 s of recording\r200000 lines, 7 s of recording\r\x1b[K")
        self.assertEqual(run(recording).stderr, b"")
        self.assertEqual(run(recording).stdout, events)

    def test_needs_no_more_memory_for_long_recordings_comments_and_blanks(self):
        def most_memory(pieces):
            """Kilobytes that a replay of the pieces takes."""
            environment = dict(os.environ)
            environment["ASAN_OPTIONS"] = environment.get("ASAN_OPTIONS", "") + ":quarantine_size_mb=1"
            with subprocess.Popen([PROGRAM, "-"], stdin=subprocess.PIPE, stdout=subprocess.DEVNULL,
                                  env=environment) as process:
                for piece in pieces:
                    process.stdin.write(piece)
                process.stdin.close()
                _, status, usage = os.wait4(process.pid, 0)
                process.returncode = os.waitstatus_to_exitcode(status)
            self.assertEqual(process.returncode, 0)
            return usage.ru_maxrss

        def long(before, repeated, after):
            """Much of the same, 16 MiB of it."""
            yield before
            for _ in range(16):
                yield repeated * (2**20 // len(repeated))
            yield after

        short = most_memory([b"0 !start\n"])
        allowance = 10 * 1024
        self.assertLess(most_memory(long(b"#", b"\0", b"\n0 !stop")), short + allowance)
        self.assertLess(most_memory(long(b"0 !stop", b" ", b"\n")), short + allowance)
        self.assertLess(most_memory(long(b"", b"0 " + b"ab" * 126 + b"\n", b"")), short + allowance)

    def test_resources_are_found_beside_the_program_itself(self):
        program = self.folder / "prefix" / "bin" / "quiverly-replay"
        program.parent.mkdir(parents=True)
        shutil.copy(PROGRAM, program)
        link = self.folder / "replay"
        link.symlink_to(program)

        def first_clip():
            result = subprocess.run([link, "-"], input=SLAPS, capture_output=True, check=True)
            return (clips(result) or [None])[0]

        self.assertIsNone(first_clip())
        self.file("prefix/resources/audio/sexy/built.mp3")
        self.assertEqual(first_clip(), "sexy/built.mp3")
        self.file("prefix/share/quiverly/audio/pain/1.mp3")
        self.assertEqual(first_clip(), "sexy/built.mp3")
        self.file("prefix/share/quiverly/sexy/installed.mp3")
        self.assertEqual(first_clip(), "sexy/built.mp3")
        self.file("prefix/share/quiverly/audio/sexy/installed.mp3")
        self.assertEqual(first_clip(), "sexy/installed.mp3")

    def test_resources_that_are_not_there_are_silent_and_told(self):
        missing = str(self.folder / "missing")
        result = run("--resources", missing, "-", recording=SLAPS)
        self.assertEqual((clips(result), result.returncode), ([], 0))
        self.assertEqual(result.stderr.decode(), f"quiverly-replay: {missing}: no such folder, all packs are empty\n")

    def test_clips_are_ordered_in_english_whatever_the_locale(self):
        for name in ("ä", "z"):
            self.file(f"audio/sexy/{name}.mp3")
        swedish = os.environ | {"LC_ALL": "sv_SE.UTF-8"}
        result = subprocess.run([PROGRAM, f"--resources={self.folder}", "-"], input=SLAPS, capture_output=True,
                                env=swedish, check=True)
        self.assertEqual(clips(result)[0], "sexy/ä.mp3")

    def test_the_seed_decides_the_random_choices(self):
        for number in range(1, 6):
            self.file(f"audio/pain/{number}.mp3")
        played = lambda *seed: clips(run(f"--resources={self.folder}", "--pack=pain", *seed, "-", recording=SLAPS))
        self.assertEqual(len(played()), 60)
        self.assertEqual(set(played()), {f"pain/{number}.mp3" for number in range(1, 6)})
        self.assertEqual(played(), played("--seed=0"))
        self.assertEqual(played("--seed=18446744073709551615"), played("--seed=18446744073709551615"))
        self.assertNotEqual(played("--seed=1"), played("--seed=2"))

    def test_draws_what_it_replays(self):
        drawing = self.folder / "a.svg"
        without = run(f"--resources={self.folder}", "-", recording=SLAPS)
        result = run(f"--resources={self.folder}", f"--plot={drawing}", "-", recording=SLAPS)
        self.assertEqual((result.stdout, result.stderr, result.returncode), (without.stdout, b"", 0))
        document = xml.etree.ElementTree.parse(drawing)
        titles = [title.text for title in document.iter("{http://www.w3.org/2000/svg}title")]
        slaps = [json.loads(line) for line in result.stdout.splitlines() if b'"slap"' in line]
        self.assertEqual([title for title in titles if "slap at" in title],
                         [f"slap at {slap['t']}, {round(slap['amplitude'], 3):g} g" for slap in slaps])

    def test_the_drawing_shades_cooldown_and_settling(self):
        drawing = self.folder / "a.svg"
        sample = "0" * 12 + (65536).to_bytes(12, "little").hex()
        rest = "".join(f"{tick / 1000:.3f} {sample}\n" for tick in range(4000))
        begun = rest.replace("1.000 ", "1.000 !check begin\n1.000 ").encode()
        run(f"--plot={drawing}", "-", recording=b"0 !start\n" + begun)
        width = 1200 - 56 - 24
        shades = {}
        for shape in xml.etree.ElementTree.parse(drawing).findall(".//{*}g/{*}rect"):
            seconds = float(shape.get("width")) / width * 3.999
            shades[shape.get("class")] = round(seconds, 1)
        self.assertEqual(shades, {"cooldown": 0.6, "settling": 2.0})  # the first sample is a slap

    def test_draws_a_recording_up_to_its_malformed_line(self):
        drawing = self.folder / "a.svg"
        result = run(f"--plot={drawing}", "-", recording=SLAPS + b"x\n")
        self.assertEqual(result.returncode, 2)
        self.assertIn("59 s, ", drawing.read_text())

    def test_a_drawing_that_cannot_be_stored_is_a_failure(self):
        for file, reason in ((f"{self.folder}/no/a.svg", "No such file or directory"), ("/dev/full", None)):
            if reason is None:
                link = self.folder / "full.svg"
                link.symlink_to(file)
                file, reason = str(link), "No space left on device"
            result = run(f"--plot={file}", "-", recording=SLAPS)
            self.assertEqual((result.stderr.decode(), result.returncode), (f"quiverly-replay: {file}: {reason}\n", 1))

    def test_bytes_of_a_file_name_that_are_not_utf8_are_replaced(self):
        folder = os.fsencode(self.folder) + b"/audio/sexy"
        os.makedirs(folder)
        for name in (b"\xff.mp3", b"\xe2\x86x\xc0\xaf.mp3", b"\xed\xa0\x80\xf0\x9f.mp3", "é\x7f\x01→\".mp3".encode()):
            with open(folder + b"/" + name, "wb"):
                pass
            played = clips(run(f"--resources={self.folder}", "-", recording=SLAPS))
            self.assertEqual(set(played), {"sexy/" + name.decode(errors="replace")})
            os.remove(folder + b"/" + name)


if __name__ == "__main__":
    unittest.main()

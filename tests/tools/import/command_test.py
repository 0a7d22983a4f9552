"""quiverly-import as a command: arguments, output, exit status, where the clips go."""

import os
import signal
import struct
import subprocess
import tempfile
import unittest
import wave
from pathlib import Path

PROGRAM = os.environ["QUIVERLY_IMPORT"]


class ImportCommandTest(unittest.TestCase):
    def setUp(self) -> None:
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.audio = self.folder / "data/quiverly/audio"

    def command(self, *arguments: str | Path) -> tuple[list[str | Path], dict[str, str]]:
        return [PROGRAM, *arguments], dict(os.environ, XDG_DATA_HOME=str(self.folder / "data"), LC_ALL="C.UTF-8")

    def run_it(self, *arguments: str | Path) -> tuple[int, str, str]:
        command, environment = self.command(*arguments)
        result = subprocess.run(command, env=environment, capture_output=True, text=True, timeout=60, check=False)
        return result.returncode, result.stdout, result.stderr

    def sound(self, name: str, seconds: float = 0.4) -> Path:
        file = self.folder / name
        with wave.open(str(file), "wb") as out:
            out.setnchannels(1)
            out.setsampwidth(2)
            out.setframerate(44100)
            out.writeframes(b"".join(struct.pack("<h", 9000 if at // 50 % 2 else -9000)
                                     for at in range(int(44100 * seconds))))
        return file

    def test_help_and_version_go_to_standard_output(self) -> None:
        for argument in ("--help", "--version"):
            status, output, error = self.run_it(argument)
            self.assertIn("quiverly-import", output)
            self.assertEqual((status, error), (0, ""))

    def test_arguments_that_cannot_be_used_are_refused_and_change_nothing(self) -> None:
        sound = self.sound("a.wav")
        for arguments in ([], ["pain"], ["Pain", sound], ["loud", sound], ["--list"], ["--remove"], ["--remove", "pain", sound],
                          ["--list", "pain", sound], ["--list", "--remove", "pain"], ["--append", "pain"],
                          ["--loud", "pain", sound]):
            with self.subTest(arguments=arguments):
                status, output, error = self.run_it(*arguments)
                self.assertEqual((status, output), (2, ""))
                self.assertTrue(error.startswith("quiverly-import: "), error)
                self.assertFalse(self.audio.exists())

    def test_a_pack_is_imported_shown_extended_and_removed(self) -> None:
        pain = self.audio / "pain"
        status, output, error = self.run_it("pain", self.sound("b.wav"), self.sound("a.wav"))
        self.assertEqual((status, error), (0, ""))
        shown = f"pain: 2 clips of yours\n  {pain}/1.mp3\n  {pain}/2.mp3\n"
        self.assertEqual(output, shown)
        self.assertEqual(self.run_it("--list", "pain"), (0, shown, ""))
        none = (0, "sexy: the program's own clips\n", "")
        self.assertEqual(self.run_it("--list", "sexy"), none)

        for _ in range(9):
            self.assertEqual(self.run_it("--append", "pain", self.sound("c.wav"))[0], 0)
        listed = self.run_it("--list", "pain")[1].splitlines()
        self.assertEqual([Path(line.strip()).name for line in listed[1:]], [f"{number}.mp3" for number in range(1, 12)])

        self.assertEqual(self.run_it("--remove", "pain"), (0, "pain: the program's own clips\n", ""))
        self.assertFalse(pain.exists())
        status, output, error = self.run_it("--remove", "pain")
        self.assertEqual((status, output), (1, ""))
        self.assertEqual(error, f"quiverly-import: {pain}: There is no pack of your own.\n")

    def test_a_file_that_cannot_be_read_is_a_failure_and_leaves_the_old_pack(self) -> None:
        self.assertEqual(self.run_it("pain", self.sound("a.wav"))[0], 0)
        before = (self.audio / "pain/1.mp3").read_bytes()
        missing = self.folder / "missing.wav"
        status, output, error = self.run_it("pain", self.sound("b.wav"), missing)
        self.assertEqual((status, output), (1, ""))
        self.assertTrue(error.startswith(f"quiverly-import: {missing}: "), error)
        self.assertEqual((self.audio / "pain/1.mp3").read_bytes(), before)

    def test_an_import_that_is_killed_leaves_the_old_pack(self) -> None:
        self.assertEqual(self.run_it("pain", self.sound("a.wav"))[0], 0)
        before = (self.audio / "pain/1.mp3").read_bytes()
        pipe = self.folder / "pipe"
        os.mkfifo(pipe)
        # It has made its first clip when it asks for the second sound, which never comes.
        command, environment = self.command("pain", self.sound("b.wav"), pipe)
        with subprocess.Popen(command, env=environment) as program:
            signal.alarm(60)
            writer = os.open(pipe, os.O_WRONLY)
            signal.alarm(0)
            self.assertTrue((self.audio / ".pain.import/1.mp3").exists())
            program.send_signal(signal.SIGKILL)
            program.wait(timeout=30)
            os.close(writer)
        self.assertEqual([file.name for file in (self.audio / "pain").iterdir()], ["1.mp3"])
        self.assertEqual((self.audio / "pain/1.mp3").read_bytes(), before)
        self.assertEqual(self.run_it("--append", "pain", self.sound("c.wav"))[0], 0)
        self.assertEqual([folder.name for folder in self.audio.iterdir()], ["pain"])


if __name__ == "__main__":
    unittest.main()

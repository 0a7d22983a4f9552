"""quiverly-clips as a command: arguments, files, exit status. The clips themselves have tests of their own."""

import os
import subprocess
import tempfile
import unittest
from pathlib import Path

PROGRAM = os.environ["QUIVERLY_CLIPS"]
AUDIO = Path(os.environ["QUIVERLY_AUDIO"])


def run(*arguments: str | Path) -> subprocess.CompletedProcess[str]:
    return subprocess.run([PROGRAM, *arguments], capture_output=True, text=True, timeout=120, check=False)


class CommandTest(unittest.TestCase):
    def setUp(self) -> None:
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)

    def test_help_and_version_go_to_standard_output(self) -> None:
        for arguments, text in ((["--help"], "quiverly-clips"), (["make", "--help"], "quiverly-clips make"),
                                (["--version"], "quiverly-clips")):
            with self.subTest(arguments=arguments):
                result = run(*arguments)
                self.assertIn(text, result.stdout)
                self.assertEqual((result.returncode, result.stderr), (0, ""))

    def test_arguments_that_cannot_be_used_are_refused(self) -> None:
        for arguments in ([], ["make"], ["make", "a", "b"], ["sheets", "a"], ["sing", "a"], ["make", "--loud", "a"], ["make", "--pack", "loud", "a"], ["minutes", "a"]):
            with self.subTest(arguments=arguments):
                result = run(*arguments)
                self.assertEqual((result.returncode, result.stdout), (2, ""))
                self.assertTrue(result.stderr.startswith("quiverly-clips: "), result.stderr)
                self.assertEqual(list(self.folder.iterdir()), [])

    def test_a_folder_that_cannot_be_made_is_a_failure(self) -> None:
        (self.folder / "file").touch()
        result = run("make", self.folder / "file")
        expected = f"quiverly-clips: {self.folder}/file/pain: Not a directory\n"
        self.assertEqual((result.returncode, result.stdout, result.stderr), (1, "", expected))

    def test_clips_that_cannot_be_read_are_a_failure(self) -> None:
        result = run("sheets", self.folder, self.folder)
        self.assertEqual((result.returncode, result.stdout), (1, ""))
        self.assertIn(f"quiverly-clips: {self.folder}/pain/1.mp3: ", result.stderr)

    def test_every_clip_is_listed(self) -> None:
        result = run("list")
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        lines = [line.split("\t") for line in result.stdout.splitlines()]
        clips = {str(file.relative_to(AUDIO)) for file in AUDIO.glob("*/*.mp3")}
        self.assertEqual({line[0] for line in lines}, clips)
        self.assertTrue(all(len(line) == 4 for line in lines))

    def test_one_pack_is_made_alone(self) -> None:
        result = run("make", "--pack", "pain", self.folder)
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertEqual([file.name for file in self.folder.iterdir()], ["pain"])

    def test_a_minute_of_every_pack_is_written(self) -> None:
        result = run("minutes", AUDIO, self.folder)
        self.assertEqual((result.returncode, result.stdout, result.stderr), (0, "", ""))
        self.assertEqual({file.stem for file in self.folder.glob("*.wav")},
                         {folder.name for folder in AUDIO.iterdir() if folder.is_dir()})

    def test_sheets_are_drawn_and_shown_in_markdown(self) -> None:
        result = run("sheets", AUDIO, self.folder)
        self.assertEqual(result.returncode, 0, result.stderr)
        sheets = {file.stem for file in self.folder.glob("*.png")}
        self.assertEqual(sheets, {folder.name for folder in AUDIO.iterdir() if folder.is_dir()})
        for name in sheets:
            self.assertIn(f"]({self.folder.name}/{name}.png)", result.stdout)


if __name__ == "__main__":
    unittest.main()

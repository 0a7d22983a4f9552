"""scripts/count-tests counts what passed, failed and could not be run, and fails when anything failed."""

import pathlib
import shutil
import subprocess
import tempfile
import unittest

PROJECT = pathlib.Path(__file__).resolve().parents[2]


class CountTestsTest(unittest.TestCase):
    def setUp(self) -> None:
        self.project = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        (self.project / "scripts").mkdir()
        shutil.copy(PROJECT / "scripts/count-tests", self.project / "scripts")

    def count(self, *checks: str) -> subprocess.CompletedProcess:
        file = self.project / "checks"
        file.write_text("".join(f"{line}\n" for line in checks))
        command = [self.project / "scripts/count-tests", file]
        return subprocess.run(command, capture_output=True, text=True, timeout=60)

    def test_what_passed_is_counted_and_not_named(self) -> None:
        result = self.count("passed format", "passed documents")
        self.assertEqual((result.returncode, result.stdout), (0, "2 passed, 0 failed, 0 not run\n"))

    def test_what_failed_is_named_and_fails(self) -> None:
        result = self.count("passed format", "failed dev: build")
        self.assertEqual((result.returncode, result.stdout), (1, "failed: dev: build\n1 passed, 1 failed, 0 not run\n"))

    def test_what_was_not_run_is_named_with_the_reason_and_does_not_pass(self) -> None:
        result = self.count("not run Debian packages: there is no lintian here")
        self.assertEqual(result.returncode, 0)
        self.assertEqual(
            result.stdout, "not run: Debian packages: there is no lintian here\n0 passed, 0 failed, 1 not run\n"
        )

    def test_a_file_of_tests_that_nobody_runs_fails(self) -> None:
        file = self.project / "tests/ui/lost_test.py"
        file.parent.mkdir(parents=True)
        file.touch()
        result = self.count()
        self.assertEqual((result.returncode, result.stdout.count("is run by no preset\n")), (1, 1))


if __name__ == "__main__":
    unittest.main()

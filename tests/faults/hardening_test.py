"""What makes an error in memory harder to exploit, as it is found in the optimised programs."""

import os
import platform
import re
import subprocess
import unittest
from pathlib import Path

FOLDER = Path(os.environ["QUIVERLY_PROGRAMS"])
PROGRAMS = ("quiverly", "quiverly-import", "quiverly-laptop-window", "quiverly-record", "quiverly-replay", "quiverly-simulate")


def ask(*command: str | Path) -> str:
    return subprocess.run(command, capture_output=True, check=True, text=True).stdout


class HardeningTest(unittest.TestCase):
    def expect_of_each(self, *command: str, pattern: str) -> None:
        for program in PROGRAMS:
            with self.subTest(program=program):
                self.assertRegex(ask(*command, FOLDER / program), pattern)

    def test_programs_are_loaded_at_any_address(self) -> None:
        self.expect_of_each("readelf", "--dynamic", pattern=r"\(FLAGS_1\).*\bPIE\b")

    def test_the_table_of_functions_is_read_only_once_a_program_is_loaded(self) -> None:
        self.expect_of_each("readelf", "--segments", pattern=r"GNU_RELRO")
        self.expect_of_each("readelf", "--dynamic", pattern=r"\(FLAGS\).*\bBIND_NOW\b")

    def test_the_stack_is_not_executed(self) -> None:
        self.expect_of_each("readelf", "--segments", "--wide", pattern=r"GNU_STACK.* RW +0")

    def test_the_stack_is_protected(self) -> None:
        self.expect_of_each("readelf", "--dyn-syms", "--wide", pattern=r"\b__stack_chk_fail\b")

    def test_calls_that_write_text_are_fortified(self) -> None:
        for program in PROGRAMS:
            symbols = ask("readelf", "--dyn-syms", "--wide", FOLDER / program)
            with self.subTest(program=program):
                self.assertEqual(re.findall(r" UND (f?printf|sn?printf)\b", symbols), [])

    @unittest.skipUnless(platform.machine() == "x86_64", "NOT RUN: only x86 marks where calls may lead")
    def test_it_is_marked_where_calls_may_lead(self) -> None:
        self.expect_of_each("objdump", "--disassemble=main", "--section=.text", pattern=r"<main>:\n.*\bendbr64\b")


if __name__ == "__main__":
    unittest.main()

"""scripts/check-architecture finds nothing in the project as it is, and each of its rules can fail."""

import pathlib
import shutil
import subprocess
import tempfile
import unittest

PROJECT = pathlib.Path(__file__).resolve().parents[2]

# Lines planted at the ends of files, and what is said of each. Every room has a file Planted.h.
PLANTED = [
    # The road uses its ports, and nothing of a system.
    ("src/detection/Planted.h", "#include <sys/stat.h>", "src/detection must not include <sys/stat.h>"),
    ("src/detection/Planted.h", "#include <QObject>", "src/detection must not include <QObject>"),
    ("src/detection/Planted.h", "#ifdef __linux__", "src/detection is portable: no #ifdef"),
    ("src/detection/Planted.h", "#  if __APPLE__", "src/detection is portable: no #if"),
    ("src/detection/Planted.h", "#elif __APPLE__", "src/detection is portable: no #elif"),
    ("src/detection/Planted.h", "#include HEADER", "includes what a macro says"),
    ("src/sensing/Planted.h", "#include <unistd.h>", "src/sensing must not include <unistd.h>"),
    ("src/sound/Planted.h", "#include <math.h>", "src/sound must not include <math.h>"),
    ("src/engine/Planted.h", "#include <pthread.h>", "src/engine must not include <pthread.h>"),
    ("src/platform/Planted.h", "#include <fcntl.h>", "src/platform must not include <fcntl.h>"),
    ("src/platform/virtual/Planted.h", "#include <poll.h>", "src/platform/virtual must not include <poll.h>"),
    ("src/platform/virtual/Planted.h", "#ifndef NDEBUG", "src/platform/virtual is portable: no #ifndef"),
    ("src/platform/shared/Planted.h", "#include <unicode/coll.h>", "must not include <unicode/coll.h>"),
    ("src/platform/shared/bundle.cpp", "#include <dirent.h>", "must not include <dirent.h>"),
    ("src/ui/Planted.h", "#include <unistd.h>", "src/ui must not include <unistd.h>"),
    # The arrows run one way.
    ("src/sensing/Planted.h", '#include "detection/Planted.h"', "must not include src/detection"),
    ("src/detection/Planted.h", '#include "sound/Planted.h"', "src/detection must not include src/sound"),
    ("src/sound/Planted.h", '#include "engine/Planted.h"', "src/sound must not include src/engine"),
    ("src/engine/Planted.h", '#include "ui/Planted.h"', "src/engine must not include src/ui"),
    ("src/engine/Planted.h", '#include "platform/shared/Planted.h"', "must not include src/platform/shared"),
    ("src/engine/Planted.h", '#include "platform/virtual/Planted.h"', "must not include src/platform/virtual"),
    ("src/ui/Planted.h", '#include "platform/linux/Planted.h"', "src/ui must not include src/platform/linux"),
    ("src/ui/Planted.h", '#include "detection/Planted.h"', "src/ui must not include src/detection"),
    ("src/ui/Planted.h", '#include "app/Planted.h"', "src/ui must not include src/app"),
    ("src/app/Planted.h", '#include "engine/Planted.h"', "src/app must not include src/engine"),
    ("src/platform/Planted.h", '#include "sensing/Planted.h"', "src/platform must not include src/sensing"),
    # No platform uses another one, or what is above it.
    ("src/platform/linux/Planted.h", '#include "platform/macos/Planted.h"', "must not include src/platform/macos"),
    ("src/platform/macos/Planted.h", '#include "platform/linux/Planted.h"', "must not include src/platform/linux"),
    ("src/platform/macos/Planted.h", '#include "sockets/Planted.h"', "must not include src/sockets"),
    ("src/platform/virtual/Planted.h", '#include "platform/linux/Planted.h"', "not include src/platform/linux"),
    ("src/platform/linux/Planted.h", '#include "platform/virtual/Planted.h"', "not include src/platform/virtual"),
    ("src/platform/linux/Planted.h", '#include "engine/Planted.h"', "must not include src/engine"),
    ("src/platform/shared/Planted.h", '#include "platform/linux/Planted.h"', "not include src/platform/linux"),
    ("src/sockets/Planted.h", '#include "laptop/Planted.h"', "src/sockets must not include src/laptop"),
    ("src/laptop/Planted.h", '#include "platform/Planted.h"', "src/laptop must not include src/platform"),
    # The tools, and what stands beside src/.
    ("src/tools/recording/Planted.h", '#include "tools/replay/Planted.h"', "must not include src/tools/replay"),
    ("src/tools/replay/Planted.h", '#include "ui/Planted.h"', "src/tools/replay must not include src/ui"),
    ("src/tools/simulate/Planted.h", '#include "platform/Planted.h"', "must not include src/platform"),
    ("src/tools/simulate/Planted.h", '#include "tools/replay/Planted.h"', "must not include src/tools/replay"),
    ("src/ui/Planted.h", '#include "clips/Planted.h"', "src/ui must not include clips"),
    ("clips/Planted.h", '#include "platform/Planted.h"', "clips must not include src/platform"),
    ("src/cellar/Planted.h", "", "is in no room"),
    # Only tests use the tests.
    ("src/ui/Planted.h", '#include "support/Reports.h"', "includes support/Reports.h, which is in no folder"),
    ("src/ui/Planted.h", '#include "tests/support/Reports.h"', "includes tests/support/Reports.h, which is in no"),
    ("src/CMakeLists.txt", 'target_include_directories(a PRIVATE "${PROJECT_SOURCE_DIR}/tests")', "names the tests'"),
    ("tour/tour.py", 'HELPERS = "tests/support"', "names the tests' folder"),
    ("run", "python3 tests/system/run_test.py", "names the tests' folder"),
    ("resources/CMakeLists.txt", "add_subdirectory(tests)", "names the tests' folder"),
]


class CheckArchitectureTest(unittest.TestCase):
    def setUp(self) -> None:
        self.copy = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        listed = subprocess.run(["git", "ls-files", "-z"], cwd=PROJECT, check=True, capture_output=True, text=True)
        for name in filter(None, listed.stdout.split("\0")):
            if (PROJECT / name).is_file() and not name.endswith((".mp3", ".png")):
                (self.copy / name).parent.mkdir(parents=True, exist_ok=True)
                shutil.copy(PROJECT / name, self.copy / name)
        subprocess.run(["git", "init", "--quiet", self.copy], check=True)
        subprocess.run(["git", "add", "--all"], cwd=self.copy, check=True)

    def check(self) -> subprocess.CompletedProcess:
        return subprocess.run(
            [PROJECT / "scripts/check-architecture", self.copy], capture_output=True, text=True, timeout=60
        )

    def test_the_project_keeps_every_rule(self) -> None:
        result = self.check()
        self.assertEqual((result.returncode, result.stderr), (0, ""))

    def test_each_rule_can_fail(self) -> None:
        for header in [*self.copy.glob("src/**/*.h"), *self.copy.glob("clips/*.h")]:
            header.with_name("Planted.h").touch()
        expected = []
        for name, line, message in PLANTED:
            file = self.copy / name
            file.parent.mkdir(parents=True, exist_ok=True)
            with file.open("a+") as content:
                content.seek(0)
                number = len(content.readlines()) + 1
                content.write(f"{line}\n")
            expected.append((f"{name}:{number}: ", message))
        subprocess.run(["git", "add", "--all"], cwd=self.copy, check=True)
        result = self.check()
        found = result.stderr.splitlines()
        self.assertEqual(result.returncode, 1)
        for place, message in expected:
            with self.subTest(place=place):
                self.assertEqual([message in finding for finding in found if finding.startswith(place)], [True])
        self.assertEqual(len(found), len(expected))


if __name__ == "__main__":
    unittest.main()

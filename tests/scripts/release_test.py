"""scripts/release makes what it says, and says why when it cannot. The packages themselves are stand-ins here."""

import hashlib
import json
import pathlib
import shutil
import subprocess
import tarfile
import tempfile
import unittest

PROJECT = pathlib.Path(__file__).resolve().parents[2]

MAKE_DEB = """#!/bin/sh
touch "$1/quiverly_$(packaging/version)_all.deb"
"""
MAKE_TARBALL = """#!/bin/sh
# That this is called in a copy of the sources is told by what the copy lacks.
[ ! -e "$(dirname "$0")/../../.git" ] || exit 1
mkdir -p "$1/made/bin" && cp /usr/bin/env "$1/made/bin/quiverly"
tar --create --xz --file "$1/quiverly-1.2.3-linux-any.tar.xz" --directory "$1" made && rm -r "$1/made"
"""
# Neither is what this machine happens to have installed of interest.
DEBIAN_TOOLS = {
    "dpkg-buildpackage": "#!/bin/sh\n",
    "dpkg-checkbuilddeps": '#!/bin/sh\n[ -z "$LACKING" ] && exit\n'
    'echo "dpkg-checkbuilddeps: error: Unmet build dependencies: $LACKING" >&2; exit 1\n',
}
CHANGELOG = """# Changelog

## Unreleased

- It flies.

## 1.2.3 (2026-01-02)

### Fixed

- It no longer falls.

## 1.2.2 (2026-01-01)

- It walks.
"""


class ReleaseTest(unittest.TestCase):
    def setUp(self) -> None:
        folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        self.project, self.output, self.tools = folder / "project", folder / "output", folder / "tools"
        for name in ("scripts/release", "scripts/step", "packaging/version", "packaging/sbom"):
            self.write(name, (PROJECT / name).read_text(), 0o755)
        self.write("packaging/linux/make-deb", MAKE_DEB, 0o755)
        self.write("packaging/linux/make-tarball", MAKE_TARBALL, 0o755)
        self.write("CMakeLists.txt", "project(Quiverly\n  VERSION 1.2.3\n)\n")
        self.write("CHANGELOG.md", CHANGELOG)
        self.write(".gitignore", "/build/\n")
        self.tools.mkdir()
        for program in pathlib.Path("/usr/bin").iterdir():
            if program.name not in DEBIAN_TOOLS:
                (self.tools / program.name).symlink_to(program)
        for name, text in DEBIAN_TOOLS.items():
            (self.tools / name).write_text(text)
            (self.tools / name).chmod(0o755)
        self.git("init", "--quiet")
        self.commit()

    def write(self, name: str, text: str, mode: int = 0o644) -> None:
        file = self.project / name
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_text(text)
        file.chmod(mode)

    def git(self, *words: str) -> None:
        user = ["-c", "user.name=Nobody", "-c", "user.email=nobody@example.org", "-c", "commit.gpgSign=false"]
        subprocess.run(["git", *user, *words], cwd=self.project, check=True, capture_output=True, timeout=60)

    def commit(self) -> None:
        self.git("add", "--all")
        self.git("commit", "--quiet", "--message=A state")

    def release(self, *words: str | pathlib.Path, lacking: str = "") -> subprocess.CompletedProcess:
        return subprocess.run(
            [self.project / "scripts/release", *(words or [self.output])],
            env={"PATH": str(self.tools), "LACKING": lacking},
            capture_output=True,
            text=True,
            timeout=60,
        )

    def assert_refused(self, result: subprocess.CompletedProcess, why: str) -> None:
        self.assertEqual((result.returncode, result.stdout), (1, ""))
        self.assertIn(why, result.stderr)

    def test_it_makes_everything_and_says_where_it_is(self) -> None:
        result = self.release()
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        made = sorted(file.name for file in self.output.iterdir())
        self.assertEqual(
            made,
            [
                "SHA256SUMS",
                "quiverly-1.2.3-linux-any.tar.xz",
                "quiverly-1.2.3.cdx.json",
                "quiverly-1.2.3.md",
                "quiverly-1.2.3.tar.xz",
                "quiverly_1.2.3_all.deb",
            ],
        )
        self.assertIn(f"Quiverly 1.2.3 is in {self.output}:", result.stdout)
        for name in made:
            self.assertIn(f"\n{name}\n", result.stdout)

    def test_the_checksums_are_of_all_that_was_made(self) -> None:
        self.release()
        sums = dict(reversed(line.split("  ")) for line in (self.output / "SHA256SUMS").read_text().splitlines())
        for file in self.output.iterdir():
            if file.name != "SHA256SUMS":
                self.assertEqual(sums.pop(file.name), hashlib.sha256(file.read_bytes()).hexdigest(), file.name)
        self.assertEqual(sums, {})

    def test_the_sources_are_those_of_the_last_commit(self) -> None:
        self.write("build/ignored", "")
        self.release()
        with tarfile.open(self.output / "quiverly-1.2.3.tar.xz") as archive:
            names = {name.removeprefix("quiverly-1.2.3/") for name in archive.getnames() if name != "quiverly-1.2.3"}
        self.assertLess({"CMakeLists.txt", "CHANGELOG.md", "scripts/release"}, names)
        self.assertNotIn("build/ignored", names)

    def test_the_same_commit_gives_the_same_sources_and_list(self) -> None:
        again = self.output.with_name("again")
        self.release()
        self.release(again)
        for name in ("quiverly-1.2.3.tar.xz", "quiverly-1.2.3.cdx.json", "quiverly-1.2.3.md"):
            self.assertEqual((self.output / name).read_bytes(), (again / name).read_bytes(), name)

    def test_the_text_is_that_of_the_version(self) -> None:
        self.release()
        self.assertEqual((self.output / "quiverly-1.2.3.md").read_text(), "### Fixed\n\n- It no longer falls.\n")

    def test_the_text_of_a_draft_is_what_is_unreleased(self) -> None:
        result = self.release("--draft", self.output)
        self.assertEqual((self.output / "quiverly-1.2.3.md").read_text(), "- It flies.\n")
        self.assertIn("Quiverly 1.2.3, a draft, is in", result.stdout)

    def test_the_list_names_what_is_compiled_in_and_what_is_loaded(self) -> None:
        self.release()
        document = json.loads((self.output / "quiverly-1.2.3.cdx.json").read_text())
        self.assertEqual(document["bomFormat"], "CycloneDX")
        self.assertEqual(document["metadata"]["component"]["version"], "1.2.3")
        parts = {part["bom-ref"]: part for part in document["components"]}
        self.assertLess({"CLI11", "tl-expected", "fast_float", "Quicksand Bold", "libc.so.6"}, set(parts))
        self.assertEqual(set(document["dependencies"][0]["dependsOn"]), set(parts))
        if shutil.which("dpkg-query"):
            self.assertRegex(parts["libc.so.6"]["purl"], r"^pkg:deb/debian/libc6@\d")

    def test_without_debians_tools_it_says_what_it_leaves_out(self) -> None:
        (self.tools / "dpkg-buildpackage").unlink()
        result = self.release()
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertIn("No Debian packages: dpkg-buildpackage is not installed here", result.stdout)
        self.assertEqual(list(self.output.glob("*.deb")), [])

    def test_packages_that_are_missing_are_named(self) -> None:
        self.assert_refused(self.release(lacking="debhelper-compat (= 13)"), "Unmet build dependencies: debhelper")

    def test_a_version_that_the_changelog_does_not_know_is_refused(self) -> None:
        self.write("CMakeLists.txt", "project(Quiverly\n  VERSION 1.2.4\n)\n")
        self.commit()
        self.assert_refused(self.release(), 'CHANGELOG.md says nothing under "## 1.2.4 (DATE)"')

    def test_changes_that_are_not_committed_are_refused(self) -> None:
        self.write("src/new.cpp", "")
        self.assert_refused(self.release(), "differ from the last commit")

    def test_a_folder_that_holds_something_is_refused(self) -> None:
        self.output.mkdir()
        (self.output / "old.deb").touch()
        self.assert_refused(self.release(), f'there is something in "{self.output}" already')

    def test_a_folder_that_is_no_checkout_is_refused(self) -> None:
        shutil.rmtree(self.project / ".git")
        self.assert_refused(self.release(), "this is not a checkout")

    def test_a_failed_step_ends_it(self) -> None:
        self.write("packaging/linux/make-deb", "#!/bin/sh\necho no compiler; exit 3\n", 0o755)
        self.commit()
        result = self.release()
        self.assertEqual(result.returncode, 3)
        self.assertIn("no compiler", result.stderr)
        self.assertFalse((self.output / "SHA256SUMS").exists())

    def test_anything_but_a_folder_is_answered_with_how_to_use_it(self) -> None:
        for words in ([""], ["a", "b"], ["--draft"]):
            with self.subTest(words=words):
                result = self.release(*words)
                self.assertIn(result.returncode, (1, 2))
                self.assertEqual(result.stdout, "")
                self.assertNotEqual(result.stderr, "")


if __name__ == "__main__":
    unittest.main()

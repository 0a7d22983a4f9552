"""Quiverly.app and what surrounds it, as far as they can be known without a Mac.

The project is configured for a Mac in the folder named first on the command line, and the resources of the bundle are
built there. Nothing is compiled. Tools that only a Mac has are replaced by ones that write down how they were called, or
that answer as a Mac's would.
"""

import json
import os
import pathlib
import plistlib
import re
import shutil
import struct
import subprocess
import sys
import tempfile
import unittest

SOURCE = pathlib.Path(__file__).resolve().parents[3]
CROSS = pathlib.Path(__file__).resolve().parent / "cross"
PACKAGING = SOURCE / "packaging" / "macos"
BUILD = pathlib.Path(sys.argv.pop(1))
CONTENTS = BUILD / "bin" / "Quiverly.app" / "Contents"

PROJECT = (SOURCE / "CMakeLists.txt").read_text()
VERSION = re.search(r"\bVERSION (\d+\.\d+\.\d+)", PROJECT).group(1)
IDENTIFIER = re.search(r'set\(QUIVERLY_IDENTIFIER "(.+)"\)', PROJECT).group(1)


def put_tool(folder, name, *commands):
    """A shell script of that name in the folder."""
    folder.mkdir(exist_ok=True)
    file = folder / name
    file.write_text("\n".join(("#!/bin/sh", *commands)) + "\n")
    file.chmod(0o755)


def with_tools(folder, **variables):
    """The environment in which the folder's tools are found first."""
    return dict(os.environ, PATH=f"{folder}:{os.environ['PATH']}", **variables)


def setUpModule():
    tools = BUILD.with_name(BUILD.name + "-tools")
    put_tool(tools, "brew", 'echo "Homebrew asked for: $*"')
    subprocess.run(
        ["cmake", "-S", SOURCE, "-B", BUILD, "-G", "Ninja", "--fresh", "-Wno-dev",
         "-D", "CMAKE_EXPORT_COMPILE_COMMANDS=ON", "-D", "BUILD_TESTING=ON",
         "-D", f"CMAKE_TOOLCHAIN_FILE={CROSS / 'toolchain.cmake'}",
         "-D", f"CMAKE_PROJECT_TOP_LEVEL_INCLUDES={CROSS / 'packages.cmake'}"],
        env=with_tools(tools), check=True, stdout=subprocess.DEVNULL)
    targets = subprocess.run(["ninja", "-C", BUILD, "-t", "targets", "all"],
                             check=True, capture_output=True, text=True).stdout
    resources = re.findall(r"^(.+/Contents/Resources/.+): COPY_OSX_CONTENT$", targets, re.MULTILINE)
    subprocess.run(["ninja", "-C", BUILD, *resources], check=True, stdout=subprocess.DEVNULL)


def png_size(data):
    """Width and height of a PNG picture."""
    assert data[:8] == b"\x89PNG\r\n\x1a\n" and data[12:16] == b"IHDR"
    return struct.unpack(">II", data[16:24])


class Bundle(unittest.TestCase):
    def test_info_plist_says_what_the_application_is(self):
        self.assertEqual(plistlib.loads((CONTENTS / "Info.plist").read_bytes()), {
            "CFBundleDevelopmentRegion": "en",
            "CFBundleDisplayName": "Quiverly",
            "CFBundleExecutable": "Quiverly",
            "CFBundleIconFile": "AppIcon",
            "CFBundleIdentifier": IDENTIFIER,
            "CFBundleInfoDictionaryVersion": "6.0",
            "CFBundleName": "Quiverly",
            "CFBundlePackageType": "APPL",
            "CFBundleShortVersionString": VERSION,
            "CFBundleVersion": VERSION,
            "LSApplicationCategoryType": "public.app-category.entertainment",
            "LSMinimumSystemVersion": "14.0",
            "NSHighResolutionCapable": True,
            "NSPrincipalClass": "NSApplication",
        })

    def test_resources_are_the_clips_and_the_pictures_and_nothing_else(self):
        clips = {clip.relative_to(SOURCE / "resources") for clip in (SOURCE / "resources").glob("audio/*/*.mp3")}
        resources = CONTENTS / "Resources"
        found = {file.relative_to(resources) for file in resources.rglob("*") if file.is_file()}
        self.assertTrue(clips)
        self.assertEqual(found, clips | {pathlib.Path("logo.png"), pathlib.Path("AppIcon.icns")})
        for clip in clips:
            self.assertEqual((resources / clip).read_bytes(), (SOURCE / "resources" / clip).read_bytes())

    def test_icon_has_every_size_the_largest_first(self):
        data = (CONTENTS / "Resources" / "AppIcon.icns").read_bytes()
        magic, length = struct.unpack(">4sI", data[:8])
        self.assertEqual((magic, length), (b"icns", len(data)))
        pictures, offset = [], 8
        while offset < length:
            kind, size = struct.unpack(">4sI", data[offset:offset + 8])
            pictures.append((kind.decode(), png_size(data[offset + 8:offset + size])))
            offset += size
        self.assertEqual(offset, length)
        self.assertEqual(pictures, [
            ("ic10", (1024, 1024)),
            ("ic09", (512, 512)), ("ic14", (512, 512)),
            ("ic08", (256, 256)), ("ic13", (256, 256)),
            ("ic07", (128, 128)),
            ("ic12", (64, 64)),
            ("ic11", (32, 32)),
        ])

    def test_logo_is_a_square_picture(self):
        width, height = png_size((CONTENTS / "Resources" / "logo.png").read_bytes())
        self.assertEqual(width, height)

    def test_everything_is_compiled_for_apple_silicon_and_the_oldest_system(self):
        commands = json.loads((BUILD / "compile_commands.json").read_text())
        macos = [command for command in commands if "/src/platform/macos/" in command["file"]]
        self.assertEqual({pathlib.Path(command["file"]).name for command in macos},
                         {file.name for file in (SOURCE / "src" / "platform" / "macos").glob("*.[cm][pm]*")})
        for command in commands:
            words = command["command"].split()
            self.assertIn("arm64", words)
            self.assertIn("-mmacosx-version-min=14.0", words)
            self.assertIn("-ffp-contract=off", words)
            self.assertNotIn("/linux/", command["file"])
        for command in macos:
            self.assertEqual("-fobjc-arc" in command["command"].split(), command["file"].endswith(".mm"))


    def test_icu_is_the_one_of_homebrew(self):
        cache = (BUILD / "CMakeCache.txt").read_text()
        self.assertIn("\nICU_LOOKED_FOR_IN:INTERNAL=Homebrew asked for: --prefix icu4c\n", cache)


class Entitlements(unittest.TestCase):
    def test_none_is_asked_for(self):
        text = (PACKAGING / "Quiverly.entitlements").read_bytes()
        self.assertEqual(plistlib.loads(text), {})
        self.assertNotIn(b"<!--", text, "the system cannot read entitlements with comments")


class Cask(unittest.TestCase):
    def setUp(self):
        self.cask = (BUILD / "packaging" / "macos" / "quiverly.rb").read_text()

    def test_it_names_this_version_and_these_settings(self):
        self.assertIn(f'version "{VERSION}"', self.cask)
        self.assertIn(f"{IDENTIFIER}.plist", self.cask)
        self.assertIn("arch: :arm64", self.cask)
        self.assertNotRegex(self.cask, r"@|\$\{")

    def test_it_is_a_draft_and_marks_what_is_open(self):
        self.assertRegex(self.cask, "^# DRAFT ")
        for line in self.cask.splitlines():
            self.assertEqual("example.org" in line or ":no_check" in line, "# open: " in line, line)

    def test_description_is_one_that_homebrew_takes(self):
        description = re.search('desc "(.*)"', self.cask).group(1)
        self.assertTrue(0 < len(description) < 80)
        self.assertNotRegex(description, r"^(An?|The|Quiverly)\b|\.$")


# What otool -L and otool -l say of a program.
LIBRARIES = """{file}:
\t@executable_path/../Frameworks/QtCore.framework/Versions/A/QtCore (compatibility version 6.0.0, current version 6.8.2)
\t/System/Library/Frameworks/AppKit.framework/Versions/C/AppKit (compatibility version 45.0.0, current version 2487.0.0)
\t/usr/lib/libSystem.B.dylib (compatibility version 1.0.0, current version 1345.0.0)
"""
COMMANDS = """{file}:
Load command 9
      cmd LC_BUILD_VERSION
  cmdsize 32
 platform 1
    minos 14.0
      sdk 15.2
   ntools 1
     tool 3
  version 1115.7.3
Load command 19
          cmd LC_RPATH
      cmdsize 48
         path @executable_path/../Frameworks (offset 12)
"""


class Scripts(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.application = self.folder / "Quiverly.app"
        for library in ("Frameworks/QtCore.framework/QtCore", "Frameworks/libpcre.dylib", "PlugIns/styles/libmac.dylib",
                        "MacOS/Quiverly"):
            file = self.application / "Contents" / library
            file.parent.mkdir(parents=True, exist_ok=True)
            file.write_bytes(b"\xcf\xfa\xed\xfe")
        (self.application / "Contents/MacOS/notes.txt").write_text("not code")
        self.describe("libpcre.dylib")

    def describe(self, name, libraries=LIBRARIES, commands=COMMANDS):
        """Has otool say that of the file of that name, and what is in order of every other."""
        tools = self.folder / "tools"
        for kind, text in (("L", LIBRARIES), ("l", COMMANDS), (f"L-{name}", libraries), (f"l-{name}", commands)):
            tools.mkdir(exist_ok=True)
            (tools / f"otool{kind}.txt").write_text(text)
        put_tool(tools, "otool", 'of=${0%/*}/otool${1#-}', '[ ! -e "$of-${2##*/}.txt" ] || of=$of-${2##*/}',
                 'cat "$of.txt"')
        put_tool(tools, "plutil", "echo 14.0")

    def run_script(self, name, *arguments, failing=None, **answers):
        """The calls that the script makes of tools that only a Mac has, and its exit status."""
        tools = self.folder / "tools"
        for tool in ("brew", "cmake", "codesign", "ctest", "ditto", "hdiutil", "install_name_tool", "macdeployqt", "spctl",
                     "xcrun"):
            put_tool(tools, tool,
                     '{ printf %s "${0##*/}"; printf " %s" "$@"; '
                     'echo "${HOMEBREW_NO_INSTALL_UPGRADE:+ without upgrades}"; } >>"$CALLS"',
                     'for word; do [ -h "$word/Applications" ] && '
                     '{ readlink "$word/Applications"; ls "$word"; } >>"$CALLS"; done',
                     f"echo '{answers.get(tool, '')}'",
                     f"exit {int(tool == failing)}")
        put_tool(tools, "uname", "echo Darwin")
        calls = self.folder / "calls"
        calls.write_text("")
        script = subprocess.run([PACKAGING / name, *map(str, arguments)], env=with_tools(tools, CALLS=str(calls)),
                                capture_output=True, text=True, check=False)
        self.said = script.stderr
        return calls.read_text().replace(str(self.folder) + "/", "").splitlines(), script.returncode

    def test_each_says_that_it_has_not_been_run_on_a_mac(self):
        for name in ("sign", "check-bundle", "make-dmg", "notarize", "quiverly.rb.in"):
            self.assertRegex((PACKAGING / name).read_text().replace("\n# ", " "), "Not yet run on a Mac")

    def test_called_wrongly_they_touch_nothing(self):
        for name in ("sign", "check-bundle", "make-dmg", "notarize", "make-icns"):
            self.assertEqual(self.run_script(name), ([], 2))

    def test_signing_for_others_hardens_from_the_inside_out(self):
        calls, status = self.run_script("sign", self.application, "Developer ID Application: A (T)")
        self.assertEqual(status, 0)
        self.assertEqual(calls[0], "macdeployqt Quiverly.app -always-overwrite")
        self.assertEqual(len(calls), 6)
        signing = "codesign --force --sign Developer ID Application: A (T) --options runtime --timestamp "
        self.assertEqual(sorted(calls[1:4]), [signing + "Quiverly.app/Contents/" + library for library in (
            "Frameworks/QtCore.framework", "Frameworks/libpcre.dylib", "PlugIns/styles/libmac.dylib")])
        self.assertEqual(calls[4], f"{signing}--entitlements {PACKAGING}/Quiverly.entitlements Quiverly.app")
        self.assertEqual(calls[5], "codesign --verify --deep --strict --verbose=2 Quiverly.app")

    def test_signing_for_this_mac_asks_for_no_hardened_runtime(self):
        calls, status = self.run_script("sign", self.application)
        self.assertEqual(status, 0)
        self.assertTrue(all("runtime" not in call for call in calls))
        self.assertTrue(calls[-2].startswith("codesign --force --sign - --entitlements "))

    def test_what_macdeployqt_calls_an_error_is_one(self):
        for answers in ({"macdeployqt": "ERROR: no file at /opt/homebrew/lib/QtSvg"}, {"failing": "macdeployqt"}):
            calls, status = self.run_script("sign", self.application, **answers)
            self.assertEqual((len(calls), status), (1, 1))
            self.assertIn("macdeployqt reported errors", self.said)
        self.assertEqual(self.run_script("sign", self.application, macdeployqt="WARNING: no plugin")[1], 0)

    def test_folders_of_libraries_of_this_mac_are_taken_out_before_the_check(self):
        rpath = COMMANDS.replace("@executable_path/../Frameworks", "/opt/homebrew/lib with spaces")
        self.describe("Quiverly", commands=COMMANDS + rpath)
        calls, status = self.run_script("sign", self.application)
        self.assertEqual(calls[1], "install_name_tool -delete_rpath /opt/homebrew/lib with spaces "
                         "Quiverly.app/Contents/MacOS/Quiverly")
        self.assertEqual((len(calls), status), (2, 1))  # it is still there
        self.assertIn("MacOS/Quiverly looks for libraries in /opt/homebrew/lib with spaces", self.said)

    def test_a_bundle_that_needs_nothing_but_the_system_passes(self):
        self.assertEqual(self.run_script("check-bundle", self.application), ([], 0))
        self.assertEqual(self.said, "")

    def test_a_library_outside_the_bundle_and_the_system_does_not_pass(self):
        for outside in ("/opt/homebrew/opt/pcre2/lib/libpcre2-16.0.dylib", "/usr/local/lib/a b.dylib", "libz.dylib"):
            self.describe("libmac.dylib", LIBRARIES + f"\t{outside} (compatibility version 1.0.0, current version 1.0.0)\n")
            self.assertEqual(self.run_script("check-bundle", self.application), ([], 1))
            self.assertIn(f"PlugIns/styles/libmac.dylib needs {outside}\n", self.said)

    def test_a_library_for_a_newer_macos_than_claimed_does_not_pass(self):
        for version, status in (("13.5", 0), ("14.0", 0), ("14.0.0", 0), ("14.0.1", 1), ("14.1", 1), ("26.0", 1)):
            self.describe("QtCore", commands=COMMANDS.replace("14.0", version))
            self.assertEqual(self.run_script("check-bundle", self.application), ([], status), version)
            self.assertEqual(f"needs macOS {version}" in self.said, bool(status))
        old = "      cmd LC_VERSION_MIN_MACOSX\n  cmdsize 16\n  version 15.0\n      sdk 15.2\n"
        self.describe("QtCore", commands=old)
        self.assertEqual(self.run_script("check-bundle", self.application)[1], 1)

    def test_code_that_says_nothing_and_a_bundle_without_code_do_not_pass(self):
        self.describe("libpcre.dylib", commands="")
        self.assertEqual(self.run_script("check-bundle", self.application)[1], 1)
        self.assertIn("Frameworks/libpcre.dylib does not say for which macOS it is", self.said)
        for file in (self.application / "Contents").rglob("*"):
            if file.is_file():
                file.unlink()
        self.assertEqual(self.run_script("check-bundle", self.application)[1], 1)
        self.assertIn("has no code", self.said)

    def test_what_cannot_be_signed_is_not_packed(self):
        calls, status = self.run_script("make-dmg", self.application, "Quiverly.dmg", failing="codesign")
        self.assertNotEqual(status, 0)
        self.assertEqual(len(calls), 1)

    def test_disk_image_holds_the_application_and_the_link_to_drag_it_to(self):
        calls, status = self.run_script("make-dmg", self.application, "Quiverly.dmg", "IDENTITY")
        self.assertEqual(status, 0)
        self.assertRegex(calls[1], "^ditto Quiverly.app .+/Quiverly.app$")
        self.assertRegex(calls[2], "^hdiutil create -volname Quiverly -srcfolder .+ -format UDZO -ov Quiverly.dmg$")
        self.assertEqual(calls[3:5], ["/Applications", "Applications"])
        self.assertEqual(calls[5], "codesign --sign IDENTITY --timestamp Quiverly.dmg")

    def test_notarization_staples_the_image_that_was_accepted(self):
        calls, status = self.run_script("notarize", "Quiverly.dmg", "PROFILE")
        self.assertEqual((calls, status), ([
            "xcrun notarytool submit Quiverly.dmg --keychain-profile PROFILE --wait",
            "xcrun stapler staple Quiverly.dmg", "xcrun stapler validate Quiverly.dmg",
            "spctl --assess --type open --context context:primary-signature --verbose Quiverly.dmg"], 0))
        self.assertEqual(len(self.run_script("notarize", "Quiverly.dmg", "PROFILE", failing="xcrun")[0]), 1)

    def test_notarization_staples_the_application_that_was_accepted_as_an_archive(self):
        calls, status = self.run_script("notarize", self.application, "PROFILE")
        self.assertEqual(status, 0)
        archive = calls[0].split()[-1]
        self.assertEqual(calls, [
            f"ditto -c -k --keepParent Quiverly.app {archive}",
            f"xcrun notarytool submit {archive} --keychain-profile PROFILE --wait",
            "xcrun stapler staple Quiverly.app", "xcrun stapler validate Quiverly.app",
            "spctl --assess --type execute --verbose Quiverly.app"])
        self.assertFalse(pathlib.Path(archive).exists())


class TestsOnAMac(unittest.TestCase):
    """The command ./test, in a copy of what it consists of, with stand-ins for what it calls."""

    LISTED = json.dumps({"tests": [{"name": "one"}]})
    PASSED = '<testsuite><testcase name="one" status="run"/></testsuite>'
    FAILED = '<testsuite><testcase name="one" status="fail"/></testsuite>'

    def run_tests(self, *arguments, results=PASSED, failing=None):
        """The calls that it makes, the last line that it prints, and its exit status."""
        with tempfile.TemporaryDirectory() as name:
            project, tools = pathlib.Path(name, "project"), pathlib.Path(name, "tools")
            shutil.copytree(SOURCE / "scripts", project / "scripts")
            shutil.copy(SOURCE / "test", project)
            note = 'echo "${0##*/} $*${HOMEBREW_NO_INSTALL_UPGRADE:+ without upgrades}" >>"$CALLS"'
            put_tool(tools, "uname", "echo Darwin")
            put_tool(tools, "brew", note)
            put_tool(tools, "cmake", note, f"exit {int(failing == 'cmake')}")
            put_tool(tools, "ctest",
                     f"case \"$*\" in *--show-only*) echo '{self.LISTED}'; exit ;; esac",
                     'file=${*##*--output-junit }', note.replace("$*", "${*%% --output-junit*}"),
                     f"[ -z '{results}' ] || {{ mkdir -p \"${{file%/*}}\"; echo '{results}' >\"$file\"; }}",
                     f"exit {int(failing == 'ctest')}")
            calls = pathlib.Path(name, "calls")
            script = subprocess.run([project / "test", *arguments], env=with_tools(tools, CALLS=str(calls)),
                                    capture_output=True, text=True, check=False)
            return calls.read_text().splitlines(), script.stdout.splitlines()[-1], script.returncode

    def test_every_test_there_is_runs_in_two_presets(self):
        for arguments in ((), ("--full",)):
            calls, last, status = self.run_tests(*arguments)
            self.assertEqual((last, status), ("5 passed, 0 failed, 0 not run", 0))
            self.assertRegex(calls.pop(0), "^brew install .+ without upgrades$")
            self.assertEqual(calls, [
                "cmake --preset dev", "cmake --build --preset dev -- -k 0", "ctest --preset dev",
                "cmake --preset tsan", "cmake --build --preset tsan -- -k 0", "ctest --preset tsan"])

    def test_what_fails_or_cannot_be_counted_is_a_failure(self):
        self.assertEqual(self.run_tests(results=self.FAILED, failing="ctest")[2], 1)
        self.assertEqual(self.run_tests(results="", failing="ctest")[2], 1)
        self.assertEqual(self.run_tests(results="")[2], 1)
        self.assertEqual(self.run_tests(failing="cmake")[2], 1)


if __name__ == "__main__":
    unittest.main()

"""The real drivers of accelerometers, on simulated chips: the recorder in a virtual machine with Debian's own kernel."""

import json
import lzma
import os
import re
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

HERE = Path(__file__).parent
PROGRAMS = Path(os.environ["QUIVERLY_PROGRAMS"])
MODULES = (
    "uhid", "hid-sensor-hub", "hid-sensor-accel-3d", "i2c-dev", "i2c-stub", "kxcjk-1013", "bmc150-accel-i2c", "mxc4005",
    "bmi160_i2c", "st_accel_i2c",
)
PATIENCE = 600  # seconds


def output_of(*command: str | Path, **more: object) -> str:
    return subprocess.run(command, check=True, capture_output=True, text=True, timeout=PATIENCE, **more).stdout


def unpack_kernel(folder: Path) -> tuple[Path, str]:
    """Debian's kernel with its modules, unpacked and not installed: the folder that holds it, and its release."""
    package = re.search(r"^\s*Depends: (linux-image-\S+)", output_of("apt-cache", "depends", "linux-image-amd64"), re.M)
    assert package, "Debian has no linux-image-amd64"
    output_of("apt-get", "download", package[1], cwd=folder)
    output_of("dpkg", "--extract", next(folder.glob("*.deb")), folder / "kernel")
    release = next((folder / "kernel/boot").glob("vmlinuz-*")).name.removeprefix("vmlinuz-")
    output_of("/sbin/depmod", "-b", folder / "kernel", release)
    return folder / "kernel", release


def uncompressed(kernel: Path) -> bytes:
    """The program within the file that boot loaders start; without acceleration it would take long to uncompress."""
    packed = kernel.read_bytes()
    for start in (match.start() for match in re.finditer(rb"\xfd7zXZ\0", packed)):
        try:
            program = lzma.LZMADecompressor().decompress(packed[start:])
        except lzma.LZMAError:
            continue
        if program.startswith(b"\x7fELF"):
            return program
    raise ValueError(f"no kernel in {kernel}")


def add_program(root: Path, program: Path) -> None:
    """Copies a program and the libraries that it loads."""
    (root / "bin").mkdir(exist_ok=True)
    shutil.copy(program, root / "bin")
    for library in re.findall(r"(?:=> |^\s+)(/\S+) \(0x", output_of("ldd", program), re.M):
        place = root / library.lstrip("/")
        place.parent.mkdir(parents=True, exist_ok=True)
        shutil.copy(library, place)


def add_modules(root: Path, kernel: Path, release: str) -> None:
    """Copies what the guest loads and what that depends on."""
    needed = output_of("/sbin/modprobe", "-d", kernel, "-S", release, "--show-depends", "-a", *MODULES)
    for file in {Path(line.split()[1]) for line in needed.splitlines() if line.startswith("insmod")}:
        place = root / file.relative_to(kernel)
        place.parent.mkdir(parents=True, exist_ok=True)
        shutil.copy(file, place)
    output_of("/sbin/depmod", "-b", root, release)


def run_guest(folder: Path) -> str:
    """Starts the virtual machine. What it printed."""
    kernel, release = unpack_kernel(folder)
    root = folder / "root"
    root.mkdir()
    for program in ("quiverly-record", "sensor-hub"):
        add_program(root, PROGRAMS / program)
    shutil.copy("/bin/busybox", root / "bin")  # of busybox-static
    add_modules(root, kernel, release)
    shutil.copy(HERE / "guest", root / "init")
    (folder / "vmlinux").write_bytes(uncompressed(kernel / "boot" / f"vmlinuz-{release}"))
    files = "\n".join(str(path.relative_to(root)) for path in [root, *root.rglob("*")])
    with (folder / "initrd").open("wb") as initrd:
        subprocess.run(["cpio", "--create", "--format=newc", "--owner=0:0", "--quiet"], cwd=root, check=True,
                       input=files.encode(), stdout=initrd, timeout=PATIENCE)
    command = [
        "qemu-system-x86_64", "-m", "1024", "-nodefaults", "-display", "none", "-no-reboot",
        "-serial", f"file:{folder}/said", "-kernel", folder / "vmlinux", "-initrd", folder / "initrd",
        "-append", "console=ttyS0 quiet panic=-1 nokaslr mitigations=off",
    ]
    try:
        subprocess.run(command, check=True, stdin=subprocess.DEVNULL, timeout=PATIENCE)
    except subprocess.TimeoutExpired:
        print("The virtual machine did not end.")
    return (folder / "said").read_text(encoding="utf-8", errors="replace").replace("\r", "")


class VirtualMachineTest(unittest.TestCase):
    def test_real_drivers_are_listened_to_or_refused_in_words(self) -> None:
        with tempfile.TemporaryDirectory() as folder:
            said = run_guest(Path(folder))
        print(said)
        parts = re.split(r"^@@ (.+)\n", said, flags=re.M)
        sections = dict(zip(parts[1::2], parts[2::2]))
        self.assertIn("end", sections, "the guest did not come to its end")
        self.assertNotIn("no module", parts[0])

        with self.subTest("no sensor"):
            self.assertIn("Accelerometer device missing on this Mac.", sections["none"])

        for name, driver in {
            "kxcjk1013": "kxcjk1013", "bmc150_accel": "bmc150_accel_i2c", "mxc4005": "mxc4005", "bmi160": "bmi160_i2c",
            "hub": "hid_sensor_accel_3d",
        }.items():
            with self.subTest(driver=driver):
                sensors = json.loads(re.search(r"^\{.*\}$", sections[name], re.M)[0])["sensors"]
                self.assertEqual([sensor["driver"] for sensor in sensors], [driver])
                self.assertTrue(sensors[0]["offered"])
                self.assertGreater(sensors[0]["readings"], 2 * 40)
                self.assertIn(f"driver {driver}", sections[name])
                self.expect_slaps(sections[name], 3)

        with self.subTest("the frequency is set to what the rule says while it listens"):
            for name, value in {"kxcjk1013": 200, "bmc150_accel": 125, "bmi160": 200, "hub": 125}.items():
                self.assertIn(f"now at {value}.000000", sections[name])

        with self.subTest("too slow"):
            self.assertIn("not offered: it is powered up anew for each value", sections["st_accel"])
            self.assertIn("not offered: it gives new values only 5 times a second", sections["amd"])
            for name in ("st_accel", "amd"):
                self.assertIn("Accelerometer device missing on this Mac.", sections[name])
                self.assertIn("exit 1", sections[name])

        with self.subTest("busy"):
            self.assertIn("Code -536870203.", sections["busy"])
            self.expect_slaps(sections["busy"], 2)

        with self.subTest("a hub that has gone mute holds nothing up"):
            seconds = int(re.search(r"ended after (\d+) s", sections["mute"])[1])
            self.assertLess(seconds, 8, "the driver itself waits for ten")
            self.assertIn("exit 0", sections["mute"])

        with self.subTest("what a mute hub answers is no slap"):
            self.expect_slaps(sections["mute and speak"], 2)

        for name in ("delete_device", "uhid destroy"):
            with self.subTest("unplugged", by=name):
                self.assertIn("the sensor has reported nothing for three seconds", sections[name])
                self.assertIn("exit 0", sections[name])
                self.assertIn("Accelerometer device missing on this Mac.", sections[name])

    def expect_slaps(self, text: str, count: int) -> None:
        """The first sample, and then a jump by 0.6 g; going back may count too."""
        self.assertIn("exit 0", text)
        slaps = [float(amplitude) for amplitude in re.findall(r"^slap \d+: (\S+) g$", text, re.M)]
        self.assertGreaterEqual(len(slaps), count)
        self.assertAlmostEqual(slaps[1], 0.6, delta=0.05)


if __name__ == "__main__":
    unittest.main()

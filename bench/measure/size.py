#!/usr/bin/python3 -B
"""How much room the application takes on the disk, installed as its package is, and its peers' packages.

    size.py BUILD --output=FILE

Writes JSON to FILE, in kB.
"""

import argparse
import json
import os
import subprocess
import tempfile
from pathlib import Path

from start import PEERS


def installed(build: Path) -> dict[str, int]:
    with tempfile.TemporaryDirectory(prefix="quiverly-") as folder:
        command = ["cmake", "--install", build, "--prefix", folder, "--strip"]
        subprocess.run(command, check=True, stdout=subprocess.DEVNULL, timeout=120)
        root = Path(folder)
        clips, program = root / "share/quiverly/audio", root / "bin/quiverly"
        return {"all": room(root), "clips": room(clips), "program": room(program)}


def room(*paths: Path) -> int:
    files = (file for path in paths for file in ([path] if path.is_file() else path.rglob("*")))
    return sum(os.lstat(file).st_blocks for file in files) // 2


def package(name: str) -> int | None:
    asked = ["dpkg-query", "--show", "--showformat=${Installed-Size}", name]
    answer = subprocess.run(asked, capture_output=True, text=True)
    return int(answer.stdout) if answer.returncode == 0 and answer.stdout else None


def main() -> None:
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("build", type=Path)
    parser.add_argument("--output", type=Path, required=True)
    options = parser.parse_args()
    peers = {name: package(name) for name in PEERS}
    options.output.write_text(json.dumps({"Quiverly": installed(options.build), "peers": peers}))


if __name__ == "__main__":
    main()

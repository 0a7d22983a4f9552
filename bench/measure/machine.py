"""What the figures were measured on."""

import os
import platform
import re
import subprocess
from pathlib import Path

PROGRAMS = {"PulseAudio": ["pulseaudio", "--version"], "PipeWire": ["pipewire", "--version"]}


def facts() -> dict[str, str]:
    return {
        "processor": f"{_processor()}, {os.cpu_count()} cores for this system",
        "system": f"{platform.freedesktop_os_release()['PRETTY_NAME']}, Linux {platform.release()}",
        "sound servers": ", ".join(filter(None, (_version(name, command) for name, command in PROGRAMS.items()))),
        "busy before the run": f"{os.getloadavg()[0]:.1f} processes on average in the last minute",
    }


def _processor() -> str:
    found = re.search(r"^model name\s*: (.*)$", Path("/proc/cpuinfo").read_text(), re.MULTILINE)
    return found[1] if found else platform.machine()


def _version(name: str, command: list[str]) -> str:
    try:
        told = subprocess.run(command, capture_output=True, text=True, timeout=10).stdout
    except OSError:
        return ""
    found = re.search(r"\d+\.\d+(\.\d+)?", told)
    return f"{name} {found[0]}" if found else ""

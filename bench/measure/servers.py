"""The sound servers that are installed here."""

import shutil

PROGRAMS = {"PulseAudio": ("pulseaudio",), "PipeWire": ("pipewire", "wireplumber", "pipewire-pulse")}


def installed() -> list[str]:
    return [server for server, programs in PROGRAMS.items() if all(map(shutil.which, programs))]

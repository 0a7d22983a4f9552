"""Plays with SDL_mixer the file that each line of standard input names, in place of the one before."""

import os
import sys

os.environ |= {"PYGAME_HIDE_SUPPORT_PROMPT": "1", "SDL_AUDIODRIVER": "pulseaudio"}
from pygame import mixer  # noqa: E402

mixer.init(48000, channels=2)
print("ready", flush=True)
for line in sys.stdin:
    mixer.stop()
    mixer.Sound(line.rstrip("\n")).play()

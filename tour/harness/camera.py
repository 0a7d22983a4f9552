"""A camera on a desktop, and what is made of its film."""

import signal
import subprocess
from pathlib import Path
from subprocess import STDOUT

from harness.desktop import Desktop
from harness.sound_server import DEVICE
from harness.waiting import wait_until

RATE = 25  # pictures a second
MOST_BYTES = 1_500_000  # of a moving picture, which loads with the page that shows it


class Camera:
    """Films a desktop, and what its sound server's sink plays, without loss, from its beginning until stop()."""

    def __init__(self, desktop: Desktop, file: Path, size: tuple[int, int]) -> None:
        width, height = size
        screen = ["-f", "x11grab", "-framerate", str(RATE), "-video_size", f"{width}x{height}"]
        inputs = [*screen, "-i", desktop.environment["DISPLAY"], "-f", "pulse", "-i", f"{DEVICE}.monitor"]
        lossless = ["-c:v", "libx264", "-preset", "ultrafast", "-qp", "0", "-c:a", "flac"]
        self._process = desktop.start(
            ["ffmpeg", "-nostdin", "-y", *inputs, *lossless, file], stdout=desktop.log("camera"), stderr=STDOUT
        )
        wait_until(lambda: file.exists() and file.stat().st_size > 0, "the camera to film")

    def stop(self) -> None:
        self._process.send_signal(signal.SIGINT)
        self._process.wait(60)


def write_video(film: Path, file: Path) -> None:
    picture = ["-c:v", "libvpx-vp9", "-crf", "34", "-b:v", "0", "-row-mt", "1", "-cpu-used", "4", "-pix_fmt", "yuv420p"]
    _encode(film, [*picture, "-c:a", "libopus", "-b:a", "96k"], file)


def write_moving_picture(film: Path, file: Path) -> None:
    """Writes it as good as it fits into the most bytes."""
    for quality in (80, 65, 50, 35, 20):
        picture = ["-vf", "fps=10,scale=880:-1:flags=lanczos", "-c:v", "libwebp_anim", "-quality", str(quality)]
        _encode(film, ["-an", *picture, "-compression_level", "6", "-loop", "0"], file)
        if file.stat().st_size <= MOST_BYTES:
            return
    raise RuntimeError(f"{file} is larger than {MOST_BYTES} bytes")


def _encode(film: Path, options: list[str], file: Path) -> None:
    command = ["ffmpeg", "-nostdin", "-loglevel", "error", "-y", "-i", film, *options, file]
    subprocess.run(command, check=True, timeout=600)

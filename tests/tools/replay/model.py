"""A second model of the road from a report to a clip: plain Python, sharing nothing with the program.

Model(...).replay(recording) yields the events that quiverly-replay should print, as dictionaries whose keys are in the
order of printing, and then either the totals or Malformed with the number of the line that ends the recording. Where a
clip is drawn by lot, "file" is the set of those that may have been drawn.
"""

import math
import re
import struct
import sys
from pathlib import Path

sys.set_int_max_str_digits(0)  # numbers of any length

BASE = 1_700_000_000 * 10**9  # nanoseconds after 1970
LATEST = 9_000_000_000 * 10**9
DISTANT_PAST = -200_000_000 * 10**9
PAGE = "x-apple.systempreferences:com.apple.preference.security?Privacy_ListenEvent"
PACKS = {"pain": False, "sexy": True, "halo": False, "lizard": True}  # whether it escalates
FAILURES = {
    "no-query": "Could not query AppleSPUHIDDevice.",
    "no-lookup": "No Apple Silicon accelerometer found.",
    "missing": "Accelerometer device missing on this Mac.",
    "no-device": "Failed to create HID device.",
    "denied": "Need Input Monitoring permission (System Settings → Privacy & Security). Code -536870174.",
}
NUMBER = rb"-?[0-9]+(?:\.[0-9]+)?"


class Malformed(Exception):
    """A line that ends the recording."""


def float32(value):
    return struct.unpack("<f", struct.pack("<f", value))[0]


def shortest32(value):
    """The double that the shortest text of a 32-bit float reads as."""
    for digits in range(1, 10):
        read = float(f"{value:.{digits}g}")
        if float32(read) == value:
            return read
    raise AssertionError(value)


def nanoseconds(text):
    whole, _, fraction = text.lstrip(b"-").partition(b".")
    magnitude = int(whole) * 10**9 + int(fraction.ljust(9, b"0"))
    return -magnitude if text.startswith(b"-") else magnitude


def finite(text):
    number = float(text)
    if not math.isfinite(number):
        raise Malformed
    return number


def natural(name):
    """Order of file names that hold ASCII letters, digits and dots."""
    return [(0, int(part), "") if part.isdigit() else (1, 0, part) for part in re.findall(r"\d+|\D", name.lower())]


class Parser:
    """Turns lines into (seconds, calendar reading, action)."""

    def __init__(self):
        self.time = 0
        self.jumps = 0

    def lines(self, recording):
        """Numbered lines without their ends; no line follows the last line feed."""
        pieces = recording.split(b"\n")
        last = pieces.pop()
        lines = [piece[:-1] if piece.endswith(b"\r") else piece for piece in pieces]
        return enumerate(lines + [last] if last else lines, start=1)

    def parse(self, line):
        """None for a line that is skipped."""
        if re.fullmatch(rb"[ \t]*(#.*)?", line, re.DOTALL):
            return None
        words = re.split(rb"[ \t]+", line.strip(b" \t"))
        if len(words) < 2 or not re.fullmatch(rb"[0-9]+(\.[0-9]{1,9})?", words[0]):
            raise Malformed
        time = nanoseconds(words[0])
        if not self.time <= time <= 4_000_000_000 * 10**9:
            raise Malformed
        action = self.action(words[1:])
        if action[0] == "clock":
            self.jumps += action[1]
        calendar = BASE + time + self.jumps
        if not 0 <= calendar <= LATEST:
            raise Malformed
        self.time = time
        return float(words[0]), calendar, action

    def action(self, words):
        text = b" ".join(words)
        if words == [b"-"]:
            return ("report", b"")
        if re.fullmatch(rb"([0-9a-fA-F]{2}){1,256}", text):
            return ("report", bytes.fromhex(text.decode()))
        if text in (b"!start", b"!stop", b"!sound on", b"!sound off", b"!check begin", b"!check end"):
            return tuple(text[1:].decode().split())
        if match := re.fullmatch(rb"!pack (" + "|".join(PACKS).encode() + rb")", text):
            return ("pack", match[1].decode())
        if match := re.fullmatch(rb"!sensor (ok|no-query|no-lookup|missing|no-device|denied)", text):
            return ("sensor", match[1].decode())
        if match := re.fullmatch(rb"!threshold (" + NUMBER + rb")", text):
            return ("threshold", finite(match[1]))
        if match := re.fullmatch(rb"!clock (-?[0-9]+(?:\.[0-9]{1,9})?)", text):
            return ("clock", nanoseconds(match[1]))
        raise Malformed


class Player:
    def __init__(self, resources):
        self.resources = Path(resources)
        self.files = []
        self.times = []
        self.pack = "sexy"

    def load(self, pack):
        self.pack = pack
        self.files = []
        for folder in (self.resources / "audio" / pack, self.resources / pack):
            if folder.is_dir():
                names = [file.name for file in folder.iterdir() if file.is_file()]
                clips = [name for name in names if name.endswith(".mp3") and not name.startswith(".")]
                self.files = [f"{pack}/{name}" for name in sorted(clips, key=natural)]
                return

    def slap(self, now):
        """The clip that answers a slap, or None."""
        if not self.files:
            return None
        if not PACKS[self.pack]:
            return set(self.files)
        self.times.append(now)
        self.times = [time for time in self.times if (now - time) / 1e9 < 300.0]
        count = len(self.files)
        step = int(count * (1 - math.exp(-(float(len(self.times)) - 1) / 8)))
        return self.files[min(count - 1, max(0, step))]

    def preview(self):
        pack = self.pack
        self.load("sexy")
        names = [file.split("/")[1] for file in self.files]
        chosen = None
        if names:
            chosen = next((name for name in names if name == "28.mp3"), None)
            chosen = chosen or next((name for name in names if "28" in name), None)
            chosen = chosen or names[min(len(names) - 1, max(0, len(names) // 5))]
        self.load(pack)
        return chosen and f"sexy/{chosen}"


class Model:
    def __init__(self, resources, pack=None, threshold=None, samples=False):
        self.print_samples = samples
        self.player = Player(resources)
        self.events = []
        self.seconds = 0.0
        self.now = 0
        # settings
        self.pack = pack if pack in PACKS else "sexy"
        self.threshold = 0.12 if threshold is None else threshold
        self.player.load(self.pack)
        # sensor and reader
        self.sensor = "ok"
        self.device_open = False
        self.counter = 0
        # detector
        self.previous = 0.0
        self.baseline = 1.0
        self.last_fire = DISTANT_PAST
        self.detector_threshold = self.threshold
        # engine
        self.phase = "idle"
        self.sound = False
        self.checking = False
        self.saved_threshold = None
        self.ignore_until = DISTANT_PAST
        self.totals = dict(reports=0, samples=0, slaps=0, clips=0)

    def replay(self, recording):
        parser = Parser()
        first = True
        for number, line in parser.lines(recording):
            try:
                parsed = parser.parse(line)
            except Malformed as malformed:
                yield from self.take_events()
                raise Malformed(number) from malformed
            if parsed is None:
                continue
            self.seconds, self.now, action = parsed
            if first and action[0] == "report":
                self.sound = True
                self.do_start()
            first = False
            getattr(self, "do_" + action[0])(*action[1:])
            yield from self.take_events()
        yield dict(event="end", **self.totals)

    def take_events(self):
        events, self.events = self.events, []
        return events

    def event(self, name, **members):
        self.events.append(dict(t=self.seconds, event=name, **members))

    def do_start(self):
        if self.phase == "listening":
            return
        if self.sensor == "ok":
            self.device_open = True
            self.phase = "listening"
            self.event("phase", phase="listening")
        else:
            self.phase = "error"
            self.event("phase", phase="error", message=FAILURES[self.sensor])
            self.event("settings-page", url=PAGE)

    def do_stop(self):
        self.device_open = False
        self.phase = "idle"
        self.event("phase", phase="idle")
        self.leave_check()

    def do_sound(self, value):
        self.sound = value == "on"

    def do_pack(self, pack):
        self.pack = pack
        self.player.load(pack)

    def do_threshold(self, threshold):
        self.threshold = threshold
        self.detector_threshold = threshold

    def do_clock(self, _):
        pass

    def do_sensor(self, sensor):
        self.sensor = sensor

    def do_check(self, step):
        if step == "end":
            self.leave_check()
            self.player.load(self.pack)
            return
        self.sound = False
        self.checking = True
        self.ignore_until = self.now + 2 * 10**9
        self.saved_threshold = self.detector_threshold
        self.detector_threshold = max(self.threshold, 0.22)
        self.player.load("sexy")
        self.do_start()

    def leave_check(self):
        self.checking = False
        if self.saved_threshold is not None:
            self.detector_threshold = self.saved_threshold
            self.saved_threshold = None

    def do_report(self, report):
        if not self.device_open:
            return
        self.totals["reports"] += 1
        self.counter += 1
        if self.counter % 8 != 0 or len(report) < 18:
            return
        x, y, z = (raw / 65536.0 for raw in struct.unpack("<iii", report[6:18]))
        if not 0.2 < math.sqrt((x * x + y * y) + z * z) < 25.0:
            return
        self.totals["samples"] += 1
        if self.print_samples:
            self.event("sample", x=x, y=y, z=z)
        self.detect(x, y, z)

    def detect(self, x, y, z):
        magnitude = math.sqrt((x * x + y * y) + z * z)
        self.baseline = self.baseline * 0.995 + magnitude * 0.005
        score = max(abs(magnitude - self.baseline), abs(magnitude - self.previous))
        self.previous = magnitude
        if score < self.detector_threshold or (self.now - self.last_fire) / 1e9 < 0.55:
            return
        self.last_fire = self.now
        self.handle_slap(score)

    def handle_slap(self, amplitude):
        if self.now < self.ignore_until or (self.checking and amplitude < 0.18):
            return
        self.totals["slaps"] += 1
        self.event("slap", count=self.totals["slaps"], amplitude=amplitude)
        if self.checking:
            self.play(self.player.preview(), max(amplitude, 0.35))
            self.event("check-slap", amplitude=amplitude)
        elif self.sound:
            self.play(self.player.slap(self.now), amplitude)

    def play(self, file, amplitude):
        if file is None:
            return
        volume = 0.45 + 1.2 * amplitude
        self.totals["clips"] += 1
        self.event("clip", file=file, volume=shortest32(float32(min(volume, 1.0))))

"""Random recordings: laptops that rest, are slapped, fall silent, and people who mistype."""

import struct

NOTHING_WRONG = 0.6  # share of the recordings that are left as they are

STEPS = ("0", "0", "0.000000001", "0.001", "0.008", "0.068750000", "0.55", "0.549999999", "0.550000001", "1", "1.45",
         "2", "1.999999999", "30", "299.999999999", "300", "1000000.123456789")
COMMANDS = ("!start", "!start", "!stop", "!sound on", "!sound on", "!sound off", "!pack pain", "!pack sexy",
            "!pack halo", "!pack lizard", "!threshold 0.12", "!threshold 0.5", "!threshold 0", "!threshold -1",
            "!threshold 0.25000", "!threshold 25", "!check begin", "!check end", "!clock 0", "!clock 0.55",
            "!clock -0.55", "!clock 299.45", "!clock -3600", "!clock 0.000000001", "!clock 100000000",
            "!clock -1000000000.5", "!sensor ok", "!sensor ok", "!sensor no-query", "!sensor no-lookup",
            "!sensor missing", "!sensor no-device", "!sensor denied")
RARE_COMMANDS = ("!clock 7300000000", "!clock -1700000000", "!clock 99999999999999999999", "!clock -0",
                 "!threshold 1e5", "!threshold " + "9" * 400, "!threshold 0." + "0" * 400 + "1", "!Start", "!sound",
                 "!pack Pain", "!check begin now", "!sensor broken", "!", "- -", "0g", "123", "start", "00" * 257,
                 "00" * 256, "!clock 0.0000000000")
WRONG_BYTES = (b"\0", b"\r", b"\x7f", b"\x1b", b"\xef\xbb\xbf", b"\xff", b"-", b".", b"!", b"0", b" ", b"\t", b"\n",
               b"#", b"e", b"+", b"x")


def report(x, y, z, length=22):
    return (b"\x5a" * 6 + struct.pack("<iii", x, y, z) + b"\xa5" * length)[:length]


class Writer:
    def __init__(self, random):
        self.random = random
        self.time = 0  # nanoseconds
        self.lines = []
        self.level = 65536
        self.careful = random.random() < NOTHING_WRONG

    def recording(self):
        random = self.random
        if random.random() < 0.5:
            self.time = random.choice((0, 0, 1, 10**9, 3_999_000_000 * 10**9))
        if random.random() < 0.7:
            for command in ("!sound on", "!start"):
                self.write(command)
        for _ in range(random.randint(0, 120)):
            self.advance()
            random.choice((self.reports,) * 6 + (self.command,) * 2 + (self.skipped, self.restart, self.edge))()
        recording = b"".join(self.lines)
        if random.random() < 0.2:
            recording = recording.rstrip(b"\r\n")
        return recording if self.careful else self.spoil(recording)

    def advance(self):
        whole, _, fraction = self.random.choice(STEPS).partition(".")
        self.time += int(whole) * 10**9 + int(fraction.ljust(9, "0"))

    def write(self, what):
        random = self.random
        blanks = lambda least: "".join(random.choice(" \t") for _ in range(random.choice((0, 0, 0, 3)) + least))
        line = blanks(0) + self.written_time() + blanks(1) + what + blanks(0)
        self.lines.append(line.encode() + random.choice((b"\n", b"\n", b"\r\n")))

    def written_time(self):
        whole, fraction = divmod(self.time, 10**9)
        text = str(whole).zfill(self.random.choice((1, 1, 1, 12)))
        digits = f"{fraction:09}"
        digits = self.random.choice((digits, digits.rstrip("0") or self.random.choice(("", "0"))))
        return f"{text}.{digits}" if digits else text

    def reports(self):
        random = self.random
        if random.random() < 0.3:
            self.level = random.choice((65536, 65536, 98304, 32768, 13107, 13108, 1638400, 1638399, 2**31 - 1,
                                        random.randint(-200000, 200000)))
        axes = [random.choice((0, random.randint(-900, 900))) for _ in range(3)]
        axes[random.randrange(3)] += self.level
        axes = [max(-(2**31), min(2**31 - 1, axis)) for axis in axes]
        length = random.choice((18, 22, 22, 22, 22, 17, 0, 256, random.randint(0, 256)))
        for _ in range(random.choice((8, 8, 8, 1, 7, random.randint(1, 40)))):
            digits = report(*axes, length).ljust(length, b"\1").hex()
            self.write(random.choice((digits, digits, digits.upper())) or "-")
            if random.random() < 0.2:
                self.time += 1_000_000

    def command(self):
        rare = not self.careful and self.random.random() < 0.04
        self.write(self.random.choice(RARE_COMMANDS if rare else COMMANDS))

    def restart(self):
        if self.random.random() < 0.5:
            self.write("!sensor " + self.random.choice(("no-query", "no-lookup", "missing", "no-device", "denied")))
        self.write("!stop")
        self.write(self.random.choice(("!start", "!check begin")))
        if self.random.random() < 0.7:
            self.write("!sensor ok")
            self.write("!start")

    def edge(self):
        """Two jolts, or a check and a jolt, just as far apart as matters."""
        if self.random.random() < 0.3:
            self.write("!check begin")
        else:
            self.jolt(65536)
        self.time += self.random.choice((549_999_999, 550_000_000, 1_999_999_999, 2_000_000_000, 299_999_999_999,
                                         300_000_000_000))
        self.jolt(131072)

    def jolt(self, level):
        for _ in range(8):
            self.write(report(0, 0, level).hex())

    def skipped(self):
        self.lines.append(self.random.choice((b"\n", b" \t\n", b"\t\r\n", b"# said \0\r\x7f\xff so\n", b"  #!stop\r\n",
                                              b"#" + b"-" * 70000 + b"\n")))

    def spoil(self, recording):
        random = self.random
        for _ in range(random.choice((1, 1, 1, 4))):
            place = random.randint(0, len(recording))
            if random.random() < 0.7 and b"\n" in recording[place:]:
                place = recording.index(b"\n", place) + random.choice((-1, 0, 1, 1, 2, 3, 8))
            cut = place + random.choice((0, 0, 1, 2, 100))
            recording = recording[:place] + random.choice(WRONG_BYTES) + recording[cut:]
        return recording

"""A private sound server: PulseAudio or, where that is not installed or is not wanted, PipeWire."""

import os
import shutil
import signal
import subprocess
from subprocess import STDOUT

from harness.private_user import PrivateUser
from harness.waiting import wait_until

DEVICE = "test"
WANTED = os.environ.get("QUIVERLY_SOUND_SERVER")  # "pulseaudio" or "pipewire"


def start_sound_server(user: PrivateUser) -> "SoundServer":
    if (WANTED or "pulseaudio") == "pulseaudio" and shutil.which("pulseaudio"):
        return PulseAudio(user)
    return PipeWire(user)


class SoundServer:
    """A sound server whose only device is a sink that plays to the recorder alone."""

    recorder_latency = 5  # ms

    def __init__(self, user: PrivateUser) -> None:
        self.user = user
        self._programs: list[subprocess.Popen[bytes]] = []  # the one that other programs talk to is the last
        self._start()

    def control(self, *command: str) -> str:
        """What the server's control program answers."""
        answer = self._ask("pactl", *command)
        answer.check_returncode()
        return answer.stdout.decode()

    def streams(self) -> int:
        """How many streams there are that play something."""
        return len(self.control("list", "short", "sink-inputs").splitlines())

    def has_client(self, name: str) -> bool:
        """Whether a program of that name is connected."""
        return f'application.name = "{name}"' in self.control("list", "clients")

    def freeze(self) -> None:
        """Makes the server stand still; it does when this returns."""
        self._programs[-1].send_signal(signal.SIGSTOP)
        os.waitid(os.P_PID, self._programs[-1].pid, os.WSTOPPED)

    def thaw(self) -> None:
        self._programs[-1].send_signal(signal.SIGCONT)

    def kill(self) -> None:
        """Ends the server the hard way, as a crash does."""
        for program in reversed(self._programs):
            program.kill()
            program.wait()

    def hurry_recorder(self) -> None:
        """Has the recorder, which is connected, hear the device at once."""

    def _start(self) -> None:
        raise NotImplementedError

    def _launch(self, *command: str, ready: tuple[str, ...]) -> None:
        """Starts a program of the server, and waits until the command `ready` succeeds."""
        log = self.user.log(command[0])
        program = self.user.start(command, stdout=log, stderr=STDOUT)
        self._programs.append(program)

        def answers() -> bool:
            if program.poll() is not None:
                raise RuntimeError(f"{command[0]} ended\n{self.user.logs()}")
            return self._ask(*ready).returncode == 0

        wait_until(answers, command[0])

    def _ask(self, *command: str) -> subprocess.CompletedProcess[bytes]:
        return subprocess.run(command, env=self.user.environment, capture_output=True, check=False)


class PulseAudio(SoundServer):
    def hurry_recorder(self) -> None:
        # Resumed, the device takes up the recorder's short pieces at once, and not after a first one of 2 s.
        self.control("suspend-sink", DEVICE, "1")
        self.control("suspend-sink", DEVICE, "0")

    def _start(self) -> None:
        # Without rewinds, because the recording of a device that rewinds lacks the first milliseconds of each sound.
        device = f"module-null-sink sink_name={DEVICE} rate=48000 channels=2 format=float32le norewinds=1"
        options = ["-n", "--daemonize=no", "--use-pid-file=no", "--exit-idle-time=-1"]
        modules = ["-L", "module-native-protocol-unix", "-L", device]
        self._launch("pulseaudio", *options, *modules, ready=("pactl", "info"))


class PipeWire(SoundServer):
    recorder_latency = 50  # the cycles of the device are no longer than that, and short ones need realtime scheduling

    def _start(self) -> None:
        self._hide_devices()
        self._launch("pipewire", ready=("pw-cli", "info", "0"))
        self._launch("wireplumber", ready=("wpctl", "status"))
        self._launch("pipewire-pulse", ready=("pactl", "info"))
        self.control("load-module", "module-null-sink", f"sink_name={DEVICE}", "rate=48000", "channels=2")
        use_device = ("pactl", "set-default-sink", DEVICE)
        wait_until(lambda: self._ask(*use_device).returncode == 0, "the device to be the default")

    def _hide_devices(self) -> None:
        """Leaves the machine's devices to the user's own server; WirePlumber 0.4 and 0.5 are told in different ways."""
        folder = self.user.configuration / "wireplumber"
        for group, monitors in {"main": ("alsa", "v4l2", "libcamera"), "bluetooth": ("bluez",)}.items():
            file = folder / f"{group}.lua.d" / "60-no-devices.lua"
            file.parent.mkdir(parents=True, exist_ok=True)
            file.write_text("".join(f"{monitor}_monitor.enabled = false\n" for monitor in monitors))
        features = "".join(f"hardware.{name} = disabled " for name in ("audio", "bluetooth", "video-capture"))
        file = folder / "wireplumber.conf.d" / "60-no-devices.conf"
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_text(f"wireplumber.profiles = {{ main = {{ {features}}} }}\n")

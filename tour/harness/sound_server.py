"""A private sound server."""

import os
import signal
import subprocess
from subprocess import STDOUT

from harness.private_user import PrivateUser
from harness.waiting import wait_until

DEVICE = "test"
# Without rewinds, because the recording of a device that rewinds lacks the first milliseconds of each sound.
NULL_SINK = f"module-null-sink sink_name={DEVICE} rate=48000 channels=2 format=float32le norewinds=1"
COMMAND = ["pulseaudio", "-n", "--daemonize=no", "--use-pid-file=no", "--exit-idle-time=-1"]
MODULES = ["-L", "module-native-protocol-unix", "-L", NULL_SINK]


class SoundServer:
    """A sound server whose only device is a sink that plays to the recorder alone."""

    def __init__(self, user: PrivateUser) -> None:
        self.user = user
        self._server = user.start([*COMMAND, *MODULES], stdout=user.log("sound-server"), stderr=STDOUT)
        wait_until(self._answers, "the sound server")

    def control(self, *command: str) -> str:
        """What the server's control program answers."""
        answer = self._ask(*command)
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
        self._server.send_signal(signal.SIGSTOP)
        os.waitid(os.P_PID, self._server.pid, os.WSTOPPED)

    def thaw(self) -> None:
        self._server.send_signal(signal.SIGCONT)

    def kill(self) -> None:
        """Ends the server the hard way, as a crash does."""
        self._server.kill()
        self._server.wait()

    def _answers(self) -> bool:
        if self._server.poll() is not None:
            raise RuntimeError(f"the sound server ended\n{self.user.logs()}")
        return self._ask("info").returncode == 0

    def _ask(self, *command: str) -> subprocess.CompletedProcess[bytes]:
        return subprocess.run(["pactl", *command], env=self.user.environment, capture_output=True, check=False)

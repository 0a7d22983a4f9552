"""The application, used by way of the accessibility bus."""

import re
from dataclasses import dataclass
from pathlib import Path
from subprocess import PIPE, STDOUT
from typing import Sequence

from harness.desktop import Desktop
from harness.processes import parent_of
from harness.accessibility import BUTTON, Accessible, Atspi, children, has_state, programs, visible
from harness.waiting import NeverHappened, wait_until

COUNTER = re.compile(r"Slaps this session: (\d+)  ·  last (-?\d+\.\d{3})g")


@dataclass(frozen=True)
class Counter:
    """The slap counter line."""

    count: int
    amplitude: float  # g, as shown: three decimals


class Application:
    """One run of the application on a desktop, from its first window to its end.

    Controls and texts are found by their accessible names.
    """

    def __init__(self, desktop: Desktop, command: Sequence[str | Path]) -> None:
        """Starts the application, by its name or with a command whose child it is, and waits for its window."""
        self._desktop = desktop
        self.process = desktop.start(
            command, cwd=desktop.home, stdin=PIPE, stdout=desktop.log("application"), stderr=STDOUT
        )
        self._frame = wait_until(self._find_frame, "the window")

    # What the window shows

    def texts(self) -> list[str]:
        """Names of all that shows, from top to bottom."""
        return [name for each in visible(self._frame) if (name := each.get_name())]

    def shows(self, text: str) -> bool:
        return text in self.texts()

    def wait_for(self, text: str) -> None:
        """Waits until the window shows a text."""
        try:
            wait_until(lambda: self.shows(text), f"the text “{text}”")
        except NeverHappened as failure:
            raise NeverHappened(f"{failure}; the window shows {self.texts()}") from None

    def counter(self) -> Counter:
        """The slap counter line; no slap yet when it is absent."""
        for text in self.texts():
            if found := COUNTER.fullmatch(text):
                return Counter(int(found[1]), float(found[2]))
        return Counter(0, 0.0)

    def wait_for_slaps(self, count: int) -> Counter:
        """Waits until the counter has reached `count`."""
        return wait_until(lambda: (seen := self.counter()).count >= count and seen, f"slap {count} in the counter")

    # What the system knows of it

    def threads(self) -> int:
        return self._count("task")

    def descriptors(self) -> int:
        return self._count("fd")

    # What the user does

    def press(self, button: str) -> None:
        self._act(button, BUTTON)

    def choose(self, option: str) -> None:
        self._act(option, Atspi.Role.RADIO_BUTTON)

    def options(self) -> list[str]:
        """What can be chosen, from left to right."""
        return [each.get_name() for each in visible(self._frame) if each.get_role_name() == "radio button"]

    def is_chosen(self, option: str) -> bool:
        return has_state(self._control(option, Atspi.Role.RADIO_BUTTON), Atspi.StateType.CHECKED)

    def sensitivity(self) -> float:
        return float(Atspi.Value.get_current_value(self._control("Sensitivity", Atspi.Role.SLIDER)))

    def set_sensitivity(self, threshold: float) -> None:
        Atspi.Value.set_current_value(self._control("Sensitivity", Atspi.Role.SLIDER), threshold)

    def nudge_sensitivity(self, action: str) -> None:
        """Moves the sensitivity by a step, with the slider's action of that name."""
        slider = self._control("Sensitivity", Atspi.Role.SLIDER)
        names = [Atspi.Action.get_action_name(slider, index) for index in range(Atspi.Action.get_n_actions(slider))]
        Atspi.Action.do_action(slider, names.index(action))

    def type_on_terminal(self, line: str) -> None:
        """Types into the terminal from which the application was started."""
        assert self.process.stdin
        self.process.stdin.write(line.encode() + b"\n")
        self.process.stdin.flush()

    # How it ends

    def close_window(self) -> int:
        """Closes the window, which ends the program, and returns its exit status."""
        self._desktop.close_window("Quiverly")
        return self.process.wait(60)

    def kill(self) -> None:
        """Ends the program as a crash does."""
        self.process.kill()
        self.process.wait()

    def _count(self, what: str) -> int:
        return sum(1 for _ in Path(f"/proc/{self.process.pid}/{what}").iterdir())

    def _find_frame(self) -> Accessible | None:
        if self.process.poll() is not None:
            raise RuntimeError(f"the application ended with status {self.process.returncode}\n{self._desktop.logs()}")
        own = (each for each in programs(self._desktop) if self._is_own(each.get_process_id()))
        windows = (window for program in own for window in children(program))
        return next((window for window in windows if window.get_name() == "Quiverly"), None)

    def _is_own(self, process: int) -> bool:
        return self.process.pid in (process, parent_of(process))

    def _control(self, name: str, role: Atspi.Role) -> Accessible:
        def find() -> Accessible | None:
            same_name = (each for each in visible(self._frame) if each.get_name() == name)
            return next((each for each in same_name if each.get_role() == role), None)

        return wait_until(find, f"the {role.value_nick} “{name}”")

    def _act(self, name: str, role: Atspi.Role) -> None:
        Atspi.Action.do_action(self._control(name, role), 0)

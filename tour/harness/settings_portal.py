"""A stand-in for the settings portal of a desktop, from which programs learn what their user prefers.

Run as a program it answers on the session bus. It reads commands from standard input, a line each, with tabs between
the words, and says on standard output what happened:

    change GROUP KEY VALUE    changes a setting and tells everyone; VALUE in the text form of GVariant
    signal VALUE              sends the signal of a change with VALUE in place of what belongs there
    answer                    answers all that asked so far and were not answered
"""

from __future__ import annotations

import sys
from pathlib import Path
from subprocess import PIPE
from typing import TYPE_CHECKING

from harness.waiting import wait_until

if TYPE_CHECKING:
    from harness.private_user import PrivateUser

INTERFACE = "org.freedesktop.portal.Settings"
NAME, PATH = "org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop"
MODES = ("prompt", "silent", "nonsense")  # how it answers: at once, when told to, or with a text


class SettingsPortal:
    def __init__(self, desktop: PrivateUser, mode: str = "prompt", **appearance: str) -> None:
        """Starts a portal with these settings of the group org.freedesktop.appearance."""
        self._file = desktop.folder / "portal.log"
        self._changes = 0
        folder = Path(__file__).parents[1]
        self._process = desktop.start(
            [sys.executable, "-B", "-m", "harness.settings_portal", mode],
            cwd=folder,
            stdin=PIPE,
            stdout=desktop.log("portal"),
        )
        self._wait_for("ready")
        for key, value in appearance.items():
            self.change(key.replace("_", "-"), value)

    def change(self, key: str, value: str) -> None:
        """Changes a setting of the appearance; `value` in the text form of GVariant, such as "uint32 1"."""
        self._tell("change", "org.freedesktop.appearance", key, value)
        self._changes += 1
        self._wait_for("changed", self._changes)

    def signal(self, value: str) -> None:
        """Sends a change that is malformed."""
        self._tell("signal", value)
        self._wait_for("signalled")

    def answer(self) -> None:
        """Answers what a silent portal was asked."""
        self._tell("answer")

    def wait_for_question(self) -> None:
        self._wait_for("asked")

    def _tell(self, *words: str) -> None:
        assert self._process.stdin
        self._process.stdin.write("\t".join(words).encode() + b"\n")
        self._process.stdin.flush()

    def _wait_for(self, word: str, count: int = 1) -> None:
        def look() -> bool:
            if self._process.poll() is not None:
                raise RuntimeError("the settings portal ended")
            return self._file.read_text().splitlines().count(word) >= count

        wait_until(look, f"the settings portal to say “{word}”")


def serve(mode: str) -> None:
    from gi.repository import Gio, GLib

    kind = "s" if mode == "nonsense" else "a{sa{sv}}"
    description = f"""
    <node><interface name="{INTERFACE}">
      <method name="ReadAll"><arg type="as" direction="in"/><arg type="{kind}" direction="out"/></method>
      <signal name="SettingChanged"><arg type="s"/><arg type="s"/><arg type="v"/></signal>
    </interface></node>"""
    settings: dict[str, dict[str, GLib.Variant]] = {}
    unanswered: list[tuple[list[str], Gio.DBusMethodInvocation]] = []
    bus = Gio.bus_get_sync(Gio.BusType.SESSION)

    def say(word: str) -> None:
        print(word, flush=True)

    def answer_all() -> None:
        while unanswered:
            groups, invocation = unanswered.pop()
            told = "dark" if mode == "nonsense" else {group: settings.get(group, {}) for group in groups}
            invocation.return_value(GLib.Variant(f"({kind})", (told,)))

    def ask(_bus, _sender, _path, _interface, _method, parameters, invocation):  # type: ignore[no-untyped-def]
        unanswered.append((parameters.unpack()[0], invocation))
        say("asked")
        if mode != "silent":
            answer_all()

    def emit(parameters: GLib.Variant) -> None:
        bus.emit_signal(None, PATH, INTERFACE, "SettingChanged", parameters)

    def obey(command: str, words: list[str]) -> None:
        if command == "change":
            group, key, text = words
            value = GLib.Variant.parse(None, text, None, None)
            settings.setdefault(group, {})[key] = value
            emit(GLib.Variant("(ssv)", (group, key, value)))
            say("changed")
        elif command == "signal":
            emit(GLib.Variant.parse(None, words[0], None, None))
            say("signalled")
        elif command == "answer":
            answer_all()

    def read(stream, _condition):  # type: ignore[no-untyped-def]
        line = stream.readline()
        if not line:
            loop.quit()
            return False
        command, *words = line.rstrip("\n").split("\t")
        obey(command, words)
        return True

    bus.register_object(PATH, Gio.DBusNodeInfo.new_for_xml(description).interfaces[0], ask, None, None)
    loop = GLib.MainLoop()
    Gio.bus_own_name_on_connection(
        bus, NAME, Gio.BusNameOwnerFlags.NONE, lambda *_: say("ready"), lambda *_: loop.quit()
    )
    GLib.io_add_watch(sys.stdin, GLib.PRIORITY_DEFAULT, GLib.IOCondition.IN | GLib.IOCondition.HUP, read)
    loop.run()


if __name__ == "__main__":
    serve(sys.argv[1])

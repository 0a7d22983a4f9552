"""The accessibility bus of a desktop."""

import os
from typing import Iterator

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

from harness.desktop import Desktop
from harness.waiting import wait_until

Accessible = Atspi.Accessible

KEYS = {"space": 0x20, "6": 0x36, "Tab": 0xFF09, "Return": 0xFF0D, "Right": 0xFF53}  # key symbols of X

# Older releases of the library call it PUSH_BUTTON.
BUTTON = getattr(Atspi.Role, "BUTTON", None) or Atspi.Role.PUSH_BUTTON


def programs(desktop: Desktop) -> Iterator[Accessible]:
    """The accessible programs on a desktop. The library connects once: one desktop for each process."""
    os.environ.update(desktop.environment)
    registry = Atspi.get_desktop(0)
    registry.set_cache_mask(Atspi.Cache.NONE)
    yield from children(registry)


def children(parent: Accessible) -> Iterator[Accessible]:
    """The children of an object, without those that go away meanwhile."""
    try:
        found = (parent.get_child_at_index(index) for index in range(parent.get_child_count()))
        yield from filter(None, found)
    except GLib.Error:
        return


def visible(root: Accessible) -> Iterator[Accessible]:
    """All that shows below an object, itself included, from top to bottom."""
    if has_state(root, Atspi.StateType.SHOWING):
        yield root
        for child in children(root):
            yield from visible(child)


def has_state(each: Accessible, state: Atspi.StateType) -> bool:
    return each.get_state_set().contains(state)


def press_key(name: str) -> None:
    """Presses and releases one of the KEYS, as the user of the desktop does."""
    Atspi.generate_keyboard_event(KEYS[name], None, Atspi.KeySynthType.SYM)


class NameChanges:
    """The new names of objects whose names change, such as labels whose texts do."""

    def __init__(self, desktop: Desktop) -> None:
        self._names: list[str] = []
        next(programs(desktop), None)  # connects
        self._listener = Atspi.EventListener.new(self._add)
        self._listener.register("object:property-change:accessible-name")

    def wait_for(self, *names: str) -> None:
        """Waits until objects have taken these names, in any order, and forgets all that changed until then."""
        for name in names:
            wait_until(lambda: name in self._received(), f"an object to be renamed to “{name}”")
        self._names.clear()

    def _received(self) -> list[str]:
        while GLib.MainContext.default().iteration(False):
            pass
        return self._names

    def _add(self, event: Atspi.Event) -> None:
        try:
            self._names.append(event.source.get_name())
        except GLib.Error:
            pass  # gone already

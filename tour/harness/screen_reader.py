"""The accessibility bus of a desktop, as a screen reader reads it."""

import os
from typing import Iterator

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

from harness.desktop import Desktop

Accessible = Atspi.Accessible


def programs(desktop: Desktop) -> Iterator[Accessible]:
    """The programs on a desktop that can be read. One desktop a process: the library connects once."""
    os.environ.update(desktop.environment)
    registry = Atspi.get_desktop(0)
    registry.set_cache_mask(Atspi.Cache.NONE)
    yield from children(registry)


def children(parent: Accessible) -> Iterator[Accessible]:
    """The children there are; what goes while it is looked at is left out."""
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


class Announcements:
    """What a screen reader says by itself: the texts of labels as they change, in order."""

    def __init__(self, desktop: Desktop) -> None:
        self._heard: list[str] = []
        next(programs(desktop), None)  # connects
        self._listener = Atspi.EventListener.new(self._hear)
        self._listener.register("object:property-change:accessible-name")

    def heard(self) -> list[str]:
        while GLib.MainContext.default().iteration(False):
            pass
        return self._heard

    def _hear(self, event: Atspi.Event) -> None:
        try:
            self._heard.append(event.source.get_name())
        except GLib.Error:
            pass  # gone already

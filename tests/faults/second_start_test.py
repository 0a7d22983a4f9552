"""A second start, which brings the window of the first to the front."""

import ctypes
import unittest

from harness.waiting import wait_until
from system_case import PROGRAMS, SystemTest

CLIENT_MESSAGE = 33
CHANGE_EVENT_MASK = 1 << 11
SUBSTRUCTURE_NOTIFY = 1 << 19


class Screens(ctypes.Structure):
    _fields_ = [("root", ctypes.POINTER(ctypes.c_uint32)), ("rest", ctypes.c_int), ("index", ctypes.c_int)]


class WindowManagersPost:
    """The messages to a display's window manager."""

    def __init__(self, display: str) -> None:
        self._xcb = ctypes.CDLL("libxcb.so.1")
        for function in (self._xcb.xcb_connect, self._xcb.xcb_get_setup):
            function.restype = ctypes.c_void_p
        self._xcb.xcb_setup_roots_iterator.restype = Screens
        self._xcb.xcb_poll_for_event.restype = ctypes.POINTER(ctypes.c_uint32)
        self._connection = ctypes.c_void_p(self._xcb.xcb_connect(display.encode(), None))
        setup = ctypes.c_void_p(self._xcb.xcb_get_setup(self._connection))
        root = self._xcb.xcb_setup_roots_iterator(setup).root[0]
        mask = (ctypes.c_uint32 * 1)(SUBSTRUCTURE_NOTIFY)
        self._xcb.xcb_change_window_attributes(self._connection, root, CHANGE_EVENT_MASK, mask)
        self._xcb.xcb_flush(self._connection)

    def next(self) -> list[int] | None:
        """The five numbers of a message; None while there is none."""
        while event := self._xcb.xcb_poll_for_event(self._connection):
            if event[0] & 0x7F == CLIENT_MESSAGE:
                return list(event[3:8])
        return None


class SecondStartTest(SystemTest):
    def test_the_window_manager_learns_when_the_user_asked_for_it(self) -> None:
        """It keeps windows back that ask for the front by the time of something that is past."""
        self.start_on_main_view()
        post = WindowManagersPost(self.desktop.environment["DISPLAY"])
        self.desktop.environment["DESKTOP_STARTUP_ID"] = "launcher-1-host-quiverly-0_TIME4711"
        second = self.desktop.start([PROGRAMS / "quiverly"])
        self.assertEqual(second.wait(60), 0)
        application, time = 1, 4711
        wait_until(lambda: post.next() == [application, time, 0, 0, 0], "the window to be asked to the front")


if __name__ == "__main__":
    unittest.main()

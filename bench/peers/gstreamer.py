"""Plays with GStreamer's playbin the file that each line of standard input names, in place of the one before."""

import os
import sys

import gi

gi.require_version("Gst", "1.0")
from gi.repository import GLib, Gst  # noqa: E402

Gst.init(None)
playbin = Gst.ElementFactory.make("playbin")
playbin.set_property("audio-sink", Gst.ElementFactory.make("pulsesink"))


def told(*_: object) -> bool:
    line = os.read(0, 4096).decode()
    if not line:
        loop.quit()
        return False
    playbin.set_state(Gst.State.NULL)
    playbin.set_property("uri", "file://" + line.rstrip("\n"))
    playbin.set_state(Gst.State.PLAYING)
    return True


def ended(*_: object) -> None:
    playbin.set_state(Gst.State.NULL)


loop = GLib.MainLoop()
bus = playbin.get_bus()
bus.add_signal_watch()
bus.connect("message::eos", ended)
GLib.io_add_watch(0, GLib.PRIORITY_DEFAULT, GLib.IOCondition.IN | GLib.IOCondition.HUP, told)
print("ready", flush=True)
loop.run()

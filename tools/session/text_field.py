#!/usr/bin/python3
"""A window with one text field, which says on standard output what it holds and what is being composed in it.

Each change is a line: "text ..." for what has been entered, "composed ..." for what the input method shows at
the cursor and has not entered yet, "key ..." for what the keyboard sends to it, "focus" when keys go to it from now on.
With the argument "password" what is entered is one.
"""
import signal
import sys

import gi

gi.require_version("Gtk", "3.0")
from gi.repository import GLib, Gtk  # noqa: E402


def tell(line):
    sys.stdout.buffer.write(line.encode() + b"\n")
    sys.stdout.buffer.flush()


GLib.unix_signal_add(GLib.PRIORITY_DEFAULT, signal.SIGTERM, Gtk.main_quit)
window = Gtk.Window(title="text field", default_width=300)
field = Gtk.Entry()
if "password" in sys.argv[1:]:
    field.set_visibility(False)
    field.set_input_purpose(Gtk.InputPurpose.PASSWORD)


def tell_key(sign, event):
    tell(f"key {sign}{event.hardware_keycode - 8}")
    return False


field.connect("key-press-event", lambda entry, event: tell_key("+", event))
field.connect("key-release-event", lambda entry, event: tell_key("-", event))
field.connect("changed", lambda entry: tell("text " + entry.get_text()))
field.connect("preedit-changed", lambda entry, text: tell("composed " + text))
# Only from an idle moment on has the input method been told of the focus as well.
field.connect("focus-in-event", lambda *_: GLib.idle_add(tell, "focus") and False)
window.connect("destroy", Gtk.main_quit)
window.add(field)
window.show_all()
window.present()
Gtk.main()

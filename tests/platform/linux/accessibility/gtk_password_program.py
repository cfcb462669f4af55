"""A window with a password field, which has the focus, and a plain one. USR1 focuses the password field,
USR2 the plain one."""
import signal

import gi

gi.require_version("Gtk", "3.0")
from gi.repository import GLib, Gtk

window = Gtk.Window(title="fields")
column = Gtk.Box(orientation=Gtk.Orientation.VERTICAL)
password = Gtk.Entry(visibility=False)
plain = Gtk.Entry()
column.add(password)
column.add(plain)
window.add(column)
for number, field in ((signal.SIGUSR1, password), (signal.SIGUSR2, plain)):
    GLib.unix_signal_add(GLib.PRIORITY_DEFAULT, number, lambda field=field: field.grab_focus() or True)
window.show_all()
Gtk.main()

"""A keyboard with the layouts of argument 2 ("us,ru"), plugged into the compositor at argument 1 for as long as
this runs. Says "plugged" when the compositor has it."""
import os, subprocess, sys

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "../../../support"))
from wayland_client import Client

keymap = subprocess.check_output(["xkbcli", "compile-keymap", "--layout", sys.argv[2]]) + b"\0"
compositor = Client(sys.argv[1])
seat = compositor.bind(b"wl_seat", 1)
manager = compositor.bind(b"zwp_virtual_keyboard_manager_v1", 1)
keyboard = compositor.number()
compositor.send(manager, 0, seat, keyboard)
file = os.memfd_create("keymap")
os.write(file, keymap)
compositor.send(keyboard, 0, 1, len(keymap), files=[file])
compositor.synchronize()
print("plugged", flush=True)
compositor.socket.recv(1)  # until one of them ends

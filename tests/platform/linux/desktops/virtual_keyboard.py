"""A keyboard with the layouts of argument 2 ("us,ru"), plugged into the compositor at argument 1 for as long as
this runs. Says "plugged" when the compositor has it."""
import os, socket, struct, subprocess, sys

keymap = subprocess.check_output(["xkbcli", "compile-keymap", "--layout", sys.argv[2]]) + b"\0"
compositor = socket.socket(socket.AF_UNIX)
compositor.connect(sys.argv[1])
display, registry, callback, seat, manager, keyboard = range(1, 7)  # the objects, in the order of their making
names = {}


def send(target, request, *arguments, files=()):
    body = b""
    for argument in arguments:
        if isinstance(argument, bytes):
            body += struct.pack("=I", len(argument)) + argument.ljust((len(argument) + 3) // 4 * 4, b"\0")
        else:
            body += struct.pack("=I", argument)
    socket.send_fds(compositor, [struct.pack("=IHH", target, request, 8 + len(body)) + body], files)


def synchronize():
    send(display, 0, callback)
    source = compositor.makefile("rb")
    while True:
        sender, event, size = struct.unpack("=IHH", source.read(8))
        body = source.read(size - 8)
        if sender == registry:
            names[body[8:].split(b"\0")[0]] = struct.unpack_from("=I", body)[0]
        assert (sender, event) != (display, 0), body
        if sender == callback:
            return


send(display, 1, registry)
synchronize()
for new, interface in ((seat, b"wl_seat"), (manager, b"zwp_virtual_keyboard_manager_v1")):
    send(registry, 0, names[interface], interface + b"\0", 1, new)
send(manager, 0, seat, keyboard)
file = os.memfd_create("keymap")
os.write(file, keymap)
send(keyboard, 0, 1, len(keymap), files=[file])
synchronize()
print("plugged", flush=True)
compositor.recv(1)  # until one of them ends

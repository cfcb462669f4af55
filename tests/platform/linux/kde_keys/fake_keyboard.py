"""A keyboard plugged into kwin at argument 1 for as long as this runs. Says "plugged" when kwin has it, and types what is
written into the pipe at argument 2: "+42" is pressed, "-42" released, by the kernel's numbers."""
import os, socket, struct, sys

compositor = socket.socket(socket.AF_UNIX)
compositor.connect(sys.argv[1])
display, registry, callback, keyboard = range(1, 5)  # the objects, in the order of their making
names = {}
source = compositor.makefile("rb")


def send(target, request, *arguments):
    body = b""
    for argument in arguments:
        if isinstance(argument, bytes):
            body += struct.pack("=I", len(argument)) + argument.ljust((len(argument) + 3) // 4 * 4, b"\0")
        else:
            body += struct.pack("=I", argument)
    compositor.sendall(struct.pack("=IHH", target, request, 8 + len(body)) + body)


def synchronize(number):
    send(display, 0, number)
    while True:
        sender, event, size = struct.unpack("=IHH", source.read(8))
        body = source.read(size - 8)
        if sender == registry:
            names[body[8:].split(b"\0")[0]] = struct.unpack_from("=I", body)[0]
        assert (sender, event) != (display, 0), body
        if sender == number:
            return


send(display, 1, registry)
synchronize(callback)
interface = b"org_kde_kwin_fake_input"
send(registry, 0, names[interface], interface + b"\0", 4, keyboard)
send(keyboard, 0, b"a test\0", b"its keys\0")
number = keyboard + 1
synchronize(number)
print("plugged", flush=True)
with os.fdopen(os.open(sys.argv[2], os.O_RDWR)) as pipe:
    for line in pipe:
        for key in line.split():
            send(keyboard, 10, int(key[1:]), key[0] == "+")
        number += 1
        synchronize(number)

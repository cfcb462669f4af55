"""A keyboard plugged into kwin at argument 1 for as long as this runs. Says "plugged" when kwin has it, and types what is
written into the pipe at argument 2: "+42" is pressed, "-42" released, by the kernel's numbers."""
import os, sys

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "../../../support"))
from wayland_client import Client

kwin = Client(sys.argv[1])
keyboard = kwin.bind(b"org_kde_kwin_fake_input", 4)
kwin.send(keyboard, 0, b"a test\0", b"its keys\0")
kwin.synchronize()
print("plugged", flush=True)
with os.fdopen(os.open(sys.argv[2], os.O_RDWR)) as pipe:
    for line in pipe:
        for key in line.split():
            kwin.send(keyboard, 10, int(key[1:]), key[0] == "+")
        kwin.synchronize()

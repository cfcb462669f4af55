"""A client of a Wayland compositor, as far as a played keyboard needs one: requests by number, and waiting until the
compositor has dealt with them."""
import socket, struct

DISPLAY, REGISTRY = 1, 2


class Client:
    def __init__(self, path):
        self.socket = socket.socket(socket.AF_UNIX)
        self.socket.connect(path)
        self._source = self.socket.makefile("rb")
        self._names = {}
        self._last = REGISTRY
        self.send(DISPLAY, 1, REGISTRY)
        self.synchronize()

    def number(self):
        """Of a new object; its request has to follow, as numbers leave no gap."""
        self._last += 1
        return self._last

    def send(self, target, request, *arguments, files=()):
        body = b""
        for argument in arguments:
            if isinstance(argument, bytes):
                body += struct.pack("=I", len(argument)) + argument.ljust((len(argument) + 3) // 4 * 4, b"\0")
            else:
                body += struct.pack("=I", argument)
        socket.send_fds(self.socket, [struct.pack("=IHH", target, request, 8 + len(body)) + body], files)

    def bind(self, interface, version):
        number = self.number()
        self.send(REGISTRY, 0, self._names[interface], interface + b"\0", version, number)
        return number

    def synchronize(self):
        callback = self.number()
        self.send(DISPLAY, 0, callback)
        while True:
            sender, event, size = struct.unpack("=IHH", self._source.read(8))
            body = self._source.read(size - 8)
            if sender == REGISTRY:
                self._names[body[8:].split(b"\0")[0]] = struct.unpack_from("=I", body)[0]
            assert (sender, event) != (DISPLAY, 0), body
            if sender == callback:
                return

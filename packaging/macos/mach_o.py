"""Reads what the loader of macOS would read in a program or library: whom it needs, where it looks, since when it runs.

Knows the 64-bit format and the file that holds it for several processors. Every byte is untrusted: what does not fit
raises Damaged. For Python 3.9, which the command line tools of macOS bring.
"""

import collections
import struct

MAGIC, FAT, FAT_64 = 0xFEEDFACF, 0xCAFEBABE, 0xCAFEBABF
RPATH, OLD_MINIMUM, BUILD = 0x8000001C, 0x24, 0x32
NEEDED = {0x0C, 0x20, 0x80000018, 0x8000001F, 0x80000023}  # at once, late, weak, handed on, upward
MACOS = 1

# For one processor; `minimum` is a pair, absent if it is not said.
Image = collections.namedtuple("Image", "needed rpaths minimum")


class Damaged(Exception):
    pass


def images(data):
    """All images in the file's bytes; none if it is no Mach-O file."""
    if len(data) < 8:
        return []
    magic, count = struct.unpack(">II", data[:8])
    if magic not in (FAT, FAT_64):
        return [_image(data)] if struct.unpack("<I", data[:4])[0] == MAGIC else []
    if count > 40:  # Java's classes begin with the same bytes
        return []
    shape = ">5I" if magic == FAT else ">2I2Q2I"
    found = []
    for index in range(count):
        fields = _read(shape, data, 8 + index * struct.calcsize(shape))
        start, length = fields[2], fields[3]
        if start + length > len(data):
            raise Damaged("it ends early")
        found.append(_image(data[start : start + length]))
    return found


def _read(shape, data, at):
    try:
        return struct.unpack_from(shape, data, at)
    except struct.error:
        raise Damaged("it ends early") from None


def _image(data):
    magic, _, _, _, count, _, _, _ = _read("<8I", data, 0)
    if magic != MAGIC:
        raise Damaged("of an unknown kind")
    needed, rpaths, minimum, at = [], [], None, 32
    for _ in range(count):
        command, length = _read("<2I", data, at)
        if length < 8 or at + length > len(data):
            raise Damaged("a load command of impossible length")
        if command in NEEDED:
            needed.append(_text(data, at, length))
        elif command == RPATH:
            rpaths.append(_text(data, at, length))
        elif command == BUILD:
            platform, version = _read("<2I", data, at + 8)
            if platform != MACOS:
                raise Damaged("for another system")
            minimum = _version(version)
        elif command == OLD_MINIMUM:
            minimum = _version(_read("<I", data, at + 8)[0])
        at += length
    return Image(needed, rpaths, minimum)


def _text(data, at, length):
    offset = _read("<I", data, at + 8)[0]
    if not 12 <= offset < length:
        raise Damaged("a path outside of its command")
    return data[at + offset : at + length].split(b"\0")[0].decode("utf-8", "replace")


def _version(number):
    return number >> 16, number >> 8 & 0xFF

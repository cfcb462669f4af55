#!/usr/bin/env python3
"""check_bundle.py [--mend <install_name_tool>] <bundle>: would it start on a Mac that has nothing but it?

Reads every program and library in the bundle: each library that one needs is the system's or in the bundle, no search
path leads out of it, and none asks for a newer system than Info.plist promises. Says all that is wrong, and fails then.
With --mend it first takes out the search paths that lead out: the toolkit's plug-ins bring theirs along.

check_bundle.py --minimum <library>: prints the oldest system that the library runs on.
"""

import os
import pathlib
import plistlib
import subprocess
import sys

import mach_o

# Without it the program cannot open a window; drawing into files does without.
PLUGIN = "Contents/PlugIns/platforms/libqcocoa.dylib"
SYSTEM = ("/usr/lib/", "/System/Library/")


def expand(path, folder, program):
    """The path with the loader's two variables filled in, without links followed; None if it begins with @rpath."""
    for name, place in (("@loader_path", folder), ("@executable_path", program)):
        if path == name or path.startswith(name + "/"):
            return os.path.normpath(str(place) + path[len(name) :])
    return None if path.startswith("@") else os.path.normpath(path)


class Bundle:
    def __init__(self, path):
        self.path = pathlib.Path(os.path.abspath(path))
        information = plistlib.loads((self.path / "Contents/Info.plist").read_bytes())
        self.promised = tuple(int(part) for part in (information["LSMinimumSystemVersion"] + ".0").split(".")[:2])
        self.program = self.path / "Contents/MacOS" / information["CFBundleExecutable"]
        self.faults = []
        self.images = {}
        for folder, _, names in os.walk(self.path):
            for file in sorted(pathlib.Path(folder, name) for name in names):
                if not file.is_symlink():
                    self.read(file)
        if self.program not in self.images:
            self.faults.append(f"{self.program.name}: no program for macOS")

    def read(self, file):
        try:
            images = mach_o.images(file.read_bytes())
        except mach_o.Damaged as damage:
            self.fault(file, f"cannot be read: {damage}")
            return
        if images:
            self.images[file] = images

    def fault(self, file, what):
        self.faults.append(f"{file.relative_to(self.path)}: {what}")

    def holds(self, path):
        return pathlib.Path(path) == self.path or self.path in pathlib.Path(path).parents

    def place(self, path, file):
        return expand(path, file.parent, self.program.parent)

    def leads_out(self, rpath, file):
        place = self.place(rpath, file)
        return place is None or not (self.holds(place) or (place + "/").startswith(SYSTEM))

    def is_found(self, needed, image, file):
        if needed.startswith("@rpath/"):
            own = [(rpath, file) for rpath in image.rpaths]
            of_program = [(rpath, self.program) for each in self.images.get(self.program, []) for rpath in each.rpaths]
            places = [self.place(rpath, of) for rpath, of in own + of_program]
            tried = [os.path.normpath(place + needed[len("@rpath") :]) for place in places if place]
        else:
            tried = [self.place(needed, file)]
        # Where it really lies counts: a link may lead out as well. The system's libraries are in no file.
        return any(
            place.startswith(SYSTEM)
            or (os.path.isfile(place) and self.holds(place) and self.holds_really(place))
            for place in tried
            if place
        )

    def holds_really(self, place):
        return pathlib.Path(os.path.realpath(self.path)) in pathlib.Path(os.path.realpath(place)).parents

    def mend(self, tool):
        for file, images in list(self.images.items()):
            out = {rpath for image in images for rpath in image.rpaths if self.leads_out(rpath, file)}
            for rpath in sorted(out):
                subprocess.run([tool, "-delete_rpath", rpath, str(file)], check=True)
            if out:
                self.read(file)

    def check(self):
        if self.path / PLUGIN not in self.images:
            self.faults.append(f"{PLUGIN} is missing")
        for file, images in self.images.items():
            for image in images:
                for rpath in image.rpaths:
                    if self.leads_out(rpath, file):
                        self.fault(file, f"the search path {rpath} leads out of the bundle")
                for needed in image.needed:
                    if not self.is_found(needed, image, file):
                        self.fault(file, f"needs {needed}, which is not in the bundle")
                if image.minimum is None:
                    self.fault(file, "does not say which system it needs")
                elif image.minimum > self.promised:
                    asked, promised = (".".join(map(str, version)) for version in (image.minimum, self.promised))
                    self.fault(file, f"needs macOS {asked}, and the bundle promises {promised}")
        return self.faults


def main(arguments):
    if len(arguments) == 2 and arguments[0] == "--minimum":
        images = mach_o.images(pathlib.Path(arguments[1]).read_bytes())
        print(".".join(map(str, max(image.minimum for image in images))))
        return None
    tool = arguments[1] if len(arguments) == 3 and arguments[0] == "--mend" else None
    if len(arguments) != (3 if tool else 1):
        return __doc__
    bundle = Bundle(arguments[-1])
    if tool:
        bundle.mend(tool)
    faults = bundle.check()
    if not faults:
        print(f"{bundle.path.name}: {len(bundle.images)} programs and libraries, complete")
    return "\n".join(faults) or None


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))

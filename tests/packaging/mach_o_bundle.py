"""mach_o_bundle.py <packaging/macos> <clang> <ld64.lld> <llvm-install-name-tool>: bundles that start, and ones that do not.

Links real programs and libraries of macOS, as small as they can be, and has the check of the release read them.
"""

import pathlib
import plistlib
import random
import struct
import subprocess
import sys
import tempfile

packaging, clang, linker, name_tool = pathlib.Path(sys.argv[1]), *sys.argv[2:5]
sys.path.insert(0, str(packaging))
import mach_o  # noqa: E402


def run(*command):
    return subprocess.run([str(part) for part in command], capture_output=True, text=True)


class Bundle:
    """Hopsel.app with a program, a framework and a plug-in that needs it."""

    def __init__(self, folder):
        self.folder = pathlib.Path(folder)
        self.path = self.folder / "Hopsel.app"
        self.contents = self.path / "Contents"
        self.framework = self.contents / "Frameworks/Kit.framework/Versions/A/Kit"
        self.plugin = self.contents / "PlugIns/platforms/libqcocoa.dylib"
        self.program = self.contents / "MacOS/Hopsel"
        source = self.folder / "one.c"
        source.write_text("int main(void) { return 0; }\n")
        self.object = self.folder / "one.o"
        done = run(clang, "-target", "arm64-apple-macos13.0", "-c", source, "-o", self.object)
        assert done.returncode == 0, done.stderr
        self.contents.mkdir(parents=True)
        (self.contents / "Info.plist").write_bytes(
            plistlib.dumps({"CFBundleExecutable": "Hopsel", "LSMinimumSystemVersion": "13.0"})
        )
        (self.contents / "Info.txt").write_text("no program")
        self.link(self.framework, "-dylib", "-install_name", "@rpath/Kit.framework/Versions/A/Kit")
        (self.framework.parents[2] / "Kit").symlink_to("Versions/A/Kit")
        self.link_plugin()
        self.link(self.program, "-dylib", self.framework, "-rpath", "@executable_path/../Frameworks")

    def link(self, out, *options, minimum="13.0"):
        out.parent.mkdir(parents=True, exist_ok=True)
        version = ("-platform_version", "macos", minimum, "14.2")
        done = run(linker, "-arch", "arm64", *version, "-o", out, self.object, *options)
        assert done.returncode == 0, done.stderr

    def link_plugin(self, *options, **more):
        self.link(self.plugin, "-dylib", self.framework, *options, **more)

    def needs(self, name):
        """The plug-in needs a library that calls itself so."""
        other = self.folder / "other.dylib"
        self.link(other, "-dylib", "-install_name", name)
        self.link_plugin(other)

    def complaint(self, *options):
        done = run(sys.executable, packaging / "check_bundle.py", *options, self.path)
        assert "Traceback" not in done.stderr, done.stderr
        assert (done.returncode == 0) == (not done.stderr), done
        return done.stderr


def damage_files(bundle):
    """Whatever the bytes are: read, or refused in words."""
    whole = bundle.framework.read_bytes()
    generator = random.Random(1)
    for _ in range(3000):
        data = bytearray(whole[: generator.randrange(len(whole))] if generator.random() < 0.3 else whole)
        for _ in range(generator.randrange(1, 4)):
            if data:
                data[generator.randrange(min(len(data), 1200))] = generator.randrange(256)
        try:
            mach_o.images(bytes(data))
        except mach_o.Damaged:
            pass


with tempfile.TemporaryDirectory() as folder:
    bundle = Bundle(folder)
    assert bundle.complaint() == "", bundle.complaint()
    minimum = run(sys.executable, packaging / "check_bundle.py", "--minimum", bundle.framework)
    assert minimum.stdout == "13.0\n", minimum

    for name, is_fine in {
        "/usr/lib/libSystem.B.dylib": True,
        "/System/Library/Frameworks/AppKit.framework/Versions/C/AppKit": True,
        "@loader_path/../../Frameworks/Kit.framework/Versions/A/Kit": True,
        "@executable_path/../Frameworks/Kit.framework/Kit": True,
        "/opt/toolkit/lib/libpng.dylib": False,
        "/usr/lib/../local/lib/libpng.dylib": False,
        "@loader_path/../../../../opt/libpng.dylib": False,
        "@rpath/libpng.dylib": False,
        "@loader_path/gone.dylib": False,
        "@unknown/libpng.dylib": False,
        "libpng.dylib": False,
    }.items():
        bundle.needs(name)
        said = bundle.complaint()
        assert (said == "") == is_fine, (name, said)
        assert is_fine or f"libqcocoa.dylib: needs {name}," in said, said

    # There, but not with the bundle.
    outside = pathlib.Path(folder, "kept.dylib")
    bundle.link(outside, "-dylib", "-install_name", "@loader_path/link.dylib")
    (bundle.plugin.parent / "link.dylib").symlink_to(outside)
    bundle.link_plugin(outside)
    assert "needs @loader_path/link.dylib" in bundle.complaint()

    for rpath in ("/opt/toolkit/lib", "@loader_path/../../../../lib", folder):
        bundle.link_plugin("-rpath", rpath, "-rpath", "@loader_path/../../lib")
        assert f"the search path {rpath} leads out" in bundle.complaint(), rpath
        assert bundle.complaint("--mend", name_tool) == "", "and can be taken out"
    assert [image.rpaths for image in mach_o.images(bundle.plugin.read_bytes())] == [["@loader_path/../../lib"]]

    bundle.link_plugin(minimum="14.0")
    thin = bundle.plugin.read_bytes()
    assert "needs macOS 14.0, and the bundle promises 13.0" in bundle.complaint()
    fat = struct.pack(">7I", 0xCAFEBABE, 1, 0x0100000C, 0, 4096, len(thin), 12).ljust(4096, b"\0") + thin
    bundle.plugin.write_bytes(fat)
    assert "needs macOS 14.0" in bundle.complaint(), "also in a file for several processors"
    bundle.plugin.write_bytes(fat[:5000])
    assert "libqcocoa.dylib: cannot be read" in bundle.complaint()
    bundle.plugin.write_bytes(bundle.framework.read_bytes()[:200])
    assert "libqcocoa.dylib: cannot be read" in bundle.complaint()
    bundle.link_plugin()
    damage_files(bundle)
    bundle.plugin.unlink()
    assert "libqcocoa.dylib is missing" in bundle.complaint()
    bundle.program.unlink()
    assert "no program for macOS" in bundle.complaint()

"""Boots a kernel of Debian's in a virtual machine whose only program is a test, and judges by what it prints.

    run.py <first process> <test program> <file that it needs>...

There is no system in the machine: its first process runs the test. The kernel is the newest one installed, or one below
HOPSEL_KERNEL_ROOT that a package was unpacked to. No hardware support is needed, so it runs wherever tests run.
"""
import glob
import os
import re
import shutil
import subprocess
import sys
import tempfile

MODULES = ["drivers/input/evdev.ko", "drivers/input/misc/uinput.ko"]


def fail(reason):
    sys.exit(f"keys_machine: {reason}")


def kernel():
    root = os.environ.get("HOPSEL_KERNEL_ROOT", "/")

    def number(image):
        return [int(part) for part in re.findall(r"\d+", os.path.basename(image))]

    for image in sorted(glob.glob(f"{root}/boot/vmlinuz-*"), key=number, reverse=True):
        modules = f"{root}/lib/modules/{os.path.basename(image).removeprefix('vmlinuz-')}/kernel"
        if all(os.path.exists(f"{modules}/{module}") for module in MODULES):
            return image, modules
    return fail("no kernel with evdev and uinput as modules; Debian's package is linux-image-amd64")


def entry(name, content=b"", mode=0o100755):
    """One file of a cpio archive, as the kernel unpacks it."""
    name = name.encode() + b"\0"
    numbers = [0, mode, 0, 0, 1, 0, len(content), 0, 0, 0, 0, len(name), 0]
    head = b"070701" + b"".join(b"%08X" % number for number in numbers) + name
    return head + b"\0" * (-len(head) % 4) + content + b"\0" * (-len(content) % 4)


def archive(init, test, files, modules):
    contents = {"init": init, "test": test}
    for file in files:
        contents[file.lstrip("/")] = file
    for program in [init, test, *files]:
        told = subprocess.run(["ldd", program], capture_output=True, text=True).stdout
        for library in re.findall(r"(/\S+) \(0x", told):
            contents[library.lstrip("/")] = library
    for module in MODULES:
        contents[f"modules/{os.path.basename(module)}"] = f"{modules}/{module}"
    folders = {"dev", "proc", "sys", "run", "tmp"}
    for name in contents:
        while name := os.path.dirname(name):
            folders.add(name)
    packed = b"".join(entry(folder, mode=0o040755) for folder in sorted(folders))
    for name, path in sorted(contents.items()):
        with open(path, "rb") as file:
            packed += entry(name, file.read())
    return packed + entry("TRAILER!!!", mode=0)


def main():
    init, test, *files = sys.argv[1:]
    qemu = shutil.which("qemu-system-x86_64") or fail("no qemu-system-x86_64; its package is qemu-system-x86")
    image, modules = kernel()
    with tempfile.NamedTemporaryFile() as memory:
        memory.write(archive(init, test, files, modules))
        memory.flush()
        machine = [qemu, "-accel", "tcg", "-cpu", "max", "-smp", "1", "-m", "1024", "-nodefaults", "-display", "none",
                   "-no-reboot", "-serial", "stdio", "-kernel", image, "-initrd", memory.name,
                   "-append", "console=ttyS0 quiet panic=-1 i8042.nokbd i8042.noaux no_timer_check"]
        with subprocess.Popen(machine, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE) as running:
            verdict = None
            for line in running.stdout:
                text = line.decode(errors="replace").rstrip()
                print(text, flush=True)
                if found := re.search(r"keys_machine: exit (\d+)", text):
                    verdict = int(found[1])
    if verdict is None:
        fail("the machine went down without a verdict")
    sys.exit(verdict)


main()

"""The button that turns the key helper on, with polkit itself: who is asked, in which words, and what is run.

    run.py <asking_program> <folder of the packaging of the key helper>

Everything of the system that it needs is its own, in a mount namespace: /run with a message bus, polkit's actions and
rules, our two files, and a systemctl that is played. The agent, which would show a window, is played too. The program
that asks is not root's. For the namespace it has to be root, and becomes so through sudo.
"""
import os
import pwd
import shutil
import subprocess
import sys

if os.geteuid() != 0 or os.environ.get("HOPSEL_OWN_MOUNTS") != "1":
    become_root = [] if os.geteuid() == 0 else ["sudo", "-n"]
    os.execvp((become_root + ["env"])[0], become_root + [
        "env", "HOPSEL_OWN_MOUNTS=1", "unshare", "--mount", "--propagation", "private", "/usr/bin/python3"] + sys.argv)

import dbus
import dbus.mainloop.glib
import dbus.service
from gi.repository import GLib

ACTION = "app.hopsel.Hopsel.enable-keys"
AUTHORITY = "org.freedesktop.PolicyKit1.Authority"
AGENT = "org.freedesktop.PolicyKit1.AuthenticationAgent"
SOCKET = "/run/keys.sock"
ENABLER = "/usr/libexec/hopsel-keys-enable"
# In no seat here: who would be in front at the computer is asked, as the action's own defaults say.
RULE = """polkit.addRule(function(action, subject) {
    if (action.id == "%s") return polkit.Result.AUTH_ADMIN;
});""" % ACTION
SYSTEMCTL = """#!/usr/bin/python3
import os, socket, sys
with open("/run/systemctl.log", "a") as log:
    print(os.getuid(), *sys.argv[1:], file=log)
socket.socket(socket.AF_UNIX, socket.SOCK_SEQPACKET).bind("%s")
""" % SOCKET


def need(program, package):
    return shutil.which(program, path="/usr/lib/polkit-1:/usr/sbin:/usr/bin:/sbin:/bin") or sys.exit(
        f"polkit: no {program}; its package is {package}")


def write(path, text, mode=0o644):
    with open(path, "w") as file:
        file.write(text)
    os.chmod(path, mode)


def mount(*words):
    subprocess.run(["mount", *words], check=True)


class Agent(dbus.service.Object):
    """What would ask the user for a password."""

    def __init__(self, bus):
        super().__init__(bus, "/app/hopsel/Agent")
        self.bus = bus
        self.agrees = False
        self.asked = []

    @dbus.service.method(AGENT, in_signature="sssa{ss}sa(sa{sv})", out_signature="", async_callbacks=("done", "failed"))
    def BeginAuthentication(self, action, message, icon, details, cookie, identities, done, failed):
        self.asked.append((str(action), str(message)))
        if not self.agrees:
            return failed(dbus.DBusException("", name="org.freedesktop.PolicyKit1.Error.Cancelled"))
        authority(self.bus).AuthenticationAgentResponse2(
            dbus.UInt32(0), cookie, identities[0], reply_handler=done, error_handler=failed)

    @dbus.service.method(AGENT, in_signature="s", out_signature="")
    def CancelAuthentication(self, cookie):
        pass


def authority(bus):
    proxy = bus.get_object("org.freedesktop.PolicyKit1", "/org/freedesktop/PolicyKit1/Authority", introspect=False)
    return dbus.Interface(proxy, AUTHORITY)


def ask(bus, program, has_agent):
    """What the program says in the end."""
    user = ["setpriv", "--reuid", "nobody", "--regid", "nogroup", "--clear-groups", "env", "-i",
            "PATH=/usr/bin:/bin", "LC_ALL=C.UTF-8"]
    process = subprocess.Popen(user + [program, SOCKET, ENABLER], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
    if has_agent:
        with open(f"/proc/{process.pid}/stat") as stat:
            started = int(stat.read().rpartition(")")[2].split()[19])
        subject = dbus.Struct(("unix-process", dbus.Dictionary({
            "pid": dbus.UInt32(process.pid), "start-time": dbus.UInt64(started),
            "uid": dbus.Int32(pwd.getpwnam("nobody").pw_uid)}, signature="sv")), signature="sa{sv}")
        authority(bus).RegisterAuthenticationAgent(subject, "ko_KR.UTF-8", "/app/hopsel/Agent")
    process.stdin.write("\n")
    process.stdin.close()
    loop = GLib.MainLoop()
    GLib.io_add_watch(process.stdout.fileno(), GLib.IO_IN | GLib.IO_HUP, lambda *_: loop.quit())
    loop.run()
    said = process.stdout.read().strip()
    process.wait()
    return said


def expect(what, wanted, why):
    if what != wanted:
        sys.exit(f"polkit: {why}: {what!r}, not {wanted!r}")


def ran():
    return open("/run/systemctl.log").read() if os.path.exists("/run/systemctl.log") else ""


def make_system(program, packaging):
    need("pkexec", "pkexec")
    systemctl = os.path.realpath(need("systemctl", "systemd"))
    for folder in ["/run", "/usr/libexec", "/usr/share/polkit-1/actions", "/etc/polkit-1/rules.d"]:
        mount("-t", "tmpfs", "-o", "mode=0755", "own", folder)
    os.mkdir("/run/dbus")
    shutil.copy(program, "/run/asking_program")
    shutil.copy(f"{packaging}/hopsel-keys-enable", ENABLER)
    os.chmod(ENABLER, 0o755)
    shutil.copy(f"{packaging}/app.hopsel.Hopsel.policy", "/usr/share/polkit-1/actions")
    os.chmod("/usr/share/polkit-1/actions/app.hopsel.Hopsel.policy", 0o644)
    write("/etc/polkit-1/rules.d/10-test.rules", RULE)
    write("/run/systemctl", SYSTEMCTL, 0o755)
    mount("--bind", "/run/systemctl", systemctl)


def main():
    program, packaging = sys.argv[1:]
    running = []
    try:
        make_system(program, packaging)
        os.environ.pop("DBUS_SYSTEM_BUS_ADDRESS", None)
        running.append(subprocess.Popen(
            [need("dbus-daemon", "dbus-daemon"), "--config-file=/usr/share/dbus-1/system.conf", "--nofork",
             "--nopidfile", "--print-address=1"], stdout=subprocess.PIPE))
        running[0].stdout.readline()
        dbus.mainloop.glib.DBusGMainLoop(set_as_default=True)
        bus = dbus.SystemBus()
        loop = GLib.MainLoop()
        bus.watch_name_owner("org.freedesktop.PolicyKit1", lambda owner: owner and loop.quit())
        running.append(subprocess.Popen([need("polkitd", "polkitd"), "--no-debug"]))
        loop.run()

        told = subprocess.run(["pkaction", "--verbose", "--action-id", ACTION], capture_output=True, text=True, check=True)
        for line in ["implicit any:      no", "implicit inactive: no", "implicit active:   auth_admin",
                     f"org.freedesktop.policykit.exec.path -> {ENABLER}"]:
            expect(line in told.stdout, True, f"the action's {line}; {told.stdout}")

        agent = Agent(bus)
        nobody_asks = ask(bus, "/run/asking_program", has_agent=False)
        expect("authentication agent" in nobody_asks, True, nobody_asks)
        expect(ask(bus, "/run/asking_program", has_agent=True), "The key helper was not turned on.", "declined")
        expect(len(agent.asked), 1, "asked once")
        expect(agent.asked[0][0], ACTION, "our own action")
        expect("모든 키를 봅니다" in agent.asked[0][1], True, agent.asked[0][1])
        expect(subprocess.run([ENABLER, "another.service"]).returncode, 2, "nothing that the caller could choose")
        expect(ran(), "", "nothing was run")
        agent.agrees = True
        expect(ask(bus, "/run/asking_program", has_agent=True), "on", "agreed")
        expect(ran(), "0 --no-ask-password enable --now hopsel-keys.socket\n", "what was run")
        print("polkit: asked in Korean, declined, agreed, and without an agent; only our unit was turned on")
    finally:
        for process in reversed(running):
            process.terminate()
            process.wait()


main()

// The first process of the virtual machine: sets up what a system would, runs the test, says how it ended,
// and switches the machine off. Built without sanitizers, which need /proc before there is one.
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <initializer_list>
#include <linux/reboot.h>
#include <sys/mount.h>
#include <sys/reboot.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

namespace {

void load(const char* module) {
    const int file = open(module, O_RDONLY | O_CLOEXEC);
    if (file < 0 || syscall(SYS_finit_module, file, "", 0) != 0)
        std::printf("%s: %s\n", module, std::strerror(errno));
    if (file >= 0) close(file);
}

} // namespace

int main() {
    mount("dev", "/dev", "devtmpfs", 0, "");
    mount("proc", "/proc", "proc", 0, "");
    mount("sys", "/sys", "sysfs", 0, "");
    const int console = open("/dev/console", O_RDWR);
    if (console >= 0)
        for (const int stream : {0, 1, 2}) dup2(console, stream);
    // Random keys may be Control, Alt and Delete.
    reboot(LINUX_REBOOT_CMD_CAD_OFF);
    for (const int signal : {SIGINT, SIGWINCH}) std::signal(signal, SIG_IGN);
    load("/modules/evdev.ko");
    load("/modules/uinput.ko");

    const pid_t test = fork();
    if (test == 0) {
        execl("/test", "/test", nullptr);
        _exit(127);
    }
    int status = 0;
    while (wait(&status) != test) {
        // What the test left behind is the first process's.
    }
    std::printf("keys_machine: exit %d\n", WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status));
    std::fflush(stdout);
    tcdrain(console);
    reboot(LINUX_REBOOT_CMD_POWER_OFF);
    return 0;
}

#include "platform/linux/keys_helper/session/helper_child.h"

#include <QCoreApplication>
#include <QSocketNotifier>
#include <array>
#include <cstddef>
#include <fcntl.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace hopsel::helper_child {

namespace {

/// Becomes readable when the child has ended.
void buryInTime(pid_t child) {
    const auto handle = static_cast<int>(syscall(SYS_pidfd_open, child, 0)); // the C library's is too new
    if (handle < 0) return;
    auto* notifier = new QSocketNotifier(handle, QSocketNotifier::Read,
                                         QCoreApplication::instance()); // the parent owns it
    QObject::connect(notifier, &QSocketNotifier::activated, notifier, [child, handle, notifier] {
        waitpid(child, nullptr, WNOHANG);
        notifier->setEnabled(false);
        notifier->deleteLater();
        close(handle);
    });
}

} // namespace

int start(const std::string& program) {
    std::array<int, 2> ends{};
    if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()) != 0) return -1;
    // In the child it keeps its number; only there it may be inherited.
    std::array<std::string, 3> words{program, "--session", std::to_string(ends[1])};
    const std::array<char*, 4> pointers{words[0].data(), words[1].data(), words[2].data(), nullptr};
    posix_spawn_file_actions_t actions{};
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, ends[1], ends[1]);
    pid_t child = 0;
    const int failure = posix_spawn(&child, program.c_str(), &actions, nullptr, pointers.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    close(ends[1]);
    if (failure != 0) {
        close(ends[0]);
        return -1;
    }
    buryInTime(child);
    return ends[0];
}

} // namespace hopsel::helper_child

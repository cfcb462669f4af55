#include "platform/linux/base/child_process.h"

#include <QCoreApplication>
#include <QSocketNotifier>
#include <algorithm>
#include <csignal>
#include <iterator>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

namespace hopsel::child_process {

namespace {

/// Its handle becomes readable when the child has ended.
void buryInTime(pid_t child, OnEnd onEnd) {
    const auto handle = static_cast<int>(syscall(SYS_pidfd_open, child, 0)); // the C library's is too new
    if (handle < 0) return;
    auto* notifier = new QSocketNotifier(handle, QSocketNotifier::Read,
                                         QCoreApplication::instance()); // the parent owns it
    const auto ended = [child, handle, notifier, onEnd = std::move(onEnd)] {
        int status = 0;
        const bool isKnown = waitpid(child, &status, WNOHANG) == child && WIFEXITED(status);
        notifier->setEnabled(false);
        notifier->deleteLater();
        close(handle);
        if (onEnd) onEnd(isKnown ? WEXITSTATUS(status) : -1);
    };
    QObject::connect(notifier, &QSocketNotifier::activated, notifier, ended);
}

} // namespace

bool start(const std::vector<std::string>& words, int inherited, OnEnd onEnd) {
    std::vector<std::string> copies(words);
    std::vector<char*> pointers;
    std::transform(copies.begin(), copies.end(), std::back_inserter(pointers),
                   [](std::string& word) { return word.data(); });
    pointers.push_back(nullptr);

    posix_spawn_file_actions_t actions{};
    posix_spawn_file_actions_init(&actions);
    // In the child it keeps its number; only there it may be inherited.
    if (inherited >= 0) posix_spawn_file_actions_adddup2(&actions, inherited, inherited);
    posix_spawnattr_t attributes{};
    posix_spawnattr_init(&attributes);
    // What this process takes by other means than signals is none of the child's business.
    sigset_t none;
    sigemptyset(&none);
    posix_spawnattr_setsigmask(&attributes, &none);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK);
    pid_t child = 0;
    const int failure =
        posix_spawn(&child, pointers.front(), &actions, &attributes, pointers.data(), environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    if (failure == 0) buryInTime(child, std::move(onEnd));
    return failure == 0;
}

} // namespace hopsel::child_process

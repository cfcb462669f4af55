#include "platform/linux/activation/lock_file_instance.h"

#include "platform/linux/activation/activation_server.h"

#include <QDir>
#include <QFileInfo>
#include <unistd.h>

namespace hopsel {

namespace {

QString lockPath() {
    QString display = qEnvironmentVariable("DISPLAY", qEnvironmentVariable("WAYLAND_DISPLAY"));
    if (display.endsWith(".0")) display.chop(2); // the first screen of the same display
    display.replace('/', '_');
    const QString folder = qEnvironmentVariable("XDG_RUNTIME_DIR");
    if (!folder.isEmpty()) return folder + "/hopsel" + display + ".lock";
    return QDir::tempPath() + "/hopsel-" + QString::number(getuid()) + display + ".lock";
}

} // namespace

LockFileInstance::LockFileInstance() : lock_(lockPath()) {
    // Never stale by age: the program runs for weeks. The process identifier in the file decides.
    lock_.setStaleLockTime(0);
}

// Without a runtime folder the lock lies where everybody may write, and could be somebody else's.
bool LockFileInstance::isOurUsers() const { return QFileInfo(lock_.fileName()).ownerId() == getuid(); }

bool LockFileInstance::acquire() {
    return lock_.isLocked() || lock_.tryLock(0) || lock_.error() != QLockFile::LockFailedError ||
           !isOurUsers();
}

std::optional<std::int64_t> LockFileInstance::otherProcess() const {
    if (!isOurUsers()) return std::nullopt;
    qint64 process = 0;
    QString host;
    QString application;
    if (!lock_.getLockInfo(&process, &host, &application)) return std::nullopt;
    return process;
}

bool LockFileInstance::activateOther() const { return activateRunningCopy(); }

SingleInstance::Asked LockFileInstance::askOther(const std::string& request, std::string& reply) const {
    switch (askRunningCopy(request, reply)) {
    case CopyAsked::answered: return Asked::answered;
    case CopyAsked::notRunning: return Asked::notRunning;
    case CopyAsked::noAnswer: break;
    }
    return Asked::noAnswer;
}

} // namespace hopsel

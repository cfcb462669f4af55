#include "app/single_instance.h"

#include <QDir>
#include <QStandardPaths>

namespace hopsel {

namespace {

QString lockPath() {
    QString folder = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    if (folder.isEmpty()) folder = QDir::tempPath();
    QString display = qEnvironmentVariable("DISPLAY");
    display.replace('/', '_');
    return folder + "/hopsel" + display + ".lock";
}

} // namespace

SingleInstance::SingleInstance() : lock_(lockPath()) {
    // Never stale by age: the program runs for weeks. The process identifier in the file decides.
    lock_.setStaleLockTime(0);
}

bool SingleInstance::acquire() { return lock_.tryLock(0) || lock_.error() != QLockFile::LockFailedError; }

std::optional<qint64> SingleInstance::otherProcess() const {
    qint64 process = 0;
    QString host;
    QString application;
    if (!lock_.getLockInfo(&process, &host, &application)) return std::nullopt;
    return process;
}

} // namespace hopsel

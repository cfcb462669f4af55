#include "platform/linux/desktop/program_launcher.h"

#include <QProcess>
#include <QStandardPaths>

namespace hopsel {

bool startProgram(const QString& name, const QStringList& arguments) {
    const QString program = QStandardPaths::findExecutable(name);
    return !program.isEmpty() && QProcess::startDetached(program, arguments);
}

bool openWithDesktop(const QString& address) { return startProgram("xdg-open", {address}); }

} // namespace hopsel

#include "platform/linux/desktop/system_facts.h"

#include <QString>
#include <QSysInfo>

namespace hopsel::system_facts {

std::string version() {
    return (QSysInfo::prettyProductName() + QStringLiteral(", Linux ") + QSysInfo::kernelVersion())
        .toStdString();
}

std::string architecture() { return QSysInfo::currentCpuArchitecture().toStdString(); }

} // namespace hopsel::system_facts

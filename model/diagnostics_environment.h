// Clock, calendar and facts of the system, handed in so that previews and tests can fix them. A plain value.
#pragma once

#include <QDateTime>
#include <QTimeZone>
#include <functional>
#include <string>

namespace hopsel {

struct DiagnosticsEnvironment {
    std::function<double()> uptime;  ///< seconds; the clock of the recording and of the engine
    std::function<QDateTime()> date; ///< now
    QTimeZone timeZone;              ///< in which reports write times
    std::string macOSVersion;        ///< of the operating system, whichever it is
    std::string architecture;        ///< of the machine
};

} // namespace hopsel

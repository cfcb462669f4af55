#include "platform/linux/keys_helper/session/helper_switch.h"

#include "platform/linux/base/child_process.h"

#include <QPointer>
#include <QStandardPaths>

namespace hopsel {

namespace {

using Outcome = HelperSwitch::Outcome;

/// What pkexec exits with where it runs nothing.
constexpr int dismissed = 126;
constexpr int notAuthorised = 127;

Outcome outcomeOf(int code) {
    switch (code) {
    case 0: return Outcome::on;
    case dismissed: return Outcome::declined;
    case notAuthorised: return Outcome::notAsked;
    default: return Outcome::failed;
    }
}

} // namespace

void HelperSwitch::turnOn(const QObject* context, std::function<void(Outcome)> onEnd) {
    if (*isAsking_) return;
    const QString asking = program_.empty() ? QString() : QStandardPaths::findExecutable("pkexec");
    if (asking.isEmpty()) return onEnd(Outcome::notAsked);
    // Its own way to ask, on a terminal, would ask where nobody looks.
    const bool isStarted =
        child_process::start({asking.toStdString(), "--disable-internal-agent", program_}, -1,
                             [isAsking = isAsking_, context = QPointer(context), onEnd](int code) {
                                 *isAsking = false;
                                 if (context) onEnd(outcomeOf(code));
                             });
    *isAsking_ = isStarted;
    if (!isStarted) onEnd(Outcome::failed);
}

} // namespace hopsel

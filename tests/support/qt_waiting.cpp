#include "support/qt_waiting.h"

#include <QCoreApplication>
#include <QSocketNotifier>
#include <QTimer>
#include <algorithm>

namespace hopsel::test {

using session::Deadline;

namespace {

void runTurn(int milliseconds) {
    QTimer limit;
    limit.setSingleShot(true);
    limit.setTimerType(Qt::PreciseTimer);
    limit.start(milliseconds);
    QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
}

bool waitReadableInLoop(int descriptor, const Deadline& deadline) {
    bool isReadable = false;
    QSocketNotifier notifier(descriptor, QSocketNotifier::Read);
    QObject::connect(&notifier, &QSocketNotifier::activated, &notifier, [&] {
        isReadable = true;
        notifier.setEnabled(false);
    });
    runTurn(deadline.millisecondsLeft());
    return isReadable;
}

} // namespace

void waitInEventLoop() { session::setReadableWaiter(waitReadableInLoop); }

bool runLoopUntil(const std::function<bool()>& condition, std::chrono::milliseconds timeout) {
    const Deadline deadline(timeout);
    // A turn that handled only posted events goes on to wait for others: short turns, to see what they did.
    constexpr int longestTurn = 20;
    while (!condition()) {
        if (deadline.hasPassed()) return false;
        runTurn(std::min(deadline.millisecondsLeft(), longestTurn));
    }
    return true;
}

bool staysFalse(const std::function<bool()>& condition, std::chrono::milliseconds time) {
    return !runLoopUntil(condition, time);
}

} // namespace hopsel::test

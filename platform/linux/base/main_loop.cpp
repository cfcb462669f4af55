#include "platform/linux/base/main_loop.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QEvent>
#include <QTimer>
#include <cmath>
#include <ctime>
#include <poll.h>
#include <utility>
#include <vector>

namespace hopsel {

namespace {

const QEvent::Type scheduledType = static_cast<QEvent::Type>(QEvent::registerEventType());

class ScheduledEvent final : public QEvent {
  public:
    explicit ScheduledEvent(std::function<void()> function)
        : QEvent(scheduledType), function_(std::move(function)) {}
    const std::function<void()>& function() const { return function_; }

  private:
    std::function<void()> function_;
};

/// A scheduled function has run the loop to wait.
bool hasWaited = false;

class ScheduledReceiver final : public QObject {
  public:
    bool event(QEvent* event) override {
        if (event->type() != scheduledType) return QObject::event(event);
        run(static_cast<ScheduledEvent*>(event)->function());
        return true;
    }

    void run(const std::function<void()>& function) {
        ++depth_;
        function();
        // The turns of the wait took back what would keep a loop that was ended meanwhile, by whatever call,
        // from waiting once more.
        if (--depth_ == 0 && std::exchange(hasWaited, false))
            QAbstractEventDispatcher::instance()->interrupt();
    }

  private:
    int depth_ = 0;
};

ScheduledReceiver& receiver() {
    static ScheduledReceiver instance; // lives in the thread of the first call: the main thread
    return instance;
}

std::vector<std::function<void()>>& putOffFunctions() {
    static std::vector<std::function<void()>> functions;
    return functions;
}

} // namespace

double uptimeSeconds() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9;
}

void schedule(std::function<void()> function) {
    QCoreApplication::postEvent(&receiver(), new ScheduledEvent(std::move(function)), Qt::HighEventPriority);
}

void putOff(std::function<void()> function) { putOffFunctions().push_back(std::move(function)); }

void runScheduled() {
    QCoreApplication::sendPostedEvents(&receiver(), scheduledType);
    while (!putOffFunctions().empty()) { // what runs may wait, and be called here again by an event
        const auto functions = std::exchange(putOffFunctions(), {});
        for (const auto& function : functions) receiver().run(function);
    }
}

void runFor(double seconds) {
    const int milliseconds = static_cast<int>(std::ceil(std::fmax(seconds, 0) * 1000));
    if (QCoreApplication::instance() == nullptr) {
        poll(nullptr, 0, milliseconds); // the program is coming down, but whoever waits must not spin
        return;
    }
    // `processEvents` with a time limit spins until the limit; a turn that may wait, and a timer to end it,
    // wait.
    QTimer limit;
    limit.setSingleShot(true);
    limit.setTimerType(Qt::PreciseTimer);
    limit.start(milliseconds);
    hasWaited = true;
    QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
}

} // namespace hopsel

#include "app/retry_timer.h"

#include <QAbstractEventDispatcher>
#include <utility>

namespace hopsel {

RetryTimer::RetryTimer(std::chrono::milliseconds interval, std::function<bool()> isNeeded,
                       std::function<void()> retry)
    : isNeeded_(std::move(isNeeded)) {
    timer_.setInterval(interval);
    QObject::connect(&timer_, &QTimer::timeout, &timer_, std::move(retry));
}

void RetryTimer::start() {
    QObject::disconnect(beforeSleep_);
    beforeSleep_ = QObject::connect(QAbstractEventDispatcher::instance(),
                                    &QAbstractEventDispatcher::aboutToBlock, &timer_, [this] { look(); });
}

void RetryTimer::stop() {
    QObject::disconnect(beforeSleep_);
    timer_.stop();
}

void RetryTimer::look() {
    const bool isNeeded = isNeeded_();
    if (isNeeded == timer_.isActive()) return;
    isNeeded ? timer_.start() : timer_.stop();
}

} // namespace hopsel

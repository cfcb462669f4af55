#include "platform/linux/base/coalescing_timer.h"

#include <algorithm>
#include <utility>

namespace hopsel {

CoalescingTimer::CoalescingTimer(std::chrono::milliseconds quiet, std::chrono::milliseconds atMost,
                                 std::function<void()> call)
    : quiet_(quiet), atMost_(atMost) {
    timer_.setSingleShot(true);
    timer_.setTimerType(Qt::PreciseTimer);
    QObject::connect(&timer_, &QTimer::timeout, &timer_, std::move(call));
}

void CoalescingTimer::noteChange() {
    if (!isPending()) latest_ = QDeadlineTimer(atMost_);
    timer_.start(std::min(quiet_, std::chrono::milliseconds(latest_.remainingTime())));
}

} // namespace hopsel

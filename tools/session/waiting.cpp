#include "session/waiting.h"

#include <algorithm>
#include <cerrno>
#include <ctime>
#include <poll.h>
#include <utility>

namespace hopsel::session {

namespace {

ReadableWaiter& installedWaiter() {
    static ReadableWaiter waiter;
    return waiter;
}

} // namespace

double monotonicSeconds() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9;
}

int Deadline::millisecondsLeft() const {
    const auto left =
        std::chrono::ceil<std::chrono::milliseconds>(end_ - std::chrono::steady_clock::now()).count();
    return static_cast<int>(std::max<decltype(left)>(left, 0));
}

bool pollReadable(int descriptor, const Deadline& deadline) {
    pollfd entry{descriptor, POLLIN, 0};
    int answer = 0;
    do {
        answer = poll(&entry, 1, deadline.millisecondsLeft());
    } while (answer < 0 && errno == EINTR);
    return answer > 0;
}

bool waitReadable(int descriptor, const Deadline& deadline) {
    const ReadableWaiter& waiter = installedWaiter();
    return waiter ? waiter(descriptor, deadline) : pollReadable(descriptor, deadline);
}

void setReadableWaiter(ReadableWaiter waiter) { installedWaiter() = std::move(waiter); }

} // namespace hopsel::session

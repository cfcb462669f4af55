#include "platform/linux/keys_helper/live/seat_watch.h"

#include <cerrno>
#include <utility>

namespace hopsel {

namespace {

/// Keyboards belong to the first one unless somebody has set up more of them.
constexpr const char* seat = "seat0";

} // namespace

SeatWatch::SeatWatch(EventLoop& loop, std::function<void()> onChange) {
    sd_login_monitor* monitor = nullptr;
    if (sd_login_monitor_new("seat", &monitor) < 0) return;
    monitor_.reset(monitor);
    watch_ = loop.whenReadable(sd_login_monitor_get_fd(monitor), [this, onChange = std::move(onChange)] {
        sd_login_monitor_flush(monitor_.get());
        onChange();
    });
}

bool SeatWatch::isTold() {
    uid_t user = 0;
    return sd_seat_get_active(seat, nullptr, &user) != -ENXIO;
}

std::optional<uid_t> SeatWatch::userInFront() {
    uid_t user = 0;
    if (sd_seat_get_active(seat, nullptr, &user) < 0) return std::nullopt;
    return user;
}

} // namespace hopsel

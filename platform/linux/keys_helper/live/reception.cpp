#include "platform/linux/keys_helper/live/reception.h"

#include "platform/linux/keys_helper/live/seat_watch.h"
#include "platform/linux/keys_helper/live/session_socket.h"

#include <chrono>
#include <fcntl.h>
#include <sys/socket.h>
#include <utility>

namespace hopsel {

namespace {

/// Who was refused tries again every two seconds, and need not start a process each time.
constexpr std::chrono::seconds patience{10};

} // namespace

Reception::Reception(EventLoop& loop, Descriptor listening, std::function<void(Descriptor)> admit)
    : loop_(loop),
      listening_(std::move(listening)),
      admit_(std::move(admit)),
      watch_(loop.whenReadable(listening_.get(), [this] { answer(); })),
      idle_(loop.after(patience, [this] { loop_.end(); })) {
    fcntl(listening_.get(), F_SETFL, O_NONBLOCK); // who knocked may have left
}

// One at a time: the loop comes back while more are waiting.
void Reception::answer() {
    SessionSocket guest(Descriptor(accept4(listening_.get(), nullptr, nullptr, SOCK_CLOEXEC)));
    if (guest.descriptor() < 0) return;
    using Kind = to_session::Trouble::Kind;
    const auto user = guest.user();
    const bool isInFront = user && user == SeatWatch::userInFront();
    if (isInFront && admit_) {
        idle_.clear();
        return std::exchange(admit_, nullptr)(guest.release());
    }
    guest.send(to_session::Trouble{isInFront ? Kind::busy : Kind::inactive, {}});
    if (admit_) idle_ = loop_.after(patience, [this] { loop_.end(); });
}

} // namespace hopsel

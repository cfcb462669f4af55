#include "platform/linux/x11/x11_pending_keys.h"

#include <algorithm>

namespace hopsel {

std::optional<X11PendingKey> X11PendingKeys::take(XKeyCode key, bool press, std::uint32_t time,
                                                  const Ungrabbed& ungrabbed) {
    // The last one: times are whole milliseconds, and the keyboard stood still after the event that was
    // grabbed.
    const auto twin = std::find_if(keys_.rbegin(), keys_.rend(),
                                   [&](const Numbered& n) { return n.isTwin(key, press, time); });
    if (twin == keys_.rend()) return std::nullopt;
    const std::uint64_t number = twin->number;
    while (keys_.front().number != number) passFront(ungrabbed);
    const X11PendingKey taken = keys_.front().key;
    keys_.pop_front();
    return taken;
}

bool X11PendingKeys::contains(XKeyCode key, bool press, std::uint32_t time, std::uint64_t upTo) const {
    return std::any_of(keys_.begin(), keys_.end(),
                       [&](const Numbered& n) { return n.number <= upTo && n.isTwin(key, press, time); });
}

void X11PendingKeys::settle(std::uint64_t upTo, const Ungrabbed& ungrabbed) {
    while (!keys_.empty() && (keys_.front().number <= upTo || !keys_.front().key.mayBeGrabbed))
        passFront(ungrabbed);
}

void X11PendingKeys::passFront(const Ungrabbed& ungrabbed) {
    const X11PendingKey key = keys_.front().key;
    keys_.pop_front();
    ungrabbed(key);
}

} // namespace hopsel

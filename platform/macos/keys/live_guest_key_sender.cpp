#include "platform/macos/keys/live_guest_key_sender.h"

#include "platform/macos/base/cf_ref.h"
#include "platform/macos/base/main_loop.h"
#include "platform/macos/keys/event_stamp.h"

#include <ApplicationServices/ApplicationServices.h>

namespace hopsel {

namespace {
constexpr double pauseAfterEvent = 0.010;
}

bool LiveGuestKeySender::send(const ShortcutKey& key) {
    if (AXIsProcessTrusted() == 0) return false;
    const auto source =
        CfRef<CGEventSourceRef>::adopt(CGEventSourceCreate(kCGEventSourceStateHIDSystemState));
    // All are made before the first is posted, so that a failure leaves no modifier down in the guest.
    std::vector<CfRef<CGEventRef>> events;
    for (const SyntheticKeyEvent& each : guest_key_sequence::events(key)) {
        auto event =
            CfRef<CGEventRef>::adopt(CGEventCreateKeyboardEvent(source.get(), each.keyCode, each.isDown));
        if (!event) return false;
        CGEventSetFlags(event.get(), each.flags);
        event_stamp::put(event.get());
        events.push_back(std::move(event));
    }
    for (const auto& event : events) {
        CGEventPost(kCGHIDEventTap, event.get());
        waitFor(pauseAfterEvent);
    }
    return !events.empty();
}

} // namespace hopsel

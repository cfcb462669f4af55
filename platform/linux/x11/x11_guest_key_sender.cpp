#include "platform/linux/x11/x11_guest_key_sender.h"

#include "platform/linux/keys/key_codes.h"

namespace hopsel {

namespace {
constexpr double pauseAfterEvent = 0.010;
constexpr double whileWaiting = 0.050; // the key-up ends it sooner
} // namespace

bool X11GuestKeySender::send(const ShortcutKey& key) {
    const auto mainKeys = key_codes::linuxKeyCodes(key.keyCode);
    if (!hook_->canPost() || mainKeys.empty() || !waitUntilKeysAreUp(mainKeys.front())) return false;
    for (const SyntheticKeyEvent& event : guest_key_sequence::events(key)) {
        const auto linuxCodes = key_codes::linuxKeyCodes(event.keyCode);
        if (linuxCodes.empty() || !hook_->post(linuxCodes.front(), event.isDown)) return false;
        hook_->dispatchFor(pauseAfterEvent);
    }
    return true;
}

bool X11GuestKeySender::waitUntilKeysAreUp(std::uint16_t linuxCode) {
    hook_->dispatch();
    while (hook_->isOpen() && hook_->isBusy(linuxCode)) runLoop_(whileWaiting);
    return hook_->isOpen();
}

} // namespace hopsel

// Posts the guest key through XTEST, over the key hook, which recognises its own posts.
//
// Owned by the engine. X has no flags to set on a posted event: what the guest sees is what is down, and a
// key that is down already cannot be pressed. A trigger like Shift+Space still has the user's fingers on it
// when its rule runs, so the sender runs the event loop until the modifiers and the key have come up, however
// long that takes; it gives up if the hook is closed meanwhile.
#pragma once

#include "core/platform/guest_key.h"
#include "platform/linux/x11/x11_key_hook.h"

namespace hopsel {

class X11GuestKeySender final : public GuestKeySending {
  public:
    /// Runs the event loop once, for at most `seconds`.
    using RunLoop = std::function<void(double seconds)>;

    X11GuestKeySender(std::shared_ptr<X11KeyHook> hook, RunLoop runLoop)
        : hook_(std::move(hook)), runLoop_(std::move(runLoop)) {}

    bool send(const ShortcutKey& key) override;

  private:
    bool waitUntilKeysAreUp(std::uint16_t linuxCode);

    std::shared_ptr<X11KeyHook> hook_;
    RunLoop runLoop_;
};

} // namespace hopsel

// Posts the guest key through XTEST, over the key hook, which recognises its own posts.
//
// Owned by the engine. X has no flags to set on a posted event: what the guest sees is what is down, and a
// key that is down already cannot be pressed. A trigger like Shift+Space still has the user's fingers on it
// when its rule runs, so the sender waits for the modifiers and the key to come up, and gives up on someone
// who holds them.
#pragma once

#include "core/platform/guest_key.h"
#include "platform/linux/x11/x11_key_hook.h"

namespace hopsel {

class X11GuestKeySender final : public GuestKeySending {
  public:
    /// Seconds to wait for the user's fingers.
    static constexpr double longestWait = 0.5;

    X11GuestKeySender(std::shared_ptr<X11KeyHook> hook, X11KeyHook::Clock clock)
        : hook_(std::move(hook)), clock_(std::move(clock)) {}

    bool send(const ShortcutKey& key) override;

  private:
    bool waitUntilKeysAreUp(std::uint16_t linuxCode);

    std::shared_ptr<X11KeyHook> hook_;
    X11KeyHook::Clock clock_;
};

} // namespace hopsel

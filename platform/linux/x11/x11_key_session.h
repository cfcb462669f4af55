// The keys of an X session, over one key hook that its pieces share.
//
// Owned by the Linux platform; the log outlives it.
#pragma once

#include "core/platform/log.h"
#include "platform/linux/keys/key_session.h"
#include "platform/linux/x11/x11_key_hook.h"
#include "platform/linux/x11/x11_listen_source.h"

namespace hopsel {

class X11KeySession final : public KeySession {
  public:
    /// `runLoop` runs the event loop once, for at most so many seconds.
    X11KeySession(X11KeyHook::Clock clock, std::function<void(double seconds)> runLoop, Log& log);

    std::shared_ptr<EventSource> listenSource() override { return listenSource_; }
    std::shared_ptr<ShortcutSource> shortcutSource() override;
    std::shared_ptr<GuestKeySending> guestKeySender() override;
    std::shared_ptr<Permissions> permissions() override;
    std::string listeningFailure() const override { return listenSource_->failure(); }
    void resynchronise() override { hook_->resynchronise(); }
    bool isHandling() const override { return hook_->isHandling(); }
    std::function<PrintedKeys()> printedKeys() const override;

  private:
    std::function<void(double)> runLoop_;
    Log& log_;
    std::shared_ptr<X11KeyHook> hook_;
    std::shared_ptr<X11ListenSource> listenSource_;
};

} // namespace hopsel

// The listening source of an X session, over the key hook that it shares.
//
// Owned by the engine; the hook outlives it. A lost connection is reported as a source that was taken away,
// and works again already unless the server has gone; then the next start opens a new one.
#pragma once

#include "core/platform/event_source.h"
#include "platform/linux/x11/x11_tap_guard.h"

#include <functional>

namespace hopsel {

class X11ListenSource final : public EventSource {
  public:
    explicit X11ListenSource(std::shared_ptr<X11KeyHook> hook,
                             X11TapGuard::Key guardKey = X11TapGuard::Key::silent)
        : hook_(std::move(hook)), guard_(*hook_, guardKey) {}
    ~X11ListenSource() override { stopListening(); }

    void start() override;
    void stop() override { stopListening(); }
    void setTapTriggers(ModifierSet triggers) override { guard_.setTriggers(triggers); }
    bool canGuardTaps() const override { return true; }

    /// A modifier key went down, and the engine has been told.
    std::function<void()> onModifierDown;

    /// Why the last start failed, in words for the user; empty after one that did not.
    const std::string& failure() const { return failure_; }

  private:
    void stopListening();
    void heard(const RawEvent& event);

    std::shared_ptr<X11KeyHook> hook_;
    X11TapGuard guard_;
    std::string failure_;
    std::uint64_t flags_ = 0; ///< of the last change
    bool isStarted_ = false;
};

} // namespace hopsel

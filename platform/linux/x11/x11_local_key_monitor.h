// The keys that reach our own windows on X11, seen before Qt and the input methods see them.
//
// Start-up makes one after the application object, for all windows. It filters the toolkit's native events
// while it is started, and after that until the keys it swallowed are up: a control never sees half of a
// key's press and release. It looks at no other program's events.
#pragma once

#include "core/platform/local_key_monitoring.h"
#include "platform/linux/keys/held_keys.h"
#include "platform/linux/keys/key_meanings.h"
#include "platform/linux/x11/x11_connection.h"

#include <QAbstractNativeEventFilter>
#include <memory>
#include <optional>

namespace hopsel {

class X11LocalKeyMonitor final : public LocalKeyMonitoring, private QAbstractNativeEventFilter {
  public:
    void start(std::function<void(const LocalKeyDown&)> onKeyDown) override;
    void stop() override;
    bool missesGrabbedKeys() const override { return true; }

  private:
    struct Release {
        XKeyCode key;
        xcb_timestamp_t time;
        friend bool operator==(const Release&, const Release&) = default;
    };

    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;
    bool pressed(const xcb_key_press_event_t& event);
    bool released(const xcb_key_release_event_t& event);
    void tellUnusable(UnusableKey key) const;
    bool isStarted() const { return onKeyDown_ != nullptr; }
    KeyMeaning meaning(XKeyCode key) const;
    void leave();
    void connect();
    /// What the server says is down replaces what we believe.
    void synchronize();

    std::function<void(const LocalKeyDown&)> onKeyDown_;
    std::unique_ptr<X11Connection> connection_; ///< null where there is none: then by events alone
    KeyMeanings meanings_;
    HeldKeys held_;
    HeldKeys::KeySet seen_;      ///< pressed as far as the events tell
    HeldKeys::KeySet swallowed_; ///< the latest press was kept from Qt, and so is what follows from it
    std::optional<Release> lastRelease_;
    /// What has been pressed together since a first modifier went down.
    enum class Chord { none, several, spoilt } chord_ = Chord::none;
};

} // namespace hopsel

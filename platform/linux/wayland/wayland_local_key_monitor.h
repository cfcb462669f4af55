// The keys that reach our own windows under Wayland, seen before any control.
//
// Start-up makes one after the application object, for all windows. The toolkit has each key's number and
// symbol from the compositor, left and right apart. What is held is known from the presses alone, so it
// starts over when another window has the focus. It looks at no other program's events.
#pragma once

#include "core/platform/local_key_monitoring.h"
#include "platform/linux/keys/held_keys.h"

#include <QKeyEvent>
#include <QObject>

namespace hopsel {

class WaylandLocalKeyMonitor final : public QObject, public LocalKeyMonitoring {
  public:
    void start(std::function<void(const LocalKeyDown&)> onKeyDown) override;
    void stop() override;
    bool missesGrabbedKeys() const override { return true; }

  private:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void pressed(const QKeyEvent& event);
    void released(const QKeyEvent& event);
    void tellUnusable(UnusableKey key) const;
    bool isStarted() const { return onKeyDown_ != nullptr; }

    std::function<void(const LocalKeyDown&)> onKeyDown_;
    HeldKeys held_;
    HeldKeys::KeySet swallowed_; ///< the press was kept from the controls, and so is what follows from it
    /// What has been pressed together since a first modifier went down.
    enum class Chord { none, several, spoilt } chord_ = Chord::none;
};

} // namespace hopsel

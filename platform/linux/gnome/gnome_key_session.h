// The keys of a GNOME session under Wayland, through our extension of its shell: it hears them and swallows
// combinations with no rights at all.
//
// Owned by the Linux platform; the log outlives it. Without the extension nothing is heard, and it is said
// why. The extension goes with the lock screen and comes back after it.
#pragma once

#include "core/platform/log.h"
#include "platform/linux/gnome/gnome_extension.h"
#include "platform/linux/gnome/gnome_extension_switch.h"
#include "platform/linux/gnome/gnome_listen_source.h"
#include "platform/linux/gnome/gnome_shortcut_source.h"
#include "platform/linux/keys/key_session.h"
#include "platform/linux/keys/told_time.h"

#include <QObject>

namespace hopsel {

class GnomeKeySession final : public KeySession {
  public:
    /// `clock` as the engine's: seconds of the monotonic clock.
    GnomeKeySession(const std::shared_ptr<BusLink>& sessionBus, std::shared_ptr<GnomeExtension> extension,
                    std::function<double()> clock, Log& log);

    std::shared_ptr<EventSource> listenSource() override { return listenSource_; }
    std::shared_ptr<ShortcutSource> shortcutSource() override { return shortcutSource_; }
    /// Nothing may post a key into another program here.
    std::shared_ptr<GuestKeySending> guestKeySender() override { return nullptr; }
    std::shared_ptr<Permissions> permissions() override;
    std::string listeningFailure() const override { return listenSource_->failure(); }
    /// Turns the extension on.
    void remedy(const QObject* context, const std::function<void(const WayOut&)>& otherwise) override {
        switch_.turnOn(context, [otherwise] { otherwise({}); });
    }
    void resynchronise() override { listenSource_->startOver(); }

  private:
    void takeKey(const QDBusMessage& signal);

    std::shared_ptr<GnomeExtension> extension_;
    std::function<double()> clock_;
    ToldTime time_;
    std::shared_ptr<GnomeListenSource> listenSource_;
    std::shared_ptr<GnomeShortcutSource> shortcutSource_;
    GnomeExtensionSwitch switch_;
    QObject context_; ///< what the extension tells ends with it
};

} // namespace hopsel

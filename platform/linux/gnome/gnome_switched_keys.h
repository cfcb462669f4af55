// The keys of an X session of GNOME: they come from the X server, but only our extension of the shell can
// switch there.
//
// Owned by the Linux platform, in place of the X server's own key session, which it owns and hands on. Where
// GNOME has the input sources and the extension is not there, nothing is heard, and it is said why: a trigger
// that switches nothing would be no use, and the way out is the extension. Where another framework switches,
// nothing is kept back.
#pragma once

#include "platform/linux/gnome/gnome_extension.h"
#include "platform/linux/gnome/gnome_extension_switch.h"
#include "platform/linux/keys/key_session.h"
#include "platform/linux/sources/linux_input_sources.h"

#include <QObject>
#include <memory>
#include <string>

namespace hopsel {

class GnomeSwitchedKeys final : public KeySession {
  public:
    /// Takes `onInChargeChanged` of the sources for itself.
    GnomeSwitchedKeys(std::unique_ptr<KeySession> keys, const std::shared_ptr<BusLink>& sessionBus,
                      std::shared_ptr<GnomeExtension> extension, std::shared_ptr<LinuxInputSources> sources);
    ~GnomeSwitchedKeys() override;

    std::shared_ptr<EventSource> listenSource() override;
    std::shared_ptr<ShortcutSource> shortcutSource() override { return keys_->shortcutSource(); }
    std::shared_ptr<GuestKeySending> guestKeySender() override { return keys_->guestKeySender(); }
    std::shared_ptr<Permissions> permissions() override;
    std::string listeningFailure() const override;
    /// Turns the extension on, where that is what is missing.
    void remedy(const QObject* context, const std::function<void(const WayOut&)>& otherwise) override;
    void resynchronise() override { keys_->resynchronise(); }
    std::function<PrintedKeys()> printedKeys() const override { return keys_->printedKeys(); }

  private:
    class Source;
    class Granted;
    struct Switching;

    std::unique_ptr<KeySession> keys_;
    std::shared_ptr<LinuxInputSources> sources_;
    std::shared_ptr<const Switching> switching_;
    std::shared_ptr<Source> source_;
    GnomeExtensionSwitch switch_;
    QObject context_; ///< what the extension tells ends with it
};

} // namespace hopsel

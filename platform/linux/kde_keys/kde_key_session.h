// The keys of a KDE session under Wayland: through the key helper, and where there is none, combinations
// alone through KDE's global shortcuts.
//
// Owned by the Linux platform; the log outlives it. What does without the helper says so: taps of one key are
// not heard, and of a combination the side of its modifiers is not known.
#pragma once

#include "platform/linux/kde_keys/kde_listen_source.h"
#include "platform/linux/kde_keys/kde_shortcut_source.h"
#include "platform/linux/keys_helper/session/helper_key_session.h"

#include <memory>
#include <string>

namespace hopsel {

class KdeKeySession final : public KeySession {
  public:
    KdeKeySession(const std::shared_ptr<BusLink>& sessionBus, HelperPlaces places,
                  HelperListenSource::Clock clock, Log& log);
    ~KdeKeySession() override;

    std::shared_ptr<EventSource> listenSource() override { return listenSource_; }
    std::shared_ptr<ShortcutSource> shortcutSource() override { return shortcutSource_; }
    std::shared_ptr<GuestKeySending> guestKeySender() override { return nullptr; }
    /// The helper's: without it something is missing.
    std::shared_ptr<Permissions> permissions() override { return helper_.permissions(); }
    std::string listeningFailure() const override;
    void remedy(const QObject* context, const std::function<void(const WayOut&)>& otherwise) override {
        helper_.remedy(context, otherwise);
    }
    void resynchronise() override { helper_.resynchronise(); }
    std::function<PrintedKeys()> printedKeys() const override { return helper_.printedKeys(); }

  private:
    HelperKeySession helper_;
    std::shared_ptr<KdeShortcutSource> kde_;
    std::shared_ptr<KdeListenSource> listenSource_;
    std::shared_ptr<ShortcutSource> shortcutSource_;
};

} // namespace hopsel

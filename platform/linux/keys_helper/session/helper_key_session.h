// The keys of a Wayland session through the key helper, where the compositor shows nobody its keys.
//
// Owned by the Linux platform; the log outlives it. Without the helper nothing is heard, and it is said why
// and what mends it.
#pragma once

#include "core/platform/log.h"
#include "platform/linux/keys/key_session.h"
#include "platform/linux/keys_helper/session/helper_link.h"
#include "platform/linux/keys_helper/session/helper_listen_source.h"
#include "platform/linux/keys_helper/session/helper_shortcut_source.h"
#include "platform/linux/keys_helper/session/helper_switch.h"
#include "platform/linux/wayland/wayland_keymap.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace hopsel {

class HelperKeySession final : public KeySession {
  public:
    /// `clock` as the engine's: seconds of the monotonic clock.
    HelperKeySession(HelperPlaces places, HelperListenSource::Clock clock, Log& log);
    ~HelperKeySession() override;

    std::shared_ptr<EventSource> listenSource() override { return listenSource_; }
    std::shared_ptr<ShortcutSource> shortcutSource() override { return shortcutSource_; }
    /// The helper posts no keys for anybody.
    std::shared_ptr<GuestKeySending> guestKeySender() override { return nullptr; }
    std::shared_ptr<Permissions> permissions() override;
    std::string listeningFailure() const override { return link_->failure(); }
    /// Turns the helper's service on.
    void remedy(const QObject* context, const std::function<void(const WayOut&)>& otherwise) override;
    /// The helper tells by itself when keys may have been lost; it serves the session that is in front.
    void resynchronise() override {
        link_->forgetFailure();
        keymap_.start();
    }

    std::function<PrintedKeys()> printedKeys() const override;
    /// What the keys mean to the keymap; the compositor's is followed where it tells, else it is a plain one.
    void setKeymap(const KeyMeanings& keymap);

  private:
    void take(const std::vector<to_session::Message>& messages);
    void take(const to_session::Message& message);
    void told(const to_session::State& state);

    Log& log_;
    HelperSwitch switch_;
    std::shared_ptr<HelperLink> link_;
    std::shared_ptr<HelperListenSource> listenSource_;
    std::shared_ptr<HelperShortcutSource> shortcutSource_;
    std::string toldUnreadable_;
    std::shared_ptr<PrintedKeys> printed_ = std::make_shared<PrintedKeys>();
    WaylandKeymap keymap_;
};

} // namespace hopsel

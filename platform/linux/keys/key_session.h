// A way to the keys of a Linux session: an X server's key hook, a compositor's extension, a helper that reads
// the devices.
//
// Made and owned by the Linux platform, which picks one when it starts; its pieces go to the engine, and the
// session outlives them. What a way cannot do is absent or says why it fails; nothing is pretended. Main
// thread.
#pragma once

#include "core/platform/event_source.h"
#include "core/platform/guest_key.h"
#include "core/platform/permissions.h"
#include "core/platform/shortcut_source.h"
#include "platform/linux/keys/printed_keys.h"
#include "platform/linux/keys/way_out.h"

#include <QObject>
#include <functional>
#include <memory>
#include <string>

namespace hopsel {

class KeySession {
  public:
    KeySession() = default;
    KeySession(const KeySession&) = delete;
    KeySession& operator=(const KeySession&) = delete;
    virtual ~KeySession() = default;

    virtual std::shared_ptr<EventSource> listenSource() = 0;
    /// Null where no combination can be swallowed.
    virtual std::shared_ptr<ShortcutSource> shortcutSource() = 0;
    /// Null where no key can be posted.
    virtual std::shared_ptr<GuestKeySending> guestKeySender() = 0;
    /// Whether keys can be heard and filtered, for windows that ask before anything is started.
    virtual std::shared_ptr<Permissions> permissions() = 0;
    /// Why the last start of the listening source failed, in words for the user; empty after one that did
    /// not.
    virtual std::string listeningFailure() const = 0;
    /// Does what can be done about keys that are not heard; `otherwise` is called, at once or from the event
    /// loop, where that is for the user to do, unless `context` is gone by then.
    virtual void remedy(const QObject* /*context*/, const std::function<void(const WayOut&)>& otherwise) {
        otherwise({});
    }
    /// Key-ups may have been lost: finds out which keys are down.
    virtual void resynchronise() = 0;

    /// Tells, for the rest of the process, what is printed on the keys; null where that cannot be known.
    virtual std::function<PrintedKeys()> printedKeys() const { return {}; }

    /// In the callbacks of the sources, after which `onHandled` is called.
    virtual bool isHandling() const { return false; }

    /// A modifier key went down, and the engine has been told: a trigger may be on its way.
    std::function<void()> onModifierDown;
    /// After each event, outside the callbacks of the sources: what these have put off can be done now.
    std::function<void()> onHandled;
};

} // namespace hopsel

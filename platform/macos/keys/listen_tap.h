// The listening source: a tap that sees modifier changes, keys and mouse buttons, and can neither hold nor
// change them.
//
// Owned by the engine. The code of a modifier is all it reads of which key was pressed: for ordinary keys the
// field is not even asked for, so nothing above can leak what is typed.
#pragma once

#include "core/platform/event_source.h"
#include "platform/macos/keys/event_tap.h"
#include "platform/macos/keys/mac_permissions.h"

#include <memory>

namespace hopsel {

class ListenTap final : public EventSource, private EventTap::Client {
  public:
    explicit ListenTap(std::shared_ptr<const MacPermissions> permissions);

    void start() override;
    void stop() override { tap_.stop(); }
    /// To be called every now and then, for a tap that the system took away without a word.
    void check() { tap_.check(); }

  private:
    bool tapped(CGEventType type, CGEventRef event) override;
    void takenAway() override;

    std::shared_ptr<const MacPermissions> permissions_;
    EventTap tap_;
};

} // namespace hopsel

// The listening source: a tap that sees modifier changes, keys and mouse buttons, and can neither hold nor
// change them.
//
// Owned by the engine. The code of a modifier is all it reads of which key was pressed: for ordinary keys the
// field is not even asked for, so nothing above can leak what is typed.
#pragma once

#include "core/platform/event_source.h"
#include "platform/macos/keys/event_tap.h"

namespace hopsel {

class ListenTap final : public EventSource, private EventTap::Client {
  public:
    ListenTap();

    void start() override;
    void stop() override { tap_.stop(); }
    /// To be called every now and then, for a tap that the system took away without a word.
    void check() { tap_.check(); }

  private:
    bool tapped(CGEventType type, CGEventRef event) override;
    void tapDisabled(bool reenabled) override;

    EventTap tap_;
};

} // namespace hopsel

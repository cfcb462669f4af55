// The seam of the listening source: it sees modifier changes, key presses and mouse buttons, and can alter
// none.
//
// Implemented once per platform and by a recording fake in the tests. The engine holds one, installs the two
// callbacks at construction and is the only caller.
#pragma once

#include "core/keys/key_event.h"

#include <functional>

namespace hopsel {

class EventSource {
  public:
    using EventHandler = std::function<void(const RawEvent&)>;
    /// The argument says whether the source works again already.
    using DisabledHandler = std::function<void(bool reenabled)>;

    EventSource() = default;
    EventSource(const EventSource&) = delete;
    EventSource& operator=(const EventSource&) = delete;
    /// Releasing a source stops it.
    virtual ~EventSource() = default;

    /// Throws `TapFailure` (tap_failure.h) when the platform refuses. Starting a started source does nothing.
    virtual void start() = 0;
    /// Stopping a stopped source does nothing. Does not throw.
    virtual void stop() = 0;

    /// The modifiers whose lone taps are triggers, told whenever they change. Desktops and programs act on a
    /// lone tap as well (a launcher, a menu bar): a source that can keeps them from it, and no event of
    /// its doing looks like one of the user's. Does not throw.
    virtual void setTapTriggers(ModifierSet /*triggers*/) {}
    virtual bool canGuardTaps() const { return false; }
    /// False for one that has been started only so that combinations can be filtered: it tells of no key.
    virtual bool hearsTaps() const { return true; }

    /// Without a handler events are dropped.
    EventHandler onEvent;
    /// The platform took the source away: too slow, a lost connection, an unplugged device. Without a handler
    /// nobody is told.
    DisabledHandler onDisabled;
};

} // namespace hopsel

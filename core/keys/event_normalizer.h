// Turns "some modifier changed, and these are the flags now" into presses and releases of named modifier
// keys.
//
// Owned by the engine, one instance. Its only state is the set of held modifiers, which every
// event repairs from its own flags: a release that was lost (tap disabled, sleep, a password prompt of
// another program) costs at most a missed tap, never a key that stays down for ever. That works only as far
// as the flags know better than the events: a source that builds them from its own stream of events must
// repair them itself, by asking the system which keys are down after every gap.
#pragma once

#include "core/keys/key_event.h"

#include <optional>

namespace hopsel {

class EventNormalizer {
  public:
    /// Updates `held` and returns the event, or nothing when the raw event tells nothing about the eight
    /// keys. Does not look at `synthetic`.
    std::optional<KeyEvent> normalize(const RawEvent& raw);

    /// Forgets every held key.
    void reset() { held_.clear(); }

    /// The modifiers held as of the last event; keys that went down before the first one are not among them.
    ModifierSet held() const { return held_; }

  private:
    bool isPressed(ModifierKey key, std::uint64_t flags) const;
    void resync(std::uint64_t flags);
    std::optional<KeyEventKind> applyFlagsChange(const RawEvent& raw);

    ModifierSet held_;
};

} // namespace hopsel

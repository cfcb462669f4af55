// The key combination that is sent to a guest system instead of switching locally: its sequence of synthetic
// key events, and the seam that posts them.
#pragma once

#include "core/keys/shortcut_key.h"

#include <cstdint>
#include <vector>

namespace hopsel {

struct SyntheticKeyEvent {
    std::uint16_t keyCode = 0; ///< virtual key code
    bool isDown = false;
    std::uint64_t flags = 0; ///< flag word to set on the event
    bool isModifier = false; ///< the press or release of a modifier itself
    friend bool operator==(const SyntheticKeyEvent&, const SyntheticKeyEvent&) = default;
};

namespace guest_key_sequence {

/// Modifiers down in the order of their names, the key down and up, modifiers up in reverse.
std::vector<SyntheticKeyEvent> events(const ShortcutKey& key);

} // namespace guest_key_sequence

class GuestKeySending {
  public:
    GuestKeySending() = default;
    GuestKeySending(const GuestKeySending&) = delete;
    GuestKeySending& operator=(const GuestKeySending&) = delete;
    virtual ~GuestKeySending() = default;

    /// Posts the combination to the application in front, with 10 ms after each event; true if every event
    /// was posted. May run the platform's dispatch meanwhile, so that events arrive while it runs. Does not
    /// throw.
    virtual bool send(const ShortcutKey& key) = 0;
};

} // namespace hopsel

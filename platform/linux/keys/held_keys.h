// Which keys are down, told from a stream of presses and releases, and what each of them means for the
// engine.
//
// A source owns one. Flag words are built from it, because an X server or a keyboard device does not tell
// left from right. It is only as good as the stream: after every gap (connect, reconnect, wake, overflow) the
// owner rebuilds it from the list of keys that are down.
#pragma once

#include "core/keys/key_event.h"

#include <array>
#include <bitset>
#include <optional>

namespace hopsel {

/// What a key is for the engine.
struct KeyMeaning {
    std::optional<ModifierKey> modifier;
    bool isCapsLock = false;
};

class HeldKeys {
  public:
    static constexpr std::size_t keyCount = 256;
    using KeySet = std::bitset<keyCount>;

    /// The event that the press or release is for the engine, without time or origin; nothing if it is none.
    /// Two keys that count as one modifier make one press, with the first, and one release, with the last.
    std::optional<RawEvent> press(std::uint8_t key, KeyMeaning meaning);
    std::optional<RawEvent> release(std::uint8_t key, KeyMeaning meaning);

    void setCapsLock(bool on) { capsLock_ = on; }

    /// Starts over with exactly these keys down. `meaningOf(key)` is asked for each.
    template <class MeaningOf>
    void rebuild(const KeySet& down, MeaningOf meaningOf) {
        heldAs_.fill(std::nullopt);
        down_ = down;
        for (std::size_t key = 0; key < keyCount; ++key)
            if (down[key]) heldAs_[key] = meaningOf(static_cast<std::uint8_t>(key)).modifier;
    }

    const KeySet& down() const { return down_; }
    ModifierSet modifiers() const;
    std::uint64_t flags() const;

  private:
    RawEvent event(RawEventType type, std::uint16_t keyCode) const;

    KeySet down_;
    /// What each held key counted as when it went down: a new keymap must not leave a modifier behind.
    std::array<std::optional<ModifierKey>, keyCount> heldAs_{};
    bool capsLock_ = false;
};

} // namespace hopsel

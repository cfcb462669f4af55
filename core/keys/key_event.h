// What a listening source reports (`RawEvent`) and what the tap detection understands (`KeyEvent`).
//
// The codes of ordinary keys end here. `RawEvent` has room for one, but a source must fill `keyCode` for
// modifier changes only; `KeyEventKind` has no field for one. Diagnostics rest their privacy on that. Plain
// values.
#pragma once

#include "core/keys/modifier_key.h"

#include <cstdint>
#include <variant>

namespace hopsel {

enum class RawEventType : std::uint8_t { flagsChanged, keyDown, keyUp, mouseDown, wheelStep };

struct RawEvent {
    RawEventType type = RawEventType::keyDown;
    std::uint16_t keyCode = 0; ///< virtual key code, for `flagsChanged` only; 0 otherwise
    std::uint64_t flags = 0;   ///< flag word after the event (see modifier_key.h)
    double timestamp = 0;      ///< seconds of system uptime when the key moved, as far as the system tells
    bool synthetic = false;    ///< posted by this program itself
};

namespace key_event_kind {
struct ModifierDown {
    ModifierKey key;
    friend bool operator==(const ModifierDown&, const ModifierDown&) = default;
};
struct ModifierUp {
    ModifierKey key;
    friend bool operator==(const ModifierUp&, const ModifierUp&) = default;
};
struct KeyDown {
    friend bool operator==(const KeyDown&, const KeyDown&) = default;
};
struct KeyUp {
    friend bool operator==(const KeyUp&, const KeyUp&) = default;
};
struct MouseDown {
    bool isWheel = false; ///< a step of the wheel: it ends a tap like a click
    friend bool operator==(const MouseDown&, const MouseDown&) = default;
};
} // namespace key_event_kind

using KeyEventKind = std::variant<key_event_kind::ModifierDown, key_event_kind::ModifierUp,
                                  key_event_kind::KeyDown, key_event_kind::KeyUp, key_event_kind::MouseDown>;

struct KeyEvent {
    KeyEventKind kind;
    ModifierSet held; ///< the modifiers held once this event was applied
    double timestamp = 0;
    friend bool operator==(const KeyEvent&, const KeyEvent&) = default;
};

} // namespace hopsel

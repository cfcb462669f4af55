// What the session and the key helper say to each other. No message has a field in which the code of an
// ordinary key would fit: what is told of one is that some key went down while a modifier was held, or that a
// combination which the session itself declared was pressed.
//
// Plain values; `helper_wire.h` puts them on a socket, one message a packet.
#pragma once

#include "platform/linux/keys_helper/protocol/key_declaration.h"
#include "platform/linux/keys_helper/protocol/told_keys.h"

#include <cstdint>
#include <string>
#include <variant>

namespace hopsel {

/// Raised with every change of what is said. The two greetings stay as they are for ever, so that two that do
/// not fit together can still tell each other so.
inline constexpr std::uint16_t helperProtocolVersion = 1;

namespace to_helper {

/// First of all; the helper answers with `Welcome`.
struct Hello {
    std::uint16_t version = helperProtocolVersion;
    friend bool operator==(const Hello&, const Hello&) = default;
};
/// In place of what was declared before.
struct Declare {
    KeyDeclaration declaration;
    friend bool operator==(const Declare&, const Declare&) = default;
};
/// To the `Ask` of that number.
struct Answer {
    std::uint32_t id = 0;
    bool swallow = false;
    friend bool operator==(const Answer&, const Answer&) = default;
};

using Message = std::variant<Hello, Declare, Answer>;

} // namespace to_helper

namespace to_session {

struct Welcome {
    std::uint16_t version = helperProtocolVersion;
    friend bool operator==(const Welcome&, const Welcome&) = default;
};

enum class Filter : std::uint8_t {
    off,     ///< nothing is declared, or the filter has been ended
    waiting, ///< some keyboard is yet to be taken or given back: a key is down, or its mirror is too new
    on,      ///< every keyboard that can be read is filtered
};
/// After the greeting and with every change.
struct State {
    std::uint8_t keyboards = 0;  ///< that are read
    std::uint8_t unreadable = 0; ///< that are there and may not be read
    Filter filter = Filter::off;
    std::uint8_t refused = 0; ///< declared combinations that the policy does not allow
    friend bool operator==(const State&, const State&) = default;
};
/// Exactly these are down now. What was down before is not known to have been a tap: after the greeting, and
/// wherever key events may have been lost.
struct Held {
    told_keys::Mask keys = 0;
    friend bool operator==(const Held&, const Held&) = default;
};
struct Modifier {
    std::uint8_t key = 0; ///< index of the told key
    bool isDown = false;
    std::uint64_t microseconds = 0; ///< of CLOCK_MONOTONIC
    friend bool operator==(const Modifier&, const Modifier&) = default;
};
/// Something else was pressed while a told key is down; once for each press of a told key, as that is all a
/// tap is spoiled by.
struct Other {
    enum class Kind : std::uint8_t { key, pointer };
    Kind kind = Kind::key;
    friend bool operator==(const Other&, const Other&) = default;
};
/// A declared combination was pressed; its keyboard stands still until the answer, at most `answerLimit`.
struct Ask {
    std::uint32_t id = 0;
    ShortcutKey combination;
    friend bool operator==(const Ask&, const Ask&) = default;
};
/// The key of a swallowed combination came up.
struct Released {
    std::uint16_t keyCode = 0; ///< of a declared combination
    friend bool operator==(const Released&, const Released&) = default;
};
/// No answer came in time, and the key was passed on.
struct Late {
    std::uint32_t id = 0;
    friend bool operator==(const Late&, const Late&) = default;
};
/// What was taken away, or cannot be had. The name of the keyboard where it is about one.
struct Trouble {
    enum class Kind : std::uint8_t {
        lateAnswers,   ///< the filter is off until the next declaration
        inactive,      ///< another user's session is in front; nothing is told any more
        busy,          ///< another session has the helper
        heldElsewhere, ///< another program holds the keyboard
        noMirror,      ///< no virtual keyboard can be made, so nothing can be filtered
    };
    static constexpr std::size_t maxName = 64;
    Kind kind = Kind::lateAnswers;
    std::string keyboard; ///< bytes as the device tells them, cut
    friend bool operator==(const Trouble&, const Trouble&) = default;
};

using Message = std::variant<Welcome, State, Held, Modifier, Other, Ask, Released, Late, Trouble>;

} // namespace to_session

} // namespace hopsel

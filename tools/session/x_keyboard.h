// Types and clicks through the XTEST extension, as the devices of a user would.
//
// Keys are named by their evdev codes (key:: below); the X key code is 8 more.
#pragma once

#include "session/x_display.h"

#include <chrono>
#include <cstdint>
#include <linux/input-event-codes.h>
#include <vector>

namespace hopsel::session {

namespace key {
inline constexpr std::uint16_t escape = KEY_ESC, tab = KEY_TAB, enter = KEY_ENTER, space = KEY_SPACE,
                               backspace = KEY_BACKSPACE, capsLock = KEY_CAPSLOCK, numLock = KEY_NUMLOCK,
                               leftShift = KEY_LEFTSHIFT, rightShift = KEY_RIGHTSHIFT,
                               leftControl = KEY_LEFTCTRL, rightControl = KEY_RIGHTCTRL,
                               leftAlt = KEY_LEFTALT, rightAlt = KEY_RIGHTALT, leftSuper = KEY_LEFTMETA,
                               rightSuper = KEY_RIGHTMETA, hangul = KEY_HANGEUL, hanja = KEY_HANJA,
                               menu = KEY_COMPOSE, a = KEY_A, b = KEY_B, c = KEY_C, d = KEY_D, e = KEY_E,
                               q = KEY_Q, s = KEY_S, x = KEY_X, z = KEY_Z, one = KEY_1, two = KEY_2,
                               f5 = KEY_F5, f12 = KEY_F12, left = KEY_LEFT, right = KEY_RIGHT;
} // namespace key

struct KeyStroke {
    std::uint16_t code; ///< evdev
    bool isDown;
};

class XKeyboard {
  public:
    enum class Scroll { up, down, left, right };

    XKeyboard();
    /// Releases what is still held, so that no key stays down for the next test.
    ~XKeyboard();
    XKeyboard(const XKeyboard&) = delete;
    XKeyboard& operator=(const XKeyboard&) = delete;

    // Each returns when the server has taken the event, and answers `monotonicSeconds()` from just before
    // posting.
    double press(std::uint16_t code);
    double release(std::uint16_t code);
    /// Press and release, each with its own round trip; the time of the release.
    double tap(std::uint16_t code);
    /// Holds the key for so long by the server's clock; returns when it is up.
    void hold(std::uint16_t code, std::chrono::milliseconds time);
    /// A click: 1 is the left button, 2 the middle, 3 the right.
    double button(std::uint8_t number);
    double scroll(Scroll direction);
    void movePointer(std::int16_t x, std::int16_t y);

    /// Posts everything in one write without waiting: fast rollover. Returns the time just before posting.
    double post(const std::vector<KeyStroke>& strokes);

  private:
    void fake(std::uint8_t type, std::uint8_t detail, std::uint32_t delay = 0);
    void fakeKey(std::uint16_t code, bool isDown);

    XDisplay display_;
    std::vector<std::uint16_t> held_;
};

} // namespace hopsel::session

// Keeps the keyboard while a swallowed key is down, so that neither its repeats nor its key-up reach anyone.
//
// Owned by the hook; ends with its connections at the latest. From the swallowed key-down to its
// key-up we hold an active, synchronous grab of the keyboard: every key event comes to us and the keyboard
// waits. What is not swallowed is handed on, one event at a time.
//
// Handing on is the hard part. An event can only be replayed by giving the grab up, and whatever waits in the
// server's queue then rushes out, the key-up that must not escape included. So there are two connections: the
// one without the grab first freezes the keyboard a second time (through a grab of the pointer that freezes
// its keyboard along), the holder replays its one event, the other takes the keyboard, and only then lets go
// of the pointer. From then on the other connection is the holder.
#pragma once

#include "platform/linux/keys/key_meanings.h"
#include "platform/linux/x11/x11_input_devices.h"

#include <bitset>

namespace hopsel {

class X11KeyHold {
  public:
    X11KeyHold(X11Connection& primary, X11Connection& helper) : primary_(primary), helper_(helper) {}

    /// A key-down that froze the keyboard for `primary` is swallowed: hold, and let the keyboard go on.
    void begin(MasterKeyboard master, XKeyCode key);
    /// Another swallowed key-down, during the hold.
    void add(XKeyCode key);
    /// The key-up of a swallowed key: with the last one the hold ends.
    void remove(XKeyCode key);
    /// The event that froze the keyboard stays with us; go on.
    void next();
    /// The event that froze the keyboard goes on to where it belongs; the hold stays.
    void handOn();
    /// Someone took the keyboard from us: the key is out of our hands.
    void forget(XKeyCode key);
    /// The grab is gone, and with it whatever was held: the window it was on has been closed.
    void abandon();

    bool isActive() const { return keys_.any(); }
    bool contains(XKeyCode key) const { return keys_[key]; }
    bool isOn(XDeviceId keyboard) const { return master_.keyboard == keyboard; }
    /// Events of the keyboard that the hold is on come on this connection. If one comes on the other, a
    /// passive grab brought it, and the hold is no more.
    bool isWith(const X11Connection& connection) const { return holder_ == &connection; }
    /// The events of the hold come on the helper connection.
    bool isWithHelper() const { return isActive() && holder_ == &helper_; }

  private:
    X11Connection& other() { return holder_ == &primary_ ? helper_ : primary_; }
    void grabKeyboard(X11Connection& connection);
    bool grabKeyboard(X11Connection& connection, xcb_window_t window);
    bool freezeThroughPointer(X11Connection& connection);
    void allow(X11Connection& connection, std::uint8_t mode);
    void release();

    X11Connection& primary_;
    X11Connection& helper_;
    X11Connection* holder_ = &primary_;
    MasterKeyboard master_;
    xcb_window_t window_ = XCB_WINDOW_NONE;
    std::bitset<256> keys_;
};

} // namespace hopsel

// An application's window: it is mapped, takes the focus, and records the keys, clicks and focus changes that
// reach it. What a hook swallowed never appears here.
#pragma once

#include "session/x_display.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>
#include <xkbcommon/xkbcommon.h>

namespace hopsel::session {

struct XRecord {
    enum class Kind { keyPress, keyRelease, buttonPress, buttonRelease, focusIn, focusOut };

    Kind kind = Kind::keyPress;
    std::uint16_t code = 0;  ///< evdev code of the key, or the button's number
    std::uint16_t state = 0; ///< modifier bits before the event
    xkb_keysym_t keysym = 0; ///< what the key means in the layout at that moment
    std::string text;        ///< what a press types
    bool isRepeat = false;   ///< a press of a key that was down already
    std::uint8_t mode = 0;   ///< focus changes: normal, or by a grab (XCB_NOTIFY_MODE_...)
    double receivedAt = 0;   ///< monotonicSeconds()
};

class XTestWindow {
  public:
    using Records = std::vector<XRecord>;

    /// Returns when the window has the focus. `name` is its title and both names of its window class. Throws
    /// `std::runtime_error` if the focus does not come.
    explicit XTestWindow(const std::string& name = "hopsel-test");
    ~XTestWindow();

    xcb_window_t id() const { return window_; }

    /// Asks for the focus, of the window manager if there is one, and returns when it has come.
    void focus();

    /// Everything received so far; reads what the server has sent, and does not wait for more than its
    /// answer.
    const Records& records();
    /// Waits until the records satisfy the condition; false at the deadline.
    bool waitFor(const std::function<bool(const Records&)>& condition,
                 std::chrono::milliseconds timeout = std::chrono::seconds(5));
    /// Waits for so many key events, presses and releases together, repeats left out.
    bool waitForKeys(std::size_t count, std::chrono::milliseconds timeout = std::chrono::seconds(5));
    bool waitForText(std::string_view text, std::chrono::milliseconds timeout = std::chrono::seconds(5));

    /// The key events received so far, as "+30 -30" with evdev codes; a repeat is "*30".
    std::string keys();
    /// The text typed so far, repeats included.
    std::string typed();
    void clear();

  private:
    struct XkbUnref {
        void operator()(xkb_context* context) const { xkb_context_unref(context); }
        void operator()(xkb_keymap* keymap) const { xkb_keymap_unref(keymap); }
        void operator()(xkb_state* state) const { xkb_state_unref(state); }
    };

    void create(const std::string& name);
    void prepareKeyboard();
    void loadKeymap();
    void handle(const xcb_generic_event_t& event);
    void handleKey(const xcb_key_press_event_t& event, bool isPress);

    XDisplay display_;
    xcb_window_t window_ = XCB_WINDOW_NONE;
    std::uint8_t firstXkbEvent_ = 0;
    bool isMapped_ = false;
    bool hasFocus_ = false;
    std::vector<std::uint16_t> down_;
    Records records_;
    std::unique_ptr<xkb_context, XkbUnref> context_;
    std::unique_ptr<xkb_keymap, XkbUnref> keymap_;
    std::unique_ptr<xkb_state, XkbUnref> state_;
};

} // namespace hopsel::session

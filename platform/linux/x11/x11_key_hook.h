// The keyboard and mouse buttons of an X session: everything that happens, in order, and the right to swallow
// a shortcut's keys.
//
// One per process, shared by the listening source, the filtering source and the guest-key sender, which
// switch their share of it on and off. Driven by Qt's event loop. It closes itself when nobody
// uses it any more. When a connection is lost it opens new ones and goes on; if it cannot, it is closed, and
// can be opened later (`onLost`). Its callbacks must not run an event loop of their own: the keyboard may be
// standing still.
//
// How it works. Raw events of XInput 2 tell of every key and button, whoever has the focus or a grab; they go
// to the listener. The keys of shortcuts are grabbed passively and come a second time, with the keyboard
// standing still, to ask for a decision; what is swallowed must not be listened to. So a raw event whose key
// may also come as a grab waits, and everything after it waits behind it, until the grab event is here, or
// until the answer to a request made in between (a barrier) shows that there will be none.
#pragma once

#include "core/keys/key_event.h"
#include "core/keys/shortcut_key.h"
#include "platform/linux/keys/held_keys.h"
#include "platform/linux/x11/keyboard_guard.h"
#include "platform/linux/x11/x11_connection.h"
#include "platform/linux/x11/x11_own_posts.h"
#include "platform/linux/x11/x11_pending_keys.h"
#include "platform/linux/x11/x11_server_clock.h"

#include <QTimer>
#include <array>
#include <deque>
#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <xcb/xinput.h>

namespace hopsel {

struct X11KeyHookSession;

class X11KeyHook {
  public:
    /// Seconds of system uptime.
    using Clock = std::function<double()>;
    using Listener = std::function<void(const RawEvent&)>;
    /// True swallows the key.
    using Filter = std::function<bool(const ShortcutInput&)>;

    /// The guard, if there is one, is told what is filtered and dealt with.
    explicit X11KeyHook(Clock clock, std::shared_ptr<KeyboardGuard> guard = nullptr);
    ~X11KeyHook();
    X11KeyHook(const X11KeyHook&) = delete;
    X11KeyHook& operator=(const X11KeyHook&) = delete;

    bool isOpen() const { return session_ != nullptr; }
    /// By these the server can be asked to cut its two connections; only while open.
    std::array<std::uint32_t, 2> handles() const;
    /// Of the keymap as it is now; while not open, as it was.
    const KeyMeanings& meanings() const { return meanings_; }

    /// Throws `std::runtime_error` in words for the user.
    void startListening(Listener listener);
    void stopListening();

    /// Only while listening. What another program has is in `takenShortcuts`, the others are filtered. Throws
    /// `std::runtime_error` in words for the user if it has them all.
    void startFiltering(const ShortcutSet& shortcuts, Filter filter);
    /// Throws likewise, and then filters nothing any more.
    void setShortcuts(const ShortcutSet& shortcuts);
    /// Tries for what another program has: nobody tells when it lets go.
    void retryTaken();
    /// Those of the shortcuts, as they were last set, that another program has.
    const ShortcutSet& takenShortcuts() const { return taken_; }
    /// A key that is swallowed at this moment stays swallowed until it is up.
    void stopFiltering();

    /// Posts a key of the Linux code through XTEST; it comes back marked as synthetic. False if it cannot be
    /// done. Whoever posts several keys calls `dispatchFor` in between: they may be shortcuts that wait for a
    /// decision.
    bool post(std::uint16_t linuxCode, bool press);
    bool canPost() const;
    /// The Linux code of a key on whose press no program acts; nothing if the keymap has none to spare.
    std::optional<std::uint16_t> silentKey() const;

    /// In a callback, after which `onHandled` is called.
    bool isHandling() const { return isHandling_; }

    /// Handles what has arrived. The event loop calls it.
    void dispatch();
    /// Waits without the event loop, handling what arrives.
    void dispatchFor(double seconds);

    /// After a gap in the stream (sleep, another session): asks the server which keys are down.
    void resynchronise();

    /// Is the key of the Linux code, or any of the eight modifiers, down?
    bool isBusy(std::uint16_t linuxCode) const;

    /// After each event, outside the callbacks: what the listener and the filter have put off can be done
    /// now.
    std::function<void()> onHandled;
    /// A connection broke, and what was pressed meanwhile is unknown. Says whether all goes on over new ones;
    /// else the hook is closed already.
    std::function<void(bool isOpenAgain)> onLost;
    /// Before that: it was the guard's doing, as a key had not been dealt with for a second.
    std::function<void()> onGivenBack;
    /// No combination can be filtered any more (other programs took them); the filter is off already.
    std::function<void()> onFilterLost;
    /// `takenShortcuts` changed by itself.
    std::function<void()> onTakenChanged;

  private:
    struct Barrier {
        std::uint32_t sequence;
        std::uint64_t upTo; ///< number of the last pending key before it
        XcbPtr<xcb_query_keymap_reply_t> reply{};
    };

    // x11_key_hook.cpp: the connections and the stream
    void open();
    void closeIfUnused();
    void close();
    void lose();
    bool reopen();
    bool step();
    void handlePrimary(const xcb_generic_event_t& event);
    bool handleHelper();
    bool readHelperEvent();
    void takeHelperEvent();
    bool handleXInput(X11Connection& connection, const xcb_generic_event_t& event);
    void handleXkb(const xcb_generic_event_t& event);
    void placeBarrier();
    bool settleAnsweredBarrier();
    void settleFrontBarrier();
    void installGrabs();
    void refreshGrabs();
    void dispatchSoon();
    void refreshKeyboard();
    void refreshLater();

    // x11_key_hook_keys.cpp: what becomes of each key
    void onRawKey(const xcb_input_raw_key_press_event_t& event, bool press);
    void onRawButton(std::uint32_t button, std::uint32_t time);
    void onGrabbedKey(X11Connection& connection, const xcb_input_key_press_event_t& event, bool press);
    void onGrabbedPress(X11Connection& connection, const xcb_input_key_press_event_t& event,
                        const std::optional<X11PendingKey>& raw);
    void onGrabbedRelease(X11Connection& connection, const xcb_input_key_release_event_t& event,
                          const std::optional<X11PendingKey>& raw);
    void onUngrabbed(const X11PendingKey& raw);
    bool isSwallowed(const X11PendingKey& raw) const;
    bool ask(ShortcutInput::Kind kind, XKeyCode key, const std::optional<X11PendingKey>& raw, bool isRepeat);
    void listen(const std::optional<RawEvent>& event);
    KeyMeaning meaning(XKeyCode key) const { return {meanings_.modifier(key), meanings_.isCapsLock(key)}; }

    Clock clock_;
    std::shared_ptr<KeyboardGuard> guard_;
    KeyMoment lastKey_;
    std::unique_ptr<X11KeyHookSession> session_;
    X11ServerClock serverClock_;
    QTimer refreshTimer_;
    Listener listener_;
    Filter filter_;
    ShortcutSet shortcuts_;
    ShortcutSet taken_;
    KeyMeanings meanings_;
    HeldKeys held_;
    bool isWheelTold_ = false; ///< since the last key
    X11OwnPosts ownPosts_;
    X11PendingKeys pending_;
    std::deque<Barrier> barriers_;
    /// Read from the helper connection but not handled yet. There is never a second one: the keyboard stands
    /// still.
    XcbPtr<xcb_generic_event_t> helperEvent_;
    bool isDispatching_ = false;
    bool isHandling_ = false;
    double reopenedAt_ = -std::numeric_limits<double>::infinity(); ///< or was tried to be
};

} // namespace hopsel
